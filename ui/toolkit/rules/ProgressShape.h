// The filled part of a progress bar, and the two moving chunks of an indeterminate one. Lengths are pixels.
#pragma once

#include <array>
#include <cstdint>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

/// Duration of one sweep of the marquee.
inline constexpr uint64_t marqueeSweepMs = 2500;

/// Width of the filled part; 0 for an empty range.
constexpr int32_t filledWidth(int32_t low, int32_t high, int32_t position, int32_t width) {
    return high == low ? 0 : static_cast<int32_t>(int64_t{position - low} * width / (high - low));
}

/// A cubic Bezier with the inner control values 0.1 and 1.0: slow, fast, slow.
constexpr double marqueeEasing(double t) { return 0.3 * t * (1 - t) * (1 - t) + 3 * (1 - t) * t * t + t * t * t; }

/// The two chunks in a bar of that size at that time of any clock. At the start of a sweep both are left of the bar.
constexpr std::array<Box, 2> marqueeChunks(Size bar, uint64_t milliseconds) {
    const int32_t chunk = 4 * bar.width / 5;
    const int32_t gap = 3 * bar.width / 10;
    const int32_t length = bar.width + 2 * (chunk + gap);
    const double t = static_cast<double>(milliseconds % marqueeSweepMs) / static_cast<double>(marqueeSweepMs);
    const int32_t x = static_cast<int32_t>(marqueeEasing(t) * length) - chunk;
    return {{{x, 0, chunk, bar.height}, {x - chunk - gap, 0, chunk, bar.height}}};
}

/// Whether any part of a chunk shows in the bar.
constexpr bool isInView(const Box& chunk, Size bar) { return chunk.x < bar.width && chunk.x + chunk.width > 0; }

/// The parts of the bar that change when the chunks move. They are the two strips that the round ends of each chunk
/// pass, clipped to the bar. Most are empty.
constexpr std::array<Box, 4> movedParts(const std::array<Box, 2>& before, const std::array<Box, 2>& after, Size bar) {
    const int32_t end = bar.height / 2 + 1;  // with the anti-aliased pixel beside it
    std::array<Box, 4> parts{};
    for (size_t i = 0; i < before.size(); ++i) {
        const int32_t left = std::min(before[i].x, after[i].x), right = std::max(before[i].x, after[i].x);
        if (left == right) continue;
        const Box strip = {left - 1, 0, right - left + end + 1, bar.height};
        const Box whole = {0, 0, bar.width, bar.height};
        parts[2 * i] = intersection(strip, whole);
        parts[2 * i + 1] = intersection({strip.x + before[i].width - end + 1, 0, strip.width, bar.height}, whole);
    }
    return parts;
}

}  // namespace pdx
