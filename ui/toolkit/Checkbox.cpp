#include "ui/toolkit/Checkbox.h"

#include <cmath>

#include "ui/toolkit/Button.h"
#include "ui/toolkit/Painting.h"
#include "ui/toolkit/rules/CheckboxShape.h"

namespace pdx {
namespace {

constexpr int32_t cornerRadius = 3;
constexpr float lineWidth = 2.0f;
constexpr float labelGap = 14.0f;  // more than the drawn gap (checkboxLabelLeft): some pixels stay free

}  // namespace

VisualState Checkbox::GetVisualState() const { return nativeButtonState(*this); }
bool Checkbox::IsChecked() const { return SendMessageW(hwnd, BM_GETCHECK, 0, 0) == BST_CHECKED; }
void Checkbox::SetChecked(bool checked) { SendMessageW(hwnd, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0); }

Size Checkbox::GetPreferredSize() const {
    const RectF label = measureText(hwnd, GetText(), font.get());
    const auto side = static_cast<float>(std::min(GetClientSize().height, largestCheckbox));
    return {static_cast<int32_t>(std::ceil(side + labelGap + label.width)),
            static_cast<int32_t>(std::ceil(std::max(side, label.height)))};
}

MessageResult Checkbox::Draw(Graphics& graphics) {
    const VisualState state = GetVisualState();
    const bool checked = IsChecked();
    const Color color = state == VisualState::disabled ? disabledTextColor : textColor;
    const Size client = GetClientSize();
    const Box box = checkboxBox(client.height);
    const Pen border(checkboxBorder(borders, state, HasFocus(), checked), lineWidth);
    graphics.drawPath(border, CreateRoundedPath(box, cornerRadius));
    if (checked) graphics.drawLines(Pen(color, lineWidth), checkMark(box));
    const int32_t left = checkboxLabelLeft(box);
    const RectF label = {static_cast<float>(left), 0, static_cast<float>(client.width - left),
                         static_cast<float>(client.height)};
    const Brush brush(color);
    DrawTextInRect(graphics, GetText(), font.get(), label, &brush, Gdiplus::StringAlignmentNear);
    return handled(1);
}

}  // namespace pdx
