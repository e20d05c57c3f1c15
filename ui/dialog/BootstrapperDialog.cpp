#include "ui/dialog/BootstrapperDialog.h"

#include "config/rules/SupportAddress.h"
#include "config/Settings.h"
#include "config/Translator.h"
#include "platform/Log.h"
#include "ui/dialog/rules/PageLayout.h"
#include "ui/toolkit/Painting.h"

namespace pdx {
BootstrapperDialog::BootstrapperDialog(BootstrapperApplication& application)
    : Dialog(IDD_BOOTSTRAPPER), app(application) {}

BootstrapperDialog::~BootstrapperDialog() {
    app.setDialogWindow(nullptr);
    app.setDialogReady(true);
    const HWND window = std::exchange(hwnd, nullptr);
    if (!IsWindow(window)) return;
    SetWindowLongPtrW(window, DWLP_USER, 0);
    DestroyWindow(window);
}

std::wstring BootstrapperDialog::Translate(const wchar_t* key) {
    const auto translator = g_translator.get();
    return translator ? fillSupportAddress(translator->translate(key), getConfigWideString("support.url")) : key;
}

MessageResult BootstrapperDialog::OnInitDialog() {
    LoadPrivateFonts();
    SetWindowTextW(hwnd, Translate(L"INSTALLER_WINDOW_TITLE").c_str());
    const bool shown = app.display() != BOOTSTRAPPER_DISPLAY_NONE;
    if (shown) Pictures();
    CreateControls();
    if (shown) Show(SW_SHOW);
    app.setDialogWindow(hwnd);
    app.setDialogReady(true);
    return handled(FALSE);
}

PagePictures& BootstrapperDialog::Pictures() {
    if (!pictures) {
        pictures = g_pagePictures.get();
        g_pagePictures.clear();
        if (!pictures) pictures = std::make_shared<PagePictures>();
        pictures->setWindowSize(GetClientSize());
    }
    return *pictures;
}

void BootstrapperDialog::CreateControls() {
    const auto make = [this]<typename Widget>(std::unique_ptr<Widget>& widget, int32_t id) -> Widget& {
        widget = std::make_unique<Widget>(GetItem(id));
        return *widget;
    };
    make(titleLabel, IDC_TITLE).SetFont(textFont(20, fontBold));
    titleLabel->SetDefaultLineHeight({LineHeight::pixels, 31});
    make(subtitleLabel, IDC_SUBTITLE);
    make(bodyLabel, IDC_BODY).SetFont(textFont(16, fontRegular));
    bodyLabel->SetDefaultLineHeight({LineHeight::pixels, 26});
    make(locationLabel, IDC_LOCATION_LABEL).SetFont(textFont(14, fontBold));
    make(locationValue, IDC_LOCATION_VALUE).SetFont(CreateFontByName(pathFace, 14, fontRegular));
    locationValue->setTextColor(palette::Grey[8]);
    locationValue->SetText(app.GetEngineVariable(variable::installFolder, true));
    make(closeButton, IDC_CLOSE).SetAccessibleName(Translate(L"installer_close"));
    make(actionButton, IDC_ACTION1).SetFont(textFont(14, fontBold));
    make(actionButton2, IDC_ACTION2).SetFont(textFont(14, fontBold));
    make(actionButton3, IDC_ACTION3).SetFont(textFont(14, fontBold));
    make(optionsLink, IDC_OPTIONS).SetFont(textFont(16, fontRegular));
    make(browseLink, IDC_BROWSE).SetFont(textFont(14, fontBold));
    make(shortcutCheck, IDC_SHORTCUT).SetFont(textFont(16, fontRegular));
    shortcutCheck->SetChecked(true);
    make(questionCheck, IDC_QUESTION).SetFont(textFont(16, fontRegular));
    questionCheck->SetChecked(true);
    make(progressBar, IDC_PROGRESS);
}

MessageResult BootstrapperDialog::OnNcHitTest(int32_t x, int32_t y) {
    const Rect window = GetWindowRect();
    const bool inside = x >= window.left && x < window.right && y >= window.top && y < window.bottom;
    // The whole dialog drags.
    return handled(inside ? HTCAPTION : HTNOWHERE);
}

MessageResult BootstrapperDialog::OnCtlColorStatic(HWND child, HDC context) {
    const int32_t id = GetDlgCtrlID(child);
    if ((id < IDC_TITLE || id > IDC_PICTURE) && id != IDC_SUBTITLE) return unhandled();
    SetBkMode(context, TRANSPARENT);
    return handled(reinterpret_cast<LRESULT>(GetStockObject(NULL_BRUSH)));
}

MessageResult BootstrapperDialog::OnEraseBackground(WPARAM) { return handled(1); }
MessageResult BootstrapperDialog::OnSetFocus(WPARAM) { return handled(); }

MessageResult BootstrapperDialog::OnQueryEndSession() {
    app.noteLogoutExit();
    return unhandled();
}

MessageResult BootstrapperDialog::OnDestroy() {
    // What the box said stands when the window goes with its question unanswered.
    if (questionCheck) questionChecked = questionCheck->IsChecked();
    PostQuitMessage(0);
    app.quit(0);
    return handled();
}

MessageResult BootstrapperDialog::Draw(Graphics& graphics) {
    const Size client = GetClientSize();
    const Bitmap* const background = plainBackground ? nullptr : Pictures().background();
    if (!background) {
        // From beyond the upper left to beyond the lower right corner: the whole client area.
        graphics.fillRectangle(Brush(backgroundColor), {-30, -30, client.width + 40, client.height + 40});
    } else {
        // Nothing shines through it, and blending takes Wine twice the time.
        graphics.setCompositingMode(Gdiplus::CompositingModeSourceCopy);
        if (background->getSize() == client)
            graphics.copyImage(*background, graphics.visible({0, 0, client.width, client.height}));
        else
            graphics.drawImage(*background, {0, 0, client.width, client.height});
    }
    return handled(1);
}

MessageResult BootstrapperDialog::OnDrawItem(int32_t id, const DRAWITEMSTRUCT* item) {
    if (id != IDC_PICTURE) return unhandled();
    const PageState& page = Top();
    const Bitmap* picture = nullptr;
    if (page.kind == pagePrompt && (page.flags & iconMask) == iconError)
        picture = Pictures().picture(errorPictureNumber);
    if (page.kind == pageOlderClient) picture = Pictures().picture(migrationPictureNumber);
    if (!picture) picture = Pictures().picture(logoPictureNumber);
    const Size size = {item->rcItem.right - item->rcItem.left, item->rcItem.bottom - item->rcItem.top};
    // Off screen first, with the dialog's own background under it, so that nothing flickers.
    const Bitmap buffer(size);
    Graphics surface(buffer);
    ApplyQuality(surface);
    {
        const BorrowedContext context(surface);
        const Rect place = GetChildRect(item->hwndItem);
        POINT before{};
        OffsetViewportOrgEx(context.get(), -place.left, -place.top, &before);
        SendMessageW(hwnd, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(context.get()), PRF_CLIENT);
        SetViewportOrgEx(context.get(), before.x, before.y, nullptr);
    }
    if (picture) surface.drawImage(*picture, fitPicture({0, 0, size.width, size.height}, picture->getSize()));
    Graphics screen(item->hDC);
    screen.setCompositingMode(Gdiplus::CompositingModeSourceCopy);
    screen.copyImage(buffer, {0, 0, size.width, size.height});
    return handled(1);
}

}  // namespace pdx
