// From the floating numbers of text to whole pixels.
#pragma once

#include <algorithm>
#include <cstdint>

namespace pdx {

/// The whole part of a length, cut towards zero. What no screen could show, and what a text may all the same ask for,
/// ends at a distance that can still be calculated with.
constexpr int32_t wholePixels(double length) {
    constexpr double farthest = 1 << 28;
    return length == length ? static_cast<int32_t>(std::clamp(length, -farthest, farthest)) : 0;
}

}  // namespace pdx
