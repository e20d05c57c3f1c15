#include "ui/toolkit/rules/Palette.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(Palette, IsOpaqueAndGetsLighterFromStepToStep) {
    using namespace palette;
    const auto brightness = [](Color color) { return (color >> 16 & 0xFF) + (color >> 8 & 0xFF) + (color & 0xFF); };
    for (const Ramp& ramp : {Blue, Crimson, Mint, Violet, Coral, Aqua, Red, Green, Yellow, Grey})
        for (size_t i = 0; i < ramp.size(); ++i) {
            EXPECT_EQ(ramp[i] >> 24, 0xFFu) << std::hex << ramp[i];
            EXPECT_TRUE(i == 0 || brightness(ramp[i]) > brightness(ramp[i - 1])) << std::hex << ramp[i];
        }
}

TEST(Palette, PutsAnotherAlphaUnderAColor) {
    EXPECT_EQ(WithAlpha(palette::Grey[3], 178), 0xB2171A29u);
    EXPECT_EQ(WithAlpha(0x12FFFFFF, 12), 0x0CFFFFFFu);
    EXPECT_EQ(WithAlpha(palette::Grey[10], 0), 0x00FFFFFFu);
    EXPECT_EQ(palette::lightVeil, 0x98171A29u);
    EXPECT_EQ(palette::denseVeil, 0xCB171A29u);
}

}  // namespace
}  // namespace pdx
