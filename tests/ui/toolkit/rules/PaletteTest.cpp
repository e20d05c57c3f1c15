#include "ui/toolkit/rules/Palette.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

/// FNV-1a over the red, green and blue bytes of the ramp.
uint32_t checksum(const palette::Ramp& ramp) {
    uint32_t sum = 2166136261u;
    for (const Color color : ramp)
        for (const int shift : {16, 8, 0}) sum = (sum ^ (color >> shift & 0xFF)) * 16777619u;
    return sum;
}

TEST(Palette, HasTheColorsOfTheDesignAndIsOpaque) {
    using namespace palette;
    struct Case {
        const char* name;
        const Ramp& ramp;
        uint32_t designed;  ///< checksum of the design's own table
    };
    const Case cases[] = {
        {"Blue", Blue, 0x28A345FE},     {"Crimson", Crimson, 0x578D171A}, {"Mint", Mint, 0xA8FB4FC4},
        {"Violet", Violet, 0x4E1960F0}, {"Coral", Coral, 0x6B47145A},     {"Aqua", Aqua, 0x94DFC281},
        {"Red", Red, 0xAA5B71DF},       {"Green", Green, 0xC13DE278},     {"Yellow", Yellow, 0x45635A7E},
        {"Grey", Grey, 0xA2431AA1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(checksum(c.ramp), c.designed) << c.name;
        for (const Color color : c.ramp) EXPECT_EQ(color >> 24, 0xFFu) << c.name << std::hex << " " << color;
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
