// The layout of a marked-up text in pixels: places of words, bounds, scrolling, and the link at a point.
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

/// The measures of a run's font. A longer text must not measure less than its beginning.
struct RunFont {
    std::function<Extent(std::wstring_view)> measure;
    float height = 0;      ///< of the font; a factor of a line height multiplies it
    float blankWidth = 0;  ///< of one blank
};

enum class LineAlignment { left, centre, right };

/// Places all words of all runs on lines of that width, starting at (2, 4). Lines break at blanks and line feeds only.
/// A word wider than a line has a line of its own and hangs out on both sides. A run begins one blank and two pixels
/// after the previous run. Returns false as soon as the bounds of the placed text are higher than the limit.
bool placeRuns(std::vector<TextRun>& runs, float width, LineAlignment alignment,
               const std::function<RunFont(const TextRun&)>& fontOf,
               float heightLimit = std::numeric_limits<float>::infinity());

/// The rectangle around the placed text of a run; all zero for none.
RectF coveredBy(const TextRun& run);
/// The rectangle around the placed text of all runs, with two pixels on each side; all zero for none.
RectF boundsOf(std::span<const TextRun> runs);

/// The size of a control that shows a text with those bounds. A maximum height of pixels limits the height; a factor
/// below 1 multiplies it.
Size preferredSize(const RectF& bounds, const LineHeight& maxHeight);

/// The largest position of the scroll track of a text that is higher than its window.
int32_t scrollRange(float textHeight, int32_t windowHeight);

/// The link at a point in the text's own, unscrolled coordinates; null for none.
const TextRun* linkAt(std::span<const TextRun> runs, float x, float y);

/// The index of the next (or previous) link from the run with that index. runs.size() means none, and is the step
/// between the last link and the first.
size_t nextLink(std::span<const TextRun> runs, size_t current, bool backwards);

/// The scroll position that brings a text into a window of that height; nothing when a part of it already shows.
std::optional<int32_t> positionToShow(const RectF& covered, int32_t position, int32_t windowHeight);

}  // namespace pdx
