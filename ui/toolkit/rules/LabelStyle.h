// How a label's window style aligns its text, and cuts it where it is too long.
#pragma once

#include <cstdint>

namespace pdx {

/// By GDI+'s numbers.
struct LabelFormat {
    int32_t alignment;  ///< 0 near, 1 centred, 2 far
    int32_t trimming;   ///< 0 as it is, an ellipsis 3 at a character, 4 at a word, 5 in a path
    bool operator==(const LabelFormat&) const = default;
};

/// SS_CENTER is the bit of value 1, and goes before SS_RIGHT, that of value 2; the ellipsis has the bits 14 and 15.
constexpr LabelFormat labelFormat(uint32_t style) {
    constexpr int32_t trimmings[] = {0, 3, 5, 4};
    return {(style & 1) != 0 ? 1 : (style & 2) != 0 ? 2 : 0, trimmings[style >> 14 & 3]};
}

}  // namespace pdx
