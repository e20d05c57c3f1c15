// The colours of a button and a check box in each state.
#pragma once

#include "ui/toolkit/rules/Palette.h"

namespace pdx {

enum class VisualState { disabled, normal, hover, focused, pressed };

/// The facts that decide a state.
struct ButtonFacts {
    bool enabled;
    bool pushed;
    bool underCursor;
    bool focused;
};

/// The first that applies of: disabled, pressed, hover, focused.
constexpr VisualState visualState(const ButtonFacts& facts) {
    if (!facts.enabled) return VisualState::disabled;
    if (facts.pushed) return VisualState::pressed;
    if (facts.underCursor) return VisualState::hover;
    return facts.focused ? VisualState::focused : VisualState::normal;
}

/// A colour for each state.
struct StateColors {
    Color disabled;
    Color normal;
    Color hover;
    Color focused;
    Color pressed;

    [[nodiscard]] constexpr Color of(VisualState state) const {
        const Color colors[] = {disabled, normal, hover, focused, pressed};
        return colors[static_cast<int>(state)];
    }
};

/// The fills of a button in its primary and its secondary, outlined style.
struct ButtonColors {
    StateColors primary{.disabled = palette::Grey[6],
                        .normal = palette::Blue[5],
                        .hover = palette::Blue[3],
                        .focused = palette::Blue[5],
                        .pressed = palette::Blue[6]};
    StateColors secondary{.disabled = WithAlpha(palette::Grey[6], 178),
                          .normal = WithAlpha(palette::Grey[3], 178),
                          .hover = WithAlpha(palette::Grey[0], 76),
                          .focused = WithAlpha(palette::Grey[3], 178),
                          .pressed = WithAlpha(palette::Grey[10], 12)};
};

/// The chip under the close button's cross.
inline constexpr StateColors closeButtonFills{.disabled = WithAlpha(palette::Grey[6], 76),
                                              .normal = WithAlpha(palette::Grey[6], 127),
                                              .hover = WithAlpha(palette::Grey[0], 51),
                                              .focused = WithAlpha(palette::Grey[6], 127),
                                              .pressed = WithAlpha(palette::Grey[10], 12)};

struct ButtonLook {
    Color fill;
    Color border;  ///< clear for none
};

/// The look in a state. A focused button keeps its focus border under the cursor.
ButtonLook buttonLook(const ButtonColors& colors, bool secondary, VisualState state, bool focused, Color textColor);

/// The border colours of a check box; focus and check share one.
struct CheckboxColors {
    Color normal = palette::Grey[7];
    Color hover = palette::Grey[8];
    Color checked = palette::Blue[5];
    Color disabled = palette::Grey[6];
};
Color checkboxBorder(const CheckboxColors& colors, VisualState state, bool focused, bool checked);

}  // namespace pdx
