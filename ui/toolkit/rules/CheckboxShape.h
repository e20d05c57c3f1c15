// The geometry of a check box, in pixels.
#pragma once

#include <algorithm>
#include <array>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

inline constexpr int32_t largestCheckbox = 30;

/// The square at the left edge of a control of that height.
constexpr Box checkboxBox(int32_t height) {
    const int32_t side = std::min(height - 2, largestCheckbox);
    return {1, (height - side) / 2, side, side};
}

/// The three points of the check mark.
constexpr std::array<Point, 3> checkMark(const Box& box) {
    const int32_t side = box.width;
    return {{{box.x + side / 5, box.y + side / 2},
             {box.x + 3 * side / 8, box.y + 2 * side / 3},
             {box.x + 4 * side / 5, box.y + side / 4}}};
}

/// The left edge of the label, ten pixels right of the square.
constexpr int32_t checkboxLabelLeft(const Box& box) { return box.x + box.width + 10; }

}  // namespace pdx
