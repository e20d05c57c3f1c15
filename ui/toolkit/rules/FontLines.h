// Where the lines of an underlined or struck out text lie.
#pragma once

#include <algorithm>
#include <cmath>

#include "ui/toolkit/rules/Geometry.h"
#include "ui/toolkit/rules/Pixels.h"

namespace pdx {

enum class FontLine { under, through };

/// The line of a text in that rectangle, in whole pixels. The ascent is what lies between the rectangle's top and the
/// line that the letters stand on; size is the font's.
inline Box fontLineBox(FontLine line, const RectF& text, float ascent, float size) {
    // Shares of the size, about as the faces of the interface have them.
    constexpr float thickness = 1.0f / 14, below = 0.1f, above = 0.3f;
    const float top = text.y + ascent + size * (line == FontLine::under ? below : -above);
    const auto whole = [](float length) { return wholePixels(std::floor(length + 0.5f)); };
    const int32_t left = whole(text.x);
    return {left, whole(top), whole(text.x + text.width) - left, std::max(whole(size * thickness), 1)};
}

}  // namespace pdx
