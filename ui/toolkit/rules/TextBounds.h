// The place of a measured text in its layout rectangle.
#pragma once

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

/// The measured rectangle at its aligned place; alignX and alignY are 0 (near), 1 (centre), 2 (far). GDI+ of Windows
/// returns the aligned place itself. Wine's leaves every text at the layout's corner, so this moves it.
constexpr RectF alignedBounds(RectF measured, const RectF& layout, int32_t alignX, int32_t alignY) {
    if (measured.x == layout.x) measured.x += (layout.width - measured.width) * static_cast<float>(alignX) / 2;
    if (measured.y == layout.y) measured.y += (layout.height - measured.height) * static_cast<float>(alignY) / 2;
    return measured;
}

}  // namespace pdx
