#include "ui/toolkit/rules/RoundedPath.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

using Parts = std::vector<PathPart>;

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
    // Narrower than its corners both ways: arcs only.
    EXPECT_EQ(roundedPathParts({0, 0, 6, 10}, 5), (Parts{
                                                      PathArc{{-2, 0, 10, 10}, 270, 90},
                                                      PathArc{{-2, 0, 10, 10}, 0, 90},
                                                      PathArc{{0, 0, 10, 10}, 90, 90},
                                                      PathArc{{0, 0, 10, 10}, 180, 90},
                                                  }));
}

TEST(RoundedPath, HasSquareCornersForARadiusOfZero) {
    const Parts parts = roundedPathParts({0, 0, 4, 2}, 0);
    ASSERT_EQ(parts.size(), 8u);
    EXPECT_EQ(parts[0], PathPart(PathLine{{0, 0}, {4, 0}}));
    EXPECT_EQ(parts[6], PathPart(PathLine{{0, 2}, {0, 0}}));
    EXPECT_EQ(parts[1], PathPart(PathArc{{4, 0, 0, 0}, 270, 90}));
}

}  // namespace
}  // namespace pdx
