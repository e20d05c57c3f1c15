#include "ui/toolkit/rules/RunLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ui/toolkit/rules/Pixels.h"

namespace pdx {
namespace {

constexpr float inset = 2.0f;  // between the lines and the edge of what the text covers
constexpr float firstLine = 2.0f;

using Words = std::span<const std::wstring>;

/// Adds the rectangle of a text to what others cover.
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

/// Words joined by single blanks, behind what is on the line already.
std::wstring joined(std::wstring text, Words words) {
    for (const std::wstring& word : words) {
        if (!text.empty()) text += L' ';
        text += word;
    }
    return text;
}

class Placer {
  public:
    Placer(float width, float limit) : available(width - 2 * inset), highest(limit) {}

    [[nodiscard]] bool isTooHigh() const { return withInset(covered).height > highest; }

    void place(TextRun& target, const RunFont& runFont) {
        run = &target;
        font = &runFont;
        run->placed.clear();
        lineHeight = lineHeightInPixels(run->style.lineHeight, font->height);
        lineMax = std::max(lineMax, lineHeight);
        widthPerCharacter = 2 * font->blankWidth;
        for (Words rest = run->words; !rest.empty() && !isTooHigh();) {
            const auto lineEnd = std::ranges::find(rest, lineFeed);
            placeParagraph({rest.begin(), lineEnd});
            rest = {lineEnd, rest.end()};
            if (rest.empty()) break;
            emit();
            x = 0;
            startLine();
            rest = rest.subspan(1);
        }
        if (emit()) x = run->placed.back().width + run->placed.back().x + font->blankWidth;
        if (x == 0) lineMax = 0;
    }

  private:
    /// Words without a line feed; the last of them are not emitted yet.
    void placeParagraph(Words words) {
        words = words.subspan(takeWhatFits(words));
        while (!words.empty() && !isTooHigh()) {
            if (emit() || x != 0) startLine();
            takeAlone(words.front());
            words = words.subspan(1);
            words = words.subspan(takeWhatFits(words));
        }
    }

    /// Adds to the text as many words as fit behind it, and returns their number. In place of measuring each candidate,
    /// the next to measure is guessed from the width of the last: lines of a long text are found with two or three.
    size_t takeWhatFits(Words words) {
        const std::wstring before = text;
        size_t fitting = 0, tooMany = words.size() + 1;
        while (fitting + 1 < tooMany) {
            const size_t guess = std::clamp(guessCount(before, words), fitting + 1, tooMany - 1);
            std::wstring candidate = joined(before, words.first(guess));
            const Extent measured = font->measure(candidate);
            widthPerCharacter = measured.width / static_cast<float>(candidate.size());
            if (available <= x + measured.width + 1.0f) {
                tooMany = guess;
            } else {
                fitting = guess;
                text = std::move(candidate);
                extent = measured;
            }
        }
        return fitting;
    }

    /// How many words may fit behind a text if all characters are as wide as the last ones were.
    size_t guessCount(const std::wstring& before, Words words) const {
        float width = x + widthPerCharacter * static_cast<float>(before.size());
        size_t count = 0;
        for (; count < words.size(); ++count) {
            width += widthPerCharacter * static_cast<float>(words[count].size() + 1);
            if (width > available) break;
        }
        return count;
    }

    /// Begins the line with a word that goes there whether it fits or not.
    void takeAlone(const std::wstring& word) {
        text = word;
        extent = font->measure(word);
        x = std::min((available - extent.width) * 0.5f, 0.0f);
    }

    bool emit() {
        if (text.empty()) return false;
        run->placed.push_back({std::move(text), x + inset, y + inset, extent.width, extent.height});
        unite(covered, run->placed.back());
        text.clear();
        return true;
    }

    void startLine() {
        y += lineMax;
        lineMax = lineHeight;
    }

    const float available;
    const float highest;
    RectF covered;
    float x = 0;
    float y = firstLine;
    float lineMax = 0;  // the tallest of what is on the line

    TextRun* run = nullptr;
    const RunFont* font = nullptr;
    float lineHeight = 0;
    std::wstring text;  // what goes on the line next, and its extent
    Extent extent;
    float widthPerCharacter = 0;  // of what was measured last
};

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
               const std::function<RunFont(const TextRun&)>& fontOf, float highest) {
    Placer placer(width, highest);
    for (TextRun& run : runs) {
        placer.place(run, fontOf(run));
        if (placer.isTooHigh()) return false;
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
