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

/// Clockwise from the top side, four arcs and the sides that have a length; the figure is still to be closed. A radius
/// of more than half a side gives a capsule: those two sides vanish and their arcs meet in the middle.
std::vector<PathPart> roundedPathParts(const Box& box, int32_t radius);

}  // namespace pdx
