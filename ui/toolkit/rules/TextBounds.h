// The place of a measured text in its layout rectangle, and the lines under and through it.
#pragma once

#include <algorithm>
#include <cmath>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

/// The measured rectangle at its aligned place; alignX and alignY are 0 (near), 1 (centre), 2 (far). GDI+ of Windows
/// returns the aligned place itself. Wine's leaves every text at the layout's corner, so this moves it.
constexpr RectF alignedBounds(RectF measured, const RectF& layout, int32_t alignX, int32_t alignY) {
    if (measured.x == layout.x) measured.x += (layout.width - measured.width) * static_cast<float>(alignX) / 2;
    if (measured.y == layout.y) measured.y += (layout.height - measured.height) * static_cast<float>(alignY) / 2;
    return measured;
}

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
