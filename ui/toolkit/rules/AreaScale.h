// Scaling a picture down so that every source pixel counts.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

/// Rows of pixels in memory, from top to bottom. A pixel is blue, green and red, with a fourth byte for alpha.
template <typename Byte>
struct PixelRows {
    Byte* first;
    ptrdiff_t stride;  ///< bytes from row to row
    Size size;
    [[nodiscard]] Byte* row(int32_t y) const { return first + stride * y; }
};

/// The longest side of a source picture: its whole area fits sums of 32 bits.
inline constexpr int32_t longestSide = 4096;

/// Whether scaleByArea can make the target: it is not empty and nowhere larger than the source, which is not too long.
[[nodiscard]] bool canScaleByArea(Size source, Size target);

/// Sets each pixel of the target (four bytes, opaque) to the rounded mean of the source (three bytes) under its area.
void scaleByArea(const PixelRows<const uint8_t>& source, const PixelRows<uint8_t>& target);

}  // namespace pdx
