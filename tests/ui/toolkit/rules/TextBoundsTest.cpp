#include "ui/toolkit/rules/TextBounds.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(TextBounds, LieWhereTheTextIsAligned) {
    const RectF layout = {10, 20, 100, 50};
    struct Case {
        RectF measured;
        int32_t alignX, alignY;
        RectF bounds;
    };
    const Case cases[] = {
        {{10, 20, 40, 10}, 0, 0, {10, 20, 40, 10}},
        {{10, 20, 40, 10}, 1, 1, {40, 40, 40, 10}},
        {{10, 20, 40, 10}, 2, 2, {70, 60, 40, 10}},
        {{10, 20, 40, 10}, 0, 1, {10, 40, 40, 10}},
        {{10, 20, 100, 50}, 2, 1, {10, 20, 100, 50}},
        {{10, 20, 120, 60}, 1, 1, {0, 15, 120, 60}},  // hangs out on both sides
        {{40, 40, 40, 10}, 1, 1, {40, 40, 40, 10}},   // told its place by the platform
        {{70, 20, 40, 10}, 2, 0, {70, 20, 40, 10}},
    };
    for (const Case& row : cases)
        EXPECT_EQ(alignedBounds(row.measured, layout, row.alignX, row.alignY), row.bounds) << row.bounds.x;
}

}  // namespace
}  // namespace pdx
