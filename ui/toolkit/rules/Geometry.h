// Points, sizes and rectangles in pixels, as plain values for rules and windows.
#pragma once

#include <algorithm>
#include <cstdint>

namespace pdx {

struct Point {
    int32_t x = 0;
    int32_t y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    int32_t width = 0;
    int32_t height = 0;
    bool operator==(const Size&) const = default;
};

/// A rectangle by its edges, as windows have it; right and bottom are outside.
struct Rect {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
    [[nodiscard]] constexpr int32_t width() const { return right - left; }
    [[nodiscard]] constexpr int32_t height() const { return bottom - top; }
    bool operator==(const Rect&) const = default;
};

/// A rectangle by its corner and size, as drawing and page layout have it.
struct Box {
    int32_t x = 0;
    int32_t y = 0;
    int32_t width = 0;
    int32_t height = 0;
    bool operator==(const Box&) const = default;
};

/// A rectangle by its corner and size for text.
struct RectF {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;
    bool operator==(const RectF&) const = default;
};

constexpr Box boxOf(const Rect& rect) { return {rect.left, rect.top, rect.width(), rect.height()}; }

/// The common part of two boxes; width or height is 0 when there is none.
constexpr Box intersection(const Box& one, const Box& other) {
    const int32_t left = std::max(one.x, other.x), top = std::max(one.y, other.y);
    const int32_t right = std::min(one.x + one.width, other.x + other.width);
    const int32_t bottom = std::min(one.y + one.height, other.y + other.height);
    return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
}

/// Whether the point is inside: the left and top edges are inside, the right and bottom edges outside.
constexpr bool contains(const RectF& rect, float x, float y) {
    return x >= rect.x && x < rect.x + rect.width && y >= rect.y && y < rect.y + rect.height;
}

/// A length cut towards zero, 0 for a NaN. Lengths are limited to 2^28, so that sums of those that a text asks for do
/// not overflow.
constexpr int32_t wholePixels(double length) {
    constexpr double farthest = 1 << 28;
    return length == length ? static_cast<int32_t>(std::clamp(length, -farthest, farthest)) : 0;
}

}  // namespace pdx
