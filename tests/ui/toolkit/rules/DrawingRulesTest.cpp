// What is drawn, as values: colours, places of texts and their lines, outlines.
#include <gtest/gtest.h>

#include <vector>

#include "ui/toolkit/rules/FontLines.h"
#include "ui/toolkit/rules/Palette.h"
#include "ui/toolkit/rules/RoundedPath.h"
#include "ui/toolkit/rules/TextBounds.h"

namespace pdx {
namespace {

using Parts = std::vector<PathPart>;

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

TEST(TextBounds, LieWhereTheTextIsAligned) {
    const RectF layout = {10, 20, 100, 50};
    const std::tuple<RectF, int32_t, int32_t, RectF> cases[] = {
        {{10, 20, 40, 10}, 0, 0, {10, 20, 40, 10}},
        {{10, 20, 40, 10}, 1, 1, {40, 40, 40, 10}},
        {{10, 20, 40, 10}, 2, 2, {70, 60, 40, 10}},
        {{10, 20, 120, 60}, 1, 1, {0, 15, 120, 60}},  // hangs out on both sides
        {{40, 40, 40, 10}, 1, 1, {40, 40, 40, 10}},   // told its place by the platform
    };
    for (const auto& [measured, alignX, alignY, bounds] : cases)
        EXPECT_EQ(alignedBounds(measured, layout, alignX, alignY), bounds) << bounds.x;
}

TEST(FontLines, LieInWholePixels) {
    struct Case {
        const char* what;
        FontLine line;
        RectF text;
        float ascent, size;
        Box expected;
    };
    const std::vector<Case> cases = {
        {"a tenth of the size below the letters' foot", FontLine::under, {10, 20, 50, 16}, 12, 14, {10, 33, 50, 1}},
        {"three tenths above it", FontLine::through, {10, 20, 50, 16}, 12, 14, {10, 28, 50, 1}},
        {"never thinner than a pixel", FontLine::under, {0, 0, 9, 7}, 4, 5, {0, 5, 9, 1}},
        {"a pixel and more than a half", FontLine::under, {0, 0, 9, 25}, 16, 22, {0, 18, 9, 2}},
        {"each end goes to its nearest pixel", FontLine::under, {10.4f, 0, 20.2f, 12}, 8, 10, {10, 9, 21, 1}},
        {"and the width with them", FontLine::under, {10.5f, 0, 20.2f, 12}, 8, 10, {11, 9, 20, 1}},
        {"left of the origin", FontLine::through, {-0.75f, -20, 3.25f, 12}, 8, 10, {-1, -15, 4, 1}},
    };
    for (const Case& c : cases) EXPECT_EQ(fontLineBox(c.line, c.text, c.ascent, c.size), c.expected) << c.what;
}

TEST(RoundedPath, GoesClockwiseFromTheTopSide) {
    EXPECT_EQ(roundedPathParts({10, 20, 100, 50}, 8), (Parts{
                                                          PathLine{{18, 20}, {102, 20}},
                                                          PathArc{{94, 20, 16, 16}, 270, 90},
                                                          PathLine{{110, 28}, {110, 62}},
                                                          PathArc{{94, 54, 16, 16}, 0, 90},
                                                          PathLine{{102, 70}, {18, 70}},
                                                          PathArc{{10, 54, 16, 16}, 90, 90},
                                                          PathLine{{10, 62}, {10, 28}},
                                                          PathArc{{10, 20, 16, 16}, 180, 90},
                                                      }));
}

TEST(RoundedPath, IsACapsuleWhenTheRadiusIsHalfTheHeight) {
    EXPECT_EQ(roundedPathParts({0, 0, 100, 8}, 4), (Parts{
                                                       PathLine{{4, 0}, {96, 0}},
                                                       PathArc{{92, 0, 8, 8}, 270, 90},
                                                       PathArc{{92, 0, 8, 8}, 0, 90},
                                                       PathLine{{96, 8}, {4, 8}},
                                                       PathArc{{0, 0, 8, 8}, 90, 90},
                                                       PathArc{{0, 0, 8, 8}, 180, 90},
                                                   }));
}

TEST(RoundedPath, LetsTheArcsOfALargerRadiusMeetInTheMiddle) {
    // The middle of a height of 9 is 4 below the top, and the lower arcs hang from it.
    EXPECT_EQ(roundedPathParts({0, 10, 100, 9}, 6), (Parts{
                                                        PathLine{{6, 10}, {94, 10}},
                                                        PathArc{{88, 10, 12, 12}, 270, 90},
                                                        PathArc{{88, 8, 12, 12}, 0, 90},
                                                        PathLine{{94, 19}, {6, 19}},
                                                        PathArc{{0, 8, 12, 12}, 90, 90},
                                                        PathArc{{0, 10, 12, 12}, 180, 90},
                                                    }));
}

}  // namespace
}  // namespace pdx
