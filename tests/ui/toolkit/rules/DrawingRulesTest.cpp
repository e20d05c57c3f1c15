// The rules of drawing: places of texts and their lines, outlines, scaling.
#include <gtest/gtest.h>

#include <vector>

#include "ui/toolkit/rules/AreaScale.h"
#include "ui/toolkit/rules/Palette.h"
#include "ui/toolkit/rules/RoundedPath.h"
#include "ui/toolkit/rules/TextBounds.h"

namespace pdx {
namespace {

using Parts = std::vector<PathPart>;

TEST(TextBounds, MoveToTheAlignedPlaceOnce) {
    const RectF layout = {10, 20, 100, 50};
    const std::tuple<RectF, int32_t, int32_t, RectF> cases[] = {
        {{10, 20, 40, 10}, 0, 0, {10, 20, 40, 10}},
        {{10, 20, 40, 10}, 1, 1, {40, 40, 40, 10}},
        {{10, 20, 40, 10}, 2, 2, {70, 60, 40, 10}},
        {{10, 20, 120, 60}, 1, 1, {0, 15, 120, 60}},  // hangs out on both sides
        {{40, 40, 40, 10}, 1, 1, {40, 40, 40, 10}},   // the platform has aligned it
    };
    for (const auto& [measured, alignX, alignY, bounds] : cases)
        EXPECT_EQ(alignedBounds(measured, layout, alignX, alignY), bounds) << bounds.x;
}

TEST(FontLines, AreWholePixels) {
    struct Case {
        const char* what;
        FontLine line;
        RectF text;
        float ascent, size;
        Box expected;
    };
    const std::vector<Case> cases = {
        {"a tenth of the size below the baseline", FontLine::under, {10, 20, 50, 16}, 12, 14, {10, 33, 50, 1}},
        {"three tenths above the baseline", FontLine::through, {10, 20, 50, 16}, 12, 14, {10, 28, 50, 1}},
        {"never thinner than a pixel", FontLine::under, {0, 0, 9, 7}, 4, 5, {0, 5, 9, 1}},
        {"a pixel and more than a half", FontLine::under, {0, 0, 9, 25}, 16, 22, {0, 18, 9, 2}},
        {"each end at its nearest pixel", FontLine::under, {10.4f, 0, 20.2f, 12}, 8, 10, {10, 9, 21, 1}},
        {"and the width with them", FontLine::under, {10.5f, 0, 20.2f, 12}, 8, 10, {11, 9, 20, 1}},
        {"left of the origin", FontLine::through, {-0.75f, -20, 3.25f, 12}, 8, 10, {-1, -15, 4, 1}},
    };
    for (const Case& c : cases) EXPECT_EQ(fontLineBox(c.line, c.text, c.ascent, c.size), c.expected) << c.what;
}

TEST(RoundedPath, ListsItsPartsClockwiseFromTheTopSide) {
    using L = PathLine;
    using A = PathArc;
    const Parts whole = {L{{18, 20}, {102, 20}},     A{{94, 20, 16, 16}, 270, 90}, L{{110, 28}, {110, 62}},
                         A{{94, 54, 16, 16}, 0, 90}, L{{102, 70}, {18, 70}},       A{{10, 54, 16, 16}, 90, 90},
                         L{{10, 62}, {10, 28}},      A{{10, 20, 16, 16}, 180, 90}};
    EXPECT_EQ(roundedPathParts({10, 20, 100, 50}, 8), whole);
    // The arcs of a large radius join in the middle: 4 below the top of a height of 9; the lower ones hang from it.
    const Parts joined = {L{{6, 10}, {94, 10}}, A{{88, 10, 12, 12}, 270, 90}, A{{88, 8, 12, 12}, 0, 90},
                          L{{94, 19}, {6, 19}}, A{{0, 8, 12, 12}, 90, 90},    A{{0, 10, 12, 12}, 180, 90}};
    EXPECT_EQ(roundedPathParts({0, 10, 100, 9}, 6), joined);
}

TEST(AreaScale, AveragesTheSourceUnderEachPixel) {
    const struct {
        const char* what;
        Size source;
        std::vector<uint8_t> blue;  ///< of each pixel; green is its complement, red is 7
        Size target;
        std::vector<uint8_t> scaled;
    } rows[] = {
        {"as it is", {2, 1}, {0, 255}, {2, 1}, {0, 255}},
        {"half, rounded", {2, 2}, {0, 1, 2, 3}, {1, 1}, {2}},
        {"columns share a pixel", {3, 1}, {0, 90, 255}, {2, 1}, {30, 200}},
        {"rows share a pixel", {1, 3}, {0, 90, 255}, {1, 2}, {30, 200}},
        {"nothing is passed over", {5, 1}, {0, 0, 250, 0, 0}, {1, 1}, {50}},
        {"the last one counts", {5, 1}, {0, 0, 0, 0, 250}, {2, 1}, {0, 100}},
    };
    for (const auto& row : rows) {
        constexpr ptrdiff_t sourcePadding = 2, targetPadding = 8;
        const ptrdiff_t sourceStride = row.source.width * 3 + sourcePadding;
        const ptrdiff_t targetStride = row.target.width * 4 + targetPadding;
        std::vector<uint8_t> source(static_cast<size_t>(sourceStride * row.source.height), 99);
        for (int32_t y = 0; y < row.source.height; ++y)
            for (int32_t x = 0; x < row.source.width; ++x) {
                uint8_t* pixel = &source[static_cast<size_t>(sourceStride * y + x * 3)];
                pixel[0] = row.blue[static_cast<size_t>(row.source.width * y + x)];
                pixel[1] = static_cast<uint8_t>(255 - pixel[0]);
                pixel[2] = 7;
            }
        std::vector<uint8_t> target(static_cast<size_t>(targetStride * row.target.height), 99);
        scaleByArea({source.data(), sourceStride, row.source}, {target.data(), targetStride, row.target});
        for (int32_t y = 0; y < row.target.height; ++y)
            for (int32_t x = 0; x < row.target.width; ++x) {
                const uint8_t* pixel = &target[static_cast<size_t>(targetStride * y + x * 4)];
                EXPECT_EQ(pixel[0], row.scaled[static_cast<size_t>(row.target.width * y + x)]) << row.what;
                EXPECT_NEAR(pixel[1], 255 - pixel[0], 1) << row.what;
                EXPECT_EQ(pixel[2], 7) << row.what;
                EXPECT_EQ(pixel[3], 255) << row.what;
            }
    }
    const Size large = {longestSide, longestSide};
    const std::vector<uint8_t> white(static_cast<size_t>(longestSide) * longestSide * 3, 255);
    std::vector<uint8_t> one(4);
    scaleByArea({white.data(), longestSide * 3, large}, {one.data(), 4, {1, 1}});
    EXPECT_EQ(one, std::vector<uint8_t>(4, 255)) << "the largest sum";
    EXPECT_TRUE(canScaleByArea(large, {1, 1}));
    EXPECT_FALSE(canScaleByArea({longestSide + 1, 1}, {1, 1}));
    EXPECT_FALSE(canScaleByArea({2, 2}, {3, 1}));
    EXPECT_FALSE(canScaleByArea({2, 2}, {1, 3}));
    EXPECT_FALSE(canScaleByArea({2, 2}, {0, 1}));
}

}  // namespace
}  // namespace pdx
