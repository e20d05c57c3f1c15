#include "ui/toolkit/rules/ButtonLook.h"

namespace pdx {

ButtonLook buttonLook(const ButtonColors& colors, bool secondary, VisualState state, bool focused, Color textColor) {
    constexpr Color none = 0;
    const StateColors& fills = secondary ? colors.secondary : colors.primary;
    const Color outline = secondary ? colors.primary.of(state) : none;
    const bool showsFocus = state == VisualState::focused || (state == VisualState::hover && focused);
    return {fills.of(state), showsFocus ? textColor : outline};
}

Color checkboxBorder(const CheckboxColors& colors, VisualState state, bool focused, bool checked) {
    if (state == VisualState::disabled) return colors.disabled;
    if (state == VisualState::focused || focused || checked) return colors.checked;
    return state == VisualState::hover ? colors.hover : colors.normal;
}

}  // namespace pdx
