#include "ui/toolkit/rules/RoundedPath.h"

namespace pdx {

std::vector<PathPart> roundedPathParts(const Box& box, int32_t radius) {
    const int32_t r = radius, side = 2 * radius;
    const int32_t x = box.x, y = box.y, farX = box.x + box.width, farY = box.y + box.height;
    int32_t left = x + r, right = farX - r, top = y + r, bottom = farY - r;
    if (left > right) left = right = x + box.width / 2;
    if (top > bottom) top = bottom = y + box.height / 2;

    std::vector<PathPart> parts;
    parts.reserve(8);
    if (left != right) parts.emplace_back(PathLine{{left, y}, {right, y}});
    parts.emplace_back(PathArc{{right - r, y, side, side}, 270, 90});
    if (top != bottom) parts.emplace_back(PathLine{{farX, top}, {farX, bottom}});
    parts.emplace_back(PathArc{{right - r, bottom - r, side, side}, 0, 90});
    if (left != right) parts.emplace_back(PathLine{{right, farY}, {left, farY}});
    parts.emplace_back(PathArc{{x, bottom - r, side, side}, 90, 90});
    if (top != bottom) parts.emplace_back(PathLine{{x, bottom}, {x, top}});
    parts.emplace_back(PathArc{{x, y, side, side}, 180, 90});
    return parts;
}

}  // namespace pdx
