// The lines under and through a text.
#pragma once

#include <algorithm>
#include <cmath>

#include "ui/toolkit/rules/Geometry.h"
#include "ui/toolkit/rules/Pixels.h"

namespace pdx {

enum class FontLine { under, through };

/// The box of a line for a text in that rectangle, in whole pixels. The ascent is the distance from the rectangle's top
/// to the baseline; size is the font's.
inline Box fontLineBox(FontLine line, const RectF& text, float ascent, float size) {
    // Shares of the size, close to those of the interface's faces.
    constexpr float thickness = 1.0f / 14, below = 0.1f, above = 0.3f;
    const float top = text.y + ascent + size * (line == FontLine::under ? below : -above);
    const auto whole = [](float length) { return wholePixels(std::floor(length + 0.5f)); };
    const int32_t left = whole(text.x);
    return {left, whole(top), whole(text.x + text.width) - left, std::max(whole(size * thickness), 1)};
}

}  // namespace pdx
