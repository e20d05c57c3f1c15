// A picture made smaller so that nothing of it is lost.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

/// Rows of pixels in memory, the first one on top. Three bytes a pixel: blue, green, red; four: alpha behind them.
template <typename Byte>
struct PixelRows {
    Byte* first;
    ptrdiff_t stride;  ///< bytes from row to row
    Size size;
    [[nodiscard]] Byte* row(int32_t y) const { return first + stride * y; }
};

/// Longest side of a picture that can be made smaller: sums of 32 bits hold its whole area.
inline constexpr int32_t longestSide = 4096;

/// Whether the target is a smaller picture, in neither direction larger, and both are ones that scaleByArea takes.
[[nodiscard]] bool canScaleByArea(Size source, Size target);

/// Each pixel of the target (four bytes, opaque) becomes the mean of the source (three bytes) under its area, rounded.
void scaleByArea(const PixelRows<const uint8_t>& source, const PixelRows<uint8_t>& target);

}  // namespace pdx
