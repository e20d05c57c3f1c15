// The alignment and the ellipsis of a label, by its window style.
#pragma once

#include <cstdint>

namespace pdx {

/// The values are those of GDI+.
struct LabelFormat {
    int32_t alignment;  ///< 0 near, 1 centred, 2 far
    int32_t trimming;   ///< 0 none, an ellipsis: 3 at a character, 4 at a word, 5 in a path
    bool operator==(const LabelFormat&) const = default;
};

/// SS_CENTER is the bit of value 1 and wins over SS_RIGHT, of value 2. Bits 14 and 15 are the ellipsis.
constexpr LabelFormat labelFormat(uint32_t style) {
    constexpr int32_t trimmings[] = {0, 3, 5, 4};
    return {(style & 1) != 0 ? 1 : (style & 2) != 0 ? 2 : 0, trimmings[style >> 14 & 3]};
}

}  // namespace pdx
