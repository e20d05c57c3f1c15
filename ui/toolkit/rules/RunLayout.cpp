#include "ui/toolkit/rules/RunLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {
namespace {

constexpr float inset = 2.0f;  // from the edge of the control to the lines, and from the text to its bounds
constexpr float firstLine = 2.0f;

using Words = std::span<const std::wstring>;

/// Extends a covered rectangle by that of a text; empty rectangles count for nothing.
void unite(RectF& covered, const PlacedText& text) {
    constexpr float nothing = std::numeric_limits<float>::epsilon();
    if (text.width <= nothing || text.height <= nothing) return;
    if (covered.width <= nothing || covered.height <= nothing) {
        covered = {text.x, text.y, text.width, text.height};
        return;
    }
    const float right = std::max(covered.x + covered.width, text.x + text.width);
    const float bottom = std::max(covered.y + covered.height, text.y + text.height);
    covered.x = std::min(covered.x, text.x);
    covered.y = std::min(covered.y, text.y);
    covered.width = right - covered.x;
    covered.height = bottom - covered.y;
}

RectF withInset(const RectF& covered) {
    if (covered == RectF{}) return covered;
    return {covered.x - inset, covered.y - inset, covered.width + 2 * inset, covered.height + 2 * inset};
}

std::wstring joined(Words words) {
    std::wstring text;
    for (const std::wstring& word : words) {
        if (!text.empty()) text += L' ';
        text += word;
    }
    return text;
}

/// The line that is being filled, and what the lines down to it cover.
struct Line {
    float width;  ///< between the insets
    float x = 0;  ///< where the next text begins
    float y = firstLine;
    float height = 0;  ///< of the tallest run on the line
    RectF covered{};
};

bool isTooHigh(const Line& line, float heightLimit) { return withInset(line.covered).height > heightLimit; }

/// The first words of a run that share a line.
struct Piece {
    std::wstring text;
    Extent extent;
    size_t words = 0;
};

/// How many words fit if all characters are as wide as the measured ones are on average.
size_t guessCount(Words words, const Line& line, float characterWidth) {
    float end = line.x;
    size_t count = 0;
    for (; count < words.size(); ++count) {
        end += characterWidth * static_cast<float>(words[count].size() + 1);
        if (end > line.width) break;
    }
    return count;
}

/// As many words as fit on the line; none when the first one does not fit. Measuring every candidate would take too
/// long. The width of each candidate gives the guess for the next, so that two or three measures find a line.
Piece fittingWords(Words words, const Line& line, const RunFont& font, float characterWidth) {
    Piece fitting;
    for (size_t tooMany = words.size() + 1; fitting.words + 1 < tooMany;) {
        const size_t count = std::clamp(guessCount(words, line, characterWidth), fitting.words + 1, tooMany - 1);
        std::wstring text = joined(words.first(count));
        const Extent extent = font.measure(text);
        characterWidth = extent.width / static_cast<float>(text.size());
        if (line.width <= line.x + extent.width + 1.0f)
            tooMany = count;
        else
            fitting = {std::move(text), extent, count};
    }
    return fitting;
}

/// Places a run after what the line already has. Returns the run's texts, and the line on which it ends.
std::pair<std::vector<PlacedText>, Line> placeRun(const TextRun& run, const RunFont& font, Line line,
                                                  float heightLimit) {
    std::vector<PlacedText> placed;
    const float lineHeight = lineHeightInPixels(run.style.lineHeight, font.height);
    const auto startLine = [&line, lineHeight] {
        line.x = 0;
        line.y += line.height;
        line.height = lineHeight;
    };
    line.height = std::max(line.height, lineHeight);
    float characterWidth = 2 * font.blankWidth;
    for (Words rest = run.words; !rest.empty();) {
        const auto lineEnd = std::ranges::find(rest, lineFeed);
        for (Words words(rest.begin(), lineEnd); !words.empty();) {
            if (isTooHigh(line, heightLimit)) return {std::move(placed), line};
            Piece piece = fittingWords(words, line, font, characterWidth);
            if (piece.words == 0 && line.x != 0) {
                startLine();
                continue;
            }
            if (piece.words == 0) {  // a word that is wider than a line hangs out on both sides
                piece = {words.front(), font.measure(words.front()), 1};
                line.x = std::min((line.width - piece.extent.width) * 0.5f, 0.0f);
            }
            characterWidth = piece.extent.width / static_cast<float>(piece.text.size());
            placed.push_back(
                {std::move(piece.text), line.x + inset, line.y + inset, piece.extent.width, piece.extent.height});
            const PlacedText& text = placed.back();
            unite(line.covered, text);
            line.x = text.width + text.x + font.blankWidth;
            words = words.subspan(piece.words);
            if (!words.empty()) startLine();
        }
        if (lineEnd == rest.end()) break;
        startLine();
        rest = {lineEnd + 1, rest.end()};
    }
    if (line.x == 0) line.height = 0;  // after a break at the end: the next run sets the height
    return {std::move(placed), line};
}

void alignLines(std::vector<TextRun>& runs, float width, float share) {
    std::vector<PlacedText*> texts;
    for (TextRun& run : runs)
        for (PlacedText& placed : run.placed) texts.push_back(&placed);
    for (auto line = texts.begin(); line != texts.end();) {
        const auto end = std::find_if(line, texts.end(), [y = (*line)->y](const auto* text) { return text->y != y; });
        const PlacedText& last = **std::prev(end);
        const float shift = (width - (last.x + last.width)) * share;
        for (; line != end; ++line) (*line)->x += shift;
    }
}

}  // namespace

bool placeRuns(std::vector<TextRun>& runs, float width, LineAlignment alignment,
               const std::function<RunFont(const TextRun&)>& fontOf, float heightLimit) {
    Line line{.width = width - 2 * inset};
    for (TextRun& run : runs) {
        std::tie(run.placed, line) = placeRun(run, fontOf(run), line, heightLimit);
        if (isTooHigh(line, heightLimit)) return false;
    }
    if (alignment != LineAlignment::left) alignLines(runs, width, alignment == LineAlignment::right ? 1.0f : 0.5f);
    return true;
}

RectF coveredBy(const TextRun& run) {
    RectF covered;
    for (const PlacedText& text : run.placed) unite(covered, text);
    return covered;
}

RectF boundsOf(std::span<const TextRun> runs) {
    RectF bounds;
    for (const TextRun& run : runs)
        for (const PlacedText& text : run.placed) unite(bounds, text);
    return withInset(bounds);
}

Size preferredSize(const RectF& bounds, const LineHeight& maxHeight) {
    float height = bounds.height;
    if (maxHeight.kind == LineHeight::factor && maxHeight.value < 1.0f) height *= maxHeight.value;
    if (maxHeight.kind == LineHeight::pixels) height = std::min(height, maxHeight.value);
    return {wholePixels(std::ceil(bounds.width)), wholePixels(std::ceil(height))};
}

int32_t scrollRange(float textHeight, int32_t windowHeight) {
    return std::max(wholePixels(std::ceil(textHeight - static_cast<float>(windowHeight))) + 1, 0);
}

const TextRun* linkAt(std::span<const TextRun> runs, float x, float y) {
    for (const TextRun& run : runs)
        if (run.isLink() && std::ranges::any_of(run.placed, [&](const PlacedText& text) {
                return contains({text.x, text.y, text.width, text.height}, x, y);
            }))
            return &run;
    return nullptr;
}

size_t nextLink(std::span<const TextRun> runs, size_t current, bool backwards) {
    const size_t count = runs.size();
    do {
        current = backwards ? (current == 0 ? count : current - 1) : (current >= count ? 0 : current + 1);
    } while (current < count && !runs[current].isLink());
    return current;
}

std::optional<int32_t> positionToShow(const RectF& covered, int32_t position, int32_t windowHeight) {
    const float bottom = covered.y + covered.height;
    if (bottom <= static_cast<float>(position)) return wholePixels(covered.y);
    if (covered.y >= static_cast<float>(position + windowHeight))
        return wholePixels(bottom - static_cast<float>(windowHeight));
    return std::nullopt;
}

}  // namespace pdx
