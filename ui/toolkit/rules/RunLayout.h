// Where the words of a marked-up text lie, and what lies at a point.
#pragma once

#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "ui/toolkit/rules/TextRun.h"

namespace pdx {

/// Width and height of a text in pixels.
struct Extent {
    float width = 0;
    float height = 0;
};

/// What layout asks of the font of a run. A longer text must not measure less than its beginning.
struct RunFont {
    std::function<Extent(std::wstring_view)> measure;
    float height = 0;      ///< pixels, what a factor of a line height is taken of
    float blankWidth = 0;  ///< of one blank
};

enum class LineAlignment { left, centre, right };

/// Places all words of all runs on lines of that width, from the position (2, 4) on. Lines break at blanks and at line
/// feeds only; a word wider than a line has one to itself and hangs out on both sides. A run begins one blank and two
/// pixels behind the run in front of it. Gives up and returns false as soon as the bounds of what it has placed are
/// higher than the limit.
bool placeRuns(std::vector<TextRun>& runs, float width, LineAlignment alignment,
               const std::function<RunFont(const TextRun&)>& fontOf,
               float highest = std::numeric_limits<float>::infinity());

/// What the placed text of a run covers; all zero for none.
RectF coveredBy(const TextRun& run);
/// What the placed text of all runs covers and two pixels on each side; all zero for none.
RectF boundsOf(std::span<const TextRun> runs);

/// The size that a control needs to show a text with those bounds, its height limited: to a share of its own for a
/// factor below 1, to a number of pixels, else not at all.
Size preferredSize(const RectF& bounds, const LineHeight& maxHeight);

/// The largest position of a scroll track for a text that is higher than its window.
int32_t scrollRange(float textHeight, int32_t windowHeight);

/// The link at a point of the text (not of the window, which may be scrolled); null for none.
const TextRun* linkAt(std::span<const TextRun> runs, float x, float y);

/// The number of the link behind (or ahead of) the run of that number; runs.size() stands for none, and lies between
/// the last link and the first.
size_t nextLink(std::span<const TextRun> runs, size_t current, bool backwards);

/// The scroll position that brings a text into a window of that height; nothing while a part of it shows.
std::optional<int32_t> positionToShow(const RectF& covered, int32_t position, int32_t windowHeight);

}  // namespace pdx
