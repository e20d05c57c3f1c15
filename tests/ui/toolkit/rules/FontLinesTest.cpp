#include "ui/toolkit/rules/FontLines.h"

#include <gtest/gtest.h>

#include <vector>

namespace pdx {
namespace {

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
        {"large", FontLine::under, {10, 20, 50, 60}, 40, 56, {10, 66, 50, 4}},
        {"large, through", FontLine::through, {10, 20, 50, 60}, 40, 56, {10, 43, 50, 4}},
        {"never thinner than a pixel", FontLine::under, {0, 0, 9, 7}, 4, 5, {0, 5, 9, 1}},
        {"of no size", FontLine::through, {0, 0, 9, 7}, 4, 0, {0, 4, 9, 1}},
        {"a pixel and less than a half", FontLine::under, {0, 0, 9, 25}, 16, 20, {0, 18, 9, 1}},
        {"a pixel and more than a half", FontLine::under, {0, 0, 9, 25}, 16, 22, {0, 18, 9, 2}},
        {"the top's half goes down", FontLine::under, {0, 0.25f, 9, 12}, 8.25f, 10, {0, 10, 9, 1}},
        {"each end goes to its nearest pixel", FontLine::under, {10.4f, 0, 20.2f, 12}, 8, 10, {10, 9, 21, 1}},
        {"and the width with them", FontLine::under, {10.5f, 0, 20.2f, 12}, 8, 10, {11, 9, 20, 1}},
        {"left of the origin", FontLine::through, {-0.75f, -20, 3.25f, 12}, 8, 10, {-1, -15, 4, 1}},
    };
    for (const Case& c : cases) EXPECT_EQ(fontLineBox(c.line, c.text, c.ascent, c.size), c.expected) << c.what;
}

}  // namespace
}  // namespace pdx
