// The distance between the lines of a marked-up text.
#pragma once

#include <cmath>
#include <cstdint>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

struct LineHeight {
    enum Kind : int32_t {
        automatic = 0,  ///< 1.2 times the font's own height
        factor = 1,     ///< value times the font's own height
        pixels = 2,     ///< value
    };
    Kind kind = automatic;
    float value = 0;
    bool operator==(const LineHeight&) const = default;
};

/// The line height in whole pixels, for a font of that height in pixels.
inline float lineHeightInPixels(const LineHeight& lineHeight, float fontHeight) {
    constexpr float automaticFactor = 1.2f;
    const float factor = lineHeight.kind == LineHeight::factor ? lineHeight.value : automaticFactor;
    // A product is rounded, a given length is cut.
    const float exact = lineHeight.kind == LineHeight::pixels ? lineHeight.value : fontHeight * factor + 0.5f;
    return static_cast<float>(wholePixels(std::floor(exact)));
}

}  // namespace pdx
