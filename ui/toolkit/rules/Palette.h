// The design palette: ten ramps of opaque colours, from the darkest (0) through the base (5) to the lightest (10).
// Colours are ARGB words, with alpha in the top byte.
#pragma once

#include <array>
#include <cstdint>

namespace pdx {

using Color = uint32_t;

/// The colour with another alpha, 0 (clear) to 255 (opaque).
constexpr Color WithAlpha(Color color, uint8_t alpha) { return (color & 0x00FFFFFFu) | (uint32_t{alpha} << 24); }

namespace palette {

using Ramp = std::array<Color, 11>;

/// A ramp of RGB values as opaque colours.
constexpr Ramp opaque(Ramp ramp) {
    for (Color& color : ramp) color = WithAlpha(color, 0xFF);
    return ramp;
}

// clang-format off
inline constexpr Ramp Blue    = opaque({0x14357E, 0x174097, 0x1B4AB0, 0x1F55CA, 0x235FE3, 0x276AFC, 0x3D79FC, 0x5288FD, 0x6897FD, 0x7DA6FD, 0x93B5FE});
inline constexpr Ramp Crimson = opaque({0x800029, 0x990031, 0xB30039, 0xCC0042, 0xE6004A, 0xFF0052, 0xFF1A63, 0xFF3375, 0xFF4D86, 0xFF6697, 0xFF80A9});
inline constexpr Ramp Mint    = opaque({0x1A804F, 0x1F995E, 0x24B36E, 0x29CC7E, 0x2EE68D, 0x33FF9D, 0x47FFA7, 0x5CFFB1, 0x70FFBA, 0x85FFC4, 0x99FFCE});
inline constexpr Ramp Violet  = opaque({0x42347F, 0x4F3E98, 0x5C49B1, 0x6953CA, 0x765EE4, 0x8368FD, 0x8F77FD, 0x9C86FD, 0xA895FE, 0xB5A4FE, 0xC1B4FE});
inline constexpr Ramp Coral   = opaque({0x803727, 0x99412E, 0xB34C36, 0xCC573E, 0xE66245, 0xFF6D4D, 0xFF7C5F, 0xFF8A71, 0xFF9982, 0xFFA794, 0xFFB6A6});
inline constexpr Ramp Aqua    = opaque({0x387E80, 0x439799, 0x4EB0B3, 0x5ACACC, 0x65E3E6, 0x70FCFF, 0x7EFCFF, 0x8DFDFF, 0x9BFDFF, 0xA9FDFF, 0xB8FEFF});
inline constexpr Ramp Red     = opaque({0x7D2424, 0x952B2B, 0xAE3232, 0xC73939, 0xE04040, 0xF94747, 0xFA5959, 0xFA6C6C, 0xFB7E7E, 0xFB9191, 0xFCA3A3});
inline constexpr Ramp Green   = opaque({0x008042, 0x00994F, 0x00B35C, 0x00CC6A, 0x00E677, 0x00FF84, 0x1AFF90, 0x33FF9D, 0x4DFFA9, 0x66FFB5, 0x80FFC2});
inline constexpr Ramp Yellow  = opaque({0x807336, 0x998A40, 0xB3A14B, 0xCCB856, 0xE6CF60, 0xFFE66B, 0xFFE97A, 0xFFEB89, 0xFFEE97, 0xFFF0A6, 0xFFF3B5});
inline constexpr Ramp Grey    = opaque({0x000000, 0x0B0E15, 0x141724, 0x171A29, 0x1A1D2E, 0x1D2033, 0x343647, 0x62626F, 0x908E97, 0xD5D0D3, 0xFFFFFF});
// clang-format on

// The bases of the ramps.
inline constexpr Color violet = Violet[5];
inline constexpr Color coral = Coral[5];
inline constexpr Color aqua = Aqua[5];
inline constexpr Color blue = Blue[5];
inline constexpr Color crimson = Crimson[5];
inline constexpr Color mint = Mint[5];
inline constexpr Color red = Red[5];
inline constexpr Color green = Green[5];
inline constexpr Color yellow = Yellow[5];
// By role.
inline constexpr Color darkGrey = Grey[2];
inline constexpr Color disabledText = Grey[8];
inline constexpr Color defaultText = Grey[10];
inline constexpr Color plainBackground = Grey[3];
inline constexpr Color link = Blue[8];
inline constexpr Color lightVeil = WithAlpha(Grey[3], 0x98);
inline constexpr Color denseVeil = WithAlpha(Grey[3], 0xCB);

}  // namespace palette
}  // namespace pdx
