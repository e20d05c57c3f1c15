// The thumb of a scroll track, and the positions that dragging and the wheel give.
#pragma once

#include <algorithm>
#include <cstdint>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

struct TrackState {
    bool vertical = true;
    Size client;
    int32_t position = 0;
    int32_t minimum = 0;
    int32_t maximum = 0;
    int32_t pageSize = 0;

    /// The range that the track's length covers; at least 1, because it is a divisor.
    [[nodiscard]] constexpr int32_t range() const { return std::max(pageSize + maximum - minimum, 1); }
    [[nodiscard]] constexpr int32_t length() const { return vertical ? client.height : client.width; }
    [[nodiscard]] constexpr int32_t clamped(int64_t wanted) const {
        return static_cast<int32_t>(std::clamp<int64_t>(wanted, minimum, std::max(minimum, maximum)));
    }
};

inline constexpr int32_t thumbWidth = 4;
inline constexpr int32_t shortestThumb = 10;

/// The thumb in pixels, in the middle of the track's width.
constexpr Box thumbBox(const TrackState& track) {
    const auto start = static_cast<int32_t>(int64_t{track.position} * track.length() / track.range());
    const int32_t size =
        std::max(static_cast<int32_t>(int64_t{track.length()} * track.pageSize / track.range()), shortestThumb);
    if (track.vertical) return {(track.client.width - thumbWidth) / 2, start, thumbWidth, size};
    return {start, (track.client.height - thumbWidth) / 2, size, thumbWidth};
}

/// The position, unclamped, after a drag by that many pixels.
constexpr int64_t draggedPosition(const TrackState& track, int32_t startPosition, int32_t pixels) {
    return track.length() <= 0 ? startPosition : startPosition + int64_t{pixels} * track.range() / track.length();
}

/// The position, unclamped, after a turn of the wheel; 120 is one notch, and the division cuts towards zero.
constexpr int64_t wheeledPosition(int32_t position, int32_t lineSize, int32_t delta) {
    return position - int64_t{lineSize} * delta / 120;
}

}  // namespace pdx
