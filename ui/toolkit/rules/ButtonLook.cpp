#include "ui/toolkit/rules/ButtonLook.h"

namespace pdx {
namespace {

constexpr Color none = 0;

}  // namespace

ButtonLook buttonLook(const ButtonColors& colors, bool secondary, VisualState state, bool focused, Color textColor) {
    const StateColors& fills = secondary ? colors.secondary : colors.primary;
    const Color outline = secondary ? colors.primary.of(state) : none;
    const bool showsFocus = state == VisualState::focused || (state == VisualState::hover && focused);
    return {fills.of(state), showsFocus ? textColor : outline};
}

Color checkboxBorder(const CheckboxColors& colors, VisualState state, bool focused, bool checked) {
    switch (state) {
        case VisualState::disabled:
            return colors.disabled;
        case VisualState::focused:
            return colors.checked;
        case VisualState::hover:
            return focused || checked ? colors.checked : colors.hover;
        default:
            return focused || checked ? colors.checked : colors.normal;
    }
}

}  // namespace pdx
