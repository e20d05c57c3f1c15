// The outline of a rectangle with rounded corners.
#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

struct PathLine {
    Point from;
    Point to;
    bool operator==(const PathLine&) const = default;
};

/// A part of the ellipse that fills the box; angles in degrees, clockwise from the right.
struct PathArc {
    Box box;
    int32_t start = 0;
    int32_t sweep = 0;
    bool operator==(const PathArc&) const = default;
};

using PathPart = std::variant<PathLine, PathArc>;

/// Four arcs and the sides that have a length, clockwise from the top side; the caller closes the figure. A radius of
/// more than half a side gives a capsule: two sides vanish, and their arcs meet in the middle.
std::vector<PathPart> roundedPathParts(const Box& box, int32_t radius);

}  // namespace pdx
