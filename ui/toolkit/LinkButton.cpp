#include "ui/toolkit/LinkButton.h"

#include "ui/toolkit/Painting.h"

namespace pdx {

LinkButton::LinkButton(HWND window) : Button(window) {
    textColor = palette::Blue[8];
    hoverTextColor = palette::Blue[7];
}

bool LinkButton::isOverText(POINT screenPoint) const {
    ScreenToClient(hwnd, &screenPoint);
    return contains(textBounds, static_cast<float>(screenPoint.x), static_cast<float>(screenPoint.y));
}

MessageResult LinkButton::OnNcHitTest(int32_t x, int32_t y) {
    return handled(isOverText({x, y}) ? HTCLIENT : HTNOWHERE);
}

MessageResult LinkButton::OnSetCursor(WPARAM window, int32_t, UINT) {
    POINT cursor{};
    if (reinterpret_cast<HWND>(window) != hwnd || !GetCursorPos(&cursor)) return unhandled();
    const bool over = isOverText(cursor);
    if (over != overLink) {
        overLink = over;
        Invalidate();
    }
    if (!over) return unhandled();
    return showCursor(handCursor);
}

MessageResult LinkButton::OnMouseLeave() {
    overLink = false;
    return Button::OnMouseLeave();
}

MessageResult LinkButton::OnSetFont(WPARAM handle, bool redraw) {
    const MessageResult result = Button::OnSetFont(handle, redraw);
    underlinedFont = font ? CloneFontWithStyle(font.get(), font->GetStyle() | fontUnderline) : nullptr;
    return result;
}

MessageResult LinkButton::OnSetText(LPARAM label) {
    const MessageResult result = Button::OnSetText(label);
    const Size client = GetClientSize();
    OnSize(client.width, client.height);
    return result;
}

MessageResult LinkButton::OnSize(int32_t, int32_t) {
    // Drawing on a context that does not show updates the text's rectangle.
    const MemoryContext context(CreateCompatibleDC(nullptr));
    Graphics graphics(context.get());
    ApplyQuality(graphics);
    DrawContent(graphics);
    return unhandled();
}

void LinkButton::DrawContent(Graphics& graphics) {
    const bool hot = overLink || HasFocus();
    const Color color = !isEnabled() ? disabledTextColor : hot ? hoverTextColor : textColor;
    const Brush brush(color);
    const Font* face = isEnabled() && hot && underlinedFont ? underlinedFont.get() : font.get();
    textBounds = DrawTextInRect(graphics, text, face, GetClientRectF(), &brush, Gdiplus::StringAlignmentCenter);
}

}  // namespace pdx
