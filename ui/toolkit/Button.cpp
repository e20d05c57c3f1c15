#include "ui/toolkit/Button.h"

#include <algorithm>

#include "platform/rules/AsciiCase.h"
#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

constexpr int32_t cornerRadius = 8;
constexpr float lineWidth = 2.0f;
constexpr Size margins{32, 18};

constexpr bool isClear(Color color) { return color >> 24 == 0; }

bool cursorIsOver(HWND window) {
    POINT cursor{};
    RECT rect{};
    return GetCursorPos(&cursor) && ::GetWindowRect(window, &rect) && PtInRect(&rect, cursor);
}

// NOLINTNEXTLINE(bugprone-incorrect-roundings): a length is not negative
int32_t rounded(float length) { return static_cast<int32_t>(length + 0.5f); }

}  // namespace

VisualState nativeButtonState(const Window& window) {
    const HWND handle = window.getHandle();
    return visualState({.enabled = IsWindowEnabled(handle) != FALSE,
                        .pushed = (SendMessageW(handle, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0,
                        .underCursor = cursorIsOver(handle),
                        .focused = window.HasFocus()});
}

bool Button::isEnabled() const { return IsWindowEnabled(hwnd) != FALSE; }
VisualState Button::GetVisualState() const { return nativeButtonState(*this); }

void Button::setSecondary(bool outlined) {
    secondary = outlined;
    Invalidate();
}

MessageResult Button::OnSetText(LPARAM label) {
    Invalidate();
    text = label ? reinterpret_cast<const wchar_t*>(label) : L"";
    // Only a to z change, whatever the locale: a label looks the same on every machine.
    std::ranges::transform(text, text.begin(), upperAscii<wchar_t>);
    SetAccessibleName(text);
    return handled();
}

Size Button::GetPreferredSize() const {
    const RectF measured = measureText(hwnd, text, font.get());
    return {rounded(measured.width) + margins.width, rounded(measured.height) + margins.height};
}

MessageResult Button::Draw(Graphics& graphics) {
    DrawBackground(graphics);
    DrawContent(graphics);
    return handled(1);
}

void Button::DrawBackground(Graphics& graphics) {
    const Size client = GetClientSize();
    const Path path = CreateRoundedPath({1, 1, client.width - 2, client.height - 2}, cornerRadius);
    const ButtonLook look = buttonLook(colors, secondary, GetVisualState(), HasFocus(), textColor);
    graphics.fillPath(Brush(look.fill), path);
    if (!isClear(look.border)) graphics.drawPath(Pen(look.border, lineWidth), path);
}

void Button::DrawContent(Graphics& graphics) {
    const Color color = !isEnabled() ? disabledTextColor : cursorIsOver(hwnd) ? hoverTextColor : textColor;
    const Brush brush(color);
    DrawTextInRect(graphics, text, font.get(), GetClientRectF(), &brush, Gdiplus::StringAlignmentCenter);
}

CloseButton::CloseButton(HWND window) : Button(window) { colors.primary = closeButtonFills; }

void CloseButton::DrawContent(Graphics& graphics) {
    const auto [w, h] = GetClientSize();
    const Pen pen(isEnabled() ? textColor : disabledTextColor, lineWidth);
    graphics.drawLine(pen, {3 * w / 8, 3 * h / 8}, {5 * w / 8, 5 * h / 8});
    graphics.drawLine(pen, {5 * w / 8, 3 * h / 8}, {3 * w / 8, 5 * h / 8});
}

}  // namespace pdx
