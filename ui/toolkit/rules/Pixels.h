// Conversion of lengths to whole pixels.
#pragma once

#include <algorithm>
#include <cstdint>

namespace pdx {

/// A length cut towards zero, 0 for a NaN. Lengths are limited to 2^28, so that sums of those that a text asks for do
/// not overflow.
constexpr int32_t wholePixels(double length) {
    constexpr double farthest = 1 << 28;
    return length == length ? static_cast<int32_t>(std::clamp(length, -farthest, farthest)) : 0;
}

}  // namespace pdx
