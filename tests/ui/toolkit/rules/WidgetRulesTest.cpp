// The rules for the widgets' colours, geometry and movement.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "ui/toolkit/rules/ButtonLook.h"
#include "ui/toolkit/rules/CheckboxShape.h"
#include "ui/toolkit/rules/LabelStyle.h"
#include "ui/toolkit/rules/ProgressShape.h"
#include "ui/toolkit/rules/TrackShape.h"

namespace pdx {
namespace {

using enum VisualState;

TEST(Button, HasTheColoursOfItsStateAndStyle) {
    constexpr Color text = 0xFFABCDEF, none = 0;
    const struct {
        VisualState state;
        bool focused;
        Color primary, primaryBorder, secondary, secondaryBorder, close;
    } rows[] = {
        {disabled, true, 0xFF343647, none, 0xB2343647, 0xFF343647, 0x4C343647},
        {normal, false, 0xFF276AFC, none, 0xB2171A29, 0xFF276AFC, 0x7F343647},
        {hover, false, 0xFF1F55CA, none, 0x4C000000, 0xFF1F55CA, 0x33000000},
        {hover, true, 0xFF1F55CA, text, 0x4C000000, text, 0x33000000},
        {focused, true, 0xFF276AFC, text, 0xB2171A29, text, 0x7F343647},
        {pressed, true, 0xFF3D79FC, none, 0x0CFFFFFF, 0xFF3D79FC, 0x0CFFFFFF},
    };
    const ButtonColors colors;
    for (const auto& row : rows) {
        const ButtonLook filled = buttonLook(colors, false, row.state, row.focused, text);
        const ButtonLook outlined = buttonLook(colors, true, row.state, row.focused, text);
        EXPECT_EQ((std::array{filled.fill, filled.border, outlined.fill, outlined.border}),
                  (std::array{row.primary, row.primaryBorder, row.secondary, row.secondaryBorder}))
            << &row - rows;
        EXPECT_EQ(closeButtonFills.of(row.state), row.close) << &row - rows;
    }
}

TEST(Label, ReadsAlignmentAndEllipsisFromItsStyle) {
    const std::pair<uint32_t, LabelFormat> rows[] = {
        {0, {0, 0}},      {1, {1, 0}},      {2, {2, 0}},      {3, {1, 0}},
        {0x4000, {0, 3}}, {0x8000, {0, 5}}, {0xC000, {0, 4}}, {0x8002, {2, 5}},
    };
    for (const auto& [style, format] : rows) EXPECT_EQ(labelFormat(0x50000000 | style), format) << style;
}

TEST(Checkbox, ShowsFocusAndCheckWithItsBorder) {
    const CheckboxColors colors;
    const std::tuple<VisualState, bool, bool, Color> rows[] = {
        {disabled, true, true, 0xFF343647}, {hover, false, false, 0xFF908E97},  {hover, true, false, 0xFF276AFC},
        {hover, false, true, 0xFF276AFC},   {focused, true, false, 0xFF276AFC}, {normal, false, false, 0xFF62626F},
        {normal, false, true, 0xFF276AFC},  {pressed, true, false, 0xFF276AFC}, {pressed, false, false, 0xFF62626F},
    };
    for (const auto& [state, focused, checked, border] : rows)
        EXPECT_EQ(checkboxBorder(colors, state, focused, checked), border);
    EXPECT_EQ(checkboxBox(22), (Box{1, 1, 20, 20}));
    EXPECT_EQ(checkboxBox(60), (Box{1, 15, 30, 30}));
    EXPECT_EQ(checkMark({1, 1, 20, 20})[0], (Point{5, 11}));
    EXPECT_EQ(checkMark({1, 1, 20, 20})[1], (Point{8, 14}));
    EXPECT_EQ(checkMark({1, 1, 20, 20})[2], (Point{17, 6}));
    EXPECT_EQ(checkboxLabelLeft({1, 1, 20, 20}), 31);
}

TEST(Progress, FillsByPositionAndSweepsFromLeftToRight) {
    EXPECT_EQ(filledWidth(0, 100, 0, 320), 0);
    EXPECT_EQ(filledWidth(0, 100, 33, 320), 105);
    EXPECT_EQ(filledWidth(0, 100, 100, 320), 320);
    EXPECT_EQ(filledWidth(5, 5, 5, 320), 0);
    const Size bar = {320, 8};
    // At the start of a sweep both chunks are left of the bar, at its end right of it.
    EXPECT_EQ(marqueeChunks(bar, 0)[0], (Box{-256, 0, 256, 8}));
    EXPECT_EQ(marqueeChunks(bar, 2500)[0], (Box{-256, 0, 256, 8}));
    EXPECT_EQ(marqueeChunks(bar, 0)[1], (Box{-256 - 256 - 96, 0, 256, 8}));
    EXPECT_GE(marqueeChunks(bar, 2499)[1].x, 300);
    for (uint64_t time = 0; time < 2499; ++time)
        EXPECT_LE(marqueeChunks(bar, time)[0].x, marqueeChunks(bar, time + 1)[0].x);
    EXPECT_DOUBLE_EQ(marqueeEasing(0), 0);
    EXPECT_DOUBLE_EQ(marqueeEasing(1), 1);
}

TEST(Progress, RepaintsAllColumnsThatAStepChangesAndFewOthers) {
    constexpr Size bar = {320, 8};
    // How much of a chunk a column shows: nothing, a part of a round end, or all.
    const auto shown = [](const Box& chunk, int32_t x) {
        return std::clamp(std::min(x - chunk.x, chunk.x + chunk.width - 1 - x), -1, bar.height / 2);
    };
    for (uint64_t time = 0; time < 2500; time += 20) {
        const auto before = marqueeChunks(bar, time), after = marqueeChunks(bar, time + 20);
        const auto parts = movedParts(before, after, bar);
        int32_t repainted = 0;
        for (const Box& part : parts) repainted += part.width;
        // Except at the start of the next sweep.
        if (time + 20 < marqueeSweepMs) {
            EXPECT_LT(repainted, 80) << time;
        }
        for (int32_t x = 0; x < bar.width; ++x)
            for (size_t i = 0; i < before.size(); ++i) {
                if (shown(before[i], x) == shown(after[i], x)) continue;
                EXPECT_TRUE(
                    std::ranges::any_of(parts, [x](const Box& part) { return x >= part.x && x < part.x + part.width; }))
                    << time << " " << x;
            }
    }
}

TEST(Track, ThumbFollowsPositionAndRange) {
    TrackState track{
        .vertical = true, .client = {8, 100}, .position = 0, .minimum = 0, .maximum = 100, .pageSize = 100};
    EXPECT_EQ(thumbBox(track), (Box{2, 0, 4, 50}));
    track.position = 100;
    EXPECT_EQ(thumbBox(track), (Box{2, 50, 4, 50}));
    track.maximum = 1000000;
    EXPECT_EQ(thumbBox(track).height, 10) << "the shortest";
    track = {.vertical = false, .client = {100, 8}, .position = 50, .minimum = 0, .maximum = 100, .pageSize = 100};
    EXPECT_EQ(thumbBox(track), (Box{25, 2, 50, 4}));
    EXPECT_EQ(draggedPosition(track, 10, 20), 50);
    EXPECT_EQ(track.clamped(-5), 0);
    EXPECT_EQ(track.clamped(500), 100);
    EXPECT_EQ(wheeledPosition(50, 20, 120), 30);
    EXPECT_EQ(wheeledPosition(50, 20, -120), 70);
    EXPECT_EQ(wheeledPosition(50, 1, -119), 50) << "the division cuts towards zero";
    EXPECT_GT(TrackState{}.range(), 0) << "a divisor";
}

}  // namespace
}  // namespace pdx
