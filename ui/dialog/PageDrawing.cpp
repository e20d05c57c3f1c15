// How the window and its picture are painted.
#include <algorithm>
#include <iterator>

#include "ui/dialog/PageView.h"
#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

constexpr int32_t transparentControls[] = {IDC_TITLE,          IDC_SUBTITLE,       IDC_BODY,
                                           IDC_LOCATION_LABEL, IDC_LOCATION_VALUE, IDC_PICTURE};

}  // namespace

PagePictures& PageView::pagePictures() {
    if (!pictures) {
        pictures = g_pagePictures.get();
        g_pagePictures.clear();
        if (!pictures) pictures = std::make_shared<PagePictures>();
        pictures->setWindowSize(GetClientSize());
    }
    return *pictures;
}

MessageResult PageView::OnNcHitTest(int32_t x, int32_t y) {
    const Rect window = GetWindowRect();
    const bool inside = x >= window.left && x < window.right && y >= window.top && y < window.bottom;
    // The user can drag the whole dialog.
    return handled(inside ? HTCAPTION : HTNOWHERE);
}

MessageResult PageView::OnCtlColorStatic(HWND child, HDC context) {
    const int32_t id = GetDlgCtrlID(child);
    if (std::ranges::find(transparentControls, id) == std::end(transparentControls)) return unhandled();
    SetBkMode(context, TRANSPARENT);
    return handled(reinterpret_cast<LRESULT>(GetStockObject(NULL_BRUSH)));
}

MessageResult PageView::OnEraseBackground(WPARAM) { return handled(1); }

MessageResult PageView::OnSetFocus(WPARAM) { return handled(); }

MessageResult PageView::Draw(Graphics& graphics) {
    const Size client = GetClientSize();
    const Bitmap* const background = plainBackground ? nullptr : pagePictures().background();
    if (!background) {
        // More than the client area: by 30 pixels on the left and above, by 10 on the right and below.
        graphics.fillRectangle(Brush(backgroundColor), {-30, -30, client.width + 40, client.height + 40});
    } else {
        // The picture is opaque, and blending takes twice the time on Wine.
        graphics.setCompositingMode(Gdiplus::CompositingModeSourceCopy);
        if (background->getSize() == client)
            graphics.copyImage(*background, graphics.visible({0, 0, client.width, client.height}));
        else
            graphics.drawImage(*background, {0, 0, client.width, client.height});
    }
    return handled(1);
}

MessageResult PageView::OnDrawItem(int32_t id, const DRAWITEMSTRUCT* item) {
    if (id != IDC_PICTURE) return unhandled();
    const PageState& page = topPage();
    const Bitmap* picture = nullptr;
    if (page.kind == pagePrompt && (page.flags & iconMask) == iconError)
        picture = pagePictures().picture(errorPictureNumber);
    if (page.kind == pageBastion) picture = pagePictures().picture(migrationPictureNumber);
    if (!picture) picture = pagePictures().picture(logoPictureNumber);
    const Size size = {item->rcItem.right - item->rcItem.left, item->rcItem.bottom - item->rcItem.top};
    // Drawn off screen over the dialog's background, to avoid flicker.
    const Bitmap buffer(size);
    Graphics surface(buffer);
    ApplyQuality(surface);
    const Box whole = {0, 0, size.width, size.height};
    drawParent(surface, hwnd, GetChildRect(item->hwndItem), whole);
    if (picture) surface.drawImage(*picture, fitPicture(whole, picture->getSize()));
    Graphics screen(item->hDC);
    ApplyQuality(screen);
    screen.setCompositingMode(Gdiplus::CompositingModeSourceCopy);
    screen.copyImage(buffer, whole);
    return handled(1);
}

}  // namespace pdx
