#include "ui/toolkit/rules/RunLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

namespace pdx {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

struct Place {
    std::wstring text;
    float x;
    float y;
    bool operator==(const Place&) const = default;
    friend void PrintTo(const Place& place, std::ostream* out) {
        *out << std::string(place.text.begin(), place.text.end()) << " at " << place.x << " " << place.y;
    }
};

std::vector<Place> placesOf(const std::vector<TextRun>& runs) {
    std::vector<Place> places;
    for (const TextRun& run : runs)
        for (const PlacedText& placed : run.placed) places.push_back({placed.text, placed.x, placed.y});
    return places;
}

/// A font in which every character, blanks too, is a tenth of the run's font height wide, and every text as high.
RunFont evenFont(const TextRun& run) {
    const auto size = static_cast<float>(run.style.logFont.height);
    return {[size](std::wstring_view text) {
                return Extent{static_cast<float>(text.size()) * size / 10, size};
            },
            size, size / 10};
}

TextRun run(std::vector<std::wstring> words, LineHeight lineHeight = {LineHeight::pixels, 30}, int32_t height = 100,
            std::wstring href = {}) {
    return {std::move(words), {.logFont = {.height = height}, .href = std::move(href), .lineHeight = lineHeight}};
}

TextRun link(std::vector<std::wstring> words) { return run(std::move(words), {LineHeight::pixels, 30}, 100, L"x"); }

std::vector<TextRun> placed(std::vector<TextRun> runs, float width, LineAlignment alignment = LineAlignment::left) {
    placeRuns(runs, width, alignment, evenFont);
    return runs;
}

std::vector<Place> places(std::vector<TextRun> runs, float width, LineAlignment alignment = LineAlignment::left) {
    return placesOf(placed(std::move(runs), width, alignment));
}

TEST(RunLayout, BreaksLines) {
    // Characters are 10 wide; a line of 100 holds 96, less one.
    const std::tuple<const char*, std::vector<TextRun>, std::vector<Place>> cases[] = {
        {"nothing", {}, {}},
        {"one line", {run({L"ab", L"cd"})}, {{L"ab cd", 2, 4}}},
        {"two lines", {run({L"abcd", L"efgh", L"ij"})}, {{L"abcd efgh", 2, 4}, {L"ij", 2, 34}}},
        {"a line break", {run({L"a", L"\n"}), run({L"b"})}, {{L"a", 2, 4}, {L"b", 2, 34}}},
        {"an empty line", {run({L"a", L"\n"}), run({L"\n"}), run({L"b"})}, {{L"a", 2, 4}, {L"b", 2, 64}}},
        {"a break first", {run({L"\n"}), run({L"b"})}, {{L"b", 2, 34}}},
        {"a break within", {run({L"a", L"\n", L"b", L"\n", L"c"})}, {{L"a", 2, 4}, {L"b", 2, 34}, {L"c", 2, 64}}},
        // The next run starts a blank and two pixels after the previous one.
        {"two runs", {run({L"ab"}), run({L"c"})}, {{L"ab", 2, 4}, {L"c", 34, 4}}},
        {"three runs", {run({L"ab"}), run({L"c"}), run({L"d"})}, {{L"ab", 2, 4}, {L"c", 34, 4}, {L"d", 56, 4}}},
        {"a second run in two lines",
         {run({L"abcd"}), run({L"ef", L"gh"})},
         {{L"abcd", 2, 4}, {L"ef", 54, 4}, {L"gh", 2, 34}}},
        {"a break after a full line", {run({L"abcdefgh", L"\n"}), run({L"b"})}, {{L"abcdefgh", 2, 4}, {L"b", 2, 34}}},
        // 9 characters and one pixel are the limit: 95 < 96.
        {"a full line", {run({L"abcdefghi"})}, {{L"abcdefghi", 2, 4}}},
        // A word of 100 in 96 begins 2 to the left of the inset.
        {"a wide word", {run({L"abcdefghij"})}, {{L"abcdefghij", 0, 4}}},
        {"a wide word in between",
         {run({L"a", L"abcdefghijklmnopqrst", L"b"})},
         {{L"a", 2, 4}, {L"abcdefghijklmnopqrst", -50, 34}, {L"b", 2, 64}}},
        {"a wide word after a run",
         {run({L"a"}), run({L"abcdefghijklmnopqrst"}), run({L"b"})},
         {{L"a", 2, 4}, {L"abcdefghijklmnopqrst", -50, 34}, {L"b", 2, 64}}},
    };
    for (const auto& [what, runs, expected] : cases) EXPECT_THAT(places(runs, 100), ElementsAreArray(expected)) << what;
}

TEST(RunLayout, AWordWithLessThanAPixelToSpareBeginsALine) {
    // 90 and 1 are not below 91: the word has a line of its own, at the usual place.
    EXPECT_THAT(places({run({L"abcdefghi", L"x"})}, 95), ElementsAre(Place{L"abcdefghi", 2, 4}, Place{L"x", 2, 34}));
    EXPECT_THAT(places({run({L"a"}), run({L"bcdefg"})}, 98), ElementsAre(Place{L"a", 2, 4}, Place{L"bcdefg", 24, 4}));
    EXPECT_THAT(places({run({L"a"}), run({L"bcdefg"})}, 87), ElementsAre(Place{L"a", 2, 4}, Place{L"bcdefg", 2, 34}));
}

TEST(RunLayout, PlacingAgainReplacesTheEarlierPlaces) {
    auto runs = placed({run({L"abcd", L"efgh", L"ij"})}, 100);
    placeRuns(runs, 300, LineAlignment::left, evenFont);
    EXPECT_THAT(runs[0].placed, ElementsAre(PlacedText{L"abcd efgh ij", 2, 4, 120, 100}));
}

TEST(RunLayout, ALineIsAsHighAsItsTallestRun) {
    const LineHeight small = {LineHeight::pixels, 20}, tall = {LineHeight::pixels, 50};
    const std::tuple<const char*, std::vector<TextRun>, std::vector<Place>> cases[] = {
        {"tall first",
         {run({L"a"}, tall), run({L"b", L"\n"}, small), run({L"c"}, small)},
         {{L"a", 2, 4}, {L"b", 24, 4}, {L"c", 2, 54}}},
        {"tall second",
         {run({L"a"}, small), run({L"b", L"\n"}, tall), run({L"c"}, small)},
         {{L"a", 2, 4}, {L"b", 24, 4}, {L"c", 2, 54}}},
        // A run that ends its line does not affect the next line.
        {"tall above",
         {run({L"a", L"\n"}, tall), run({L"b", L"\n"}, small), run({L"c"}, small)},
         {{L"a", 2, 4}, {L"b", 2, 54}, {L"c", 2, 74}}},
        // A run that continues on a second line keeps its height there.
        {"tall wraps",
         {run({L"abcdefg", L"hi"}, tall), run({L"j", L"\n"}, small), run({L"k"}, small)},
         {{L"abcdefg", 2, 4}, {L"hi", 2, 54}, {L"j", 34, 54}, {L"k", 2, 104}}},
    };
    for (const auto& [what, runs, expected] : cases) EXPECT_THAT(places(runs, 100), ElementsAreArray(expected)) << what;
}

TEST(RunLayout, LineHeightsAreWholePixels) {
    const struct {
        LineHeight lineHeight;
        float fontHeight;
        float pixels;
    } cases[] = {
        {{}, 20, 24},
        {{static_cast<LineHeight::Kind>(9), 77}, 20, 24},
        {{LineHeight::factor, 1.5f}, 21, 32},
        {{LineHeight::factor, 0}, 18, 0},
        {{LineHeight::pixels, 19.9f}, 18, 19},
        {{LineHeight::pixels, 1e30f}, 18, 268435456.0f},
        {{LineHeight::factor, 0}, INFINITY, 0},
    };
    for (const auto& row : cases)
        EXPECT_EQ(lineHeightInPixels(row.lineHeight, row.fontHeight), row.pixels)
            << row.lineHeight.kind << " " << row.lineHeight.value << " " << row.fontHeight;
}

TEST(RunLayout, AlignsEachLineToTheRightOrTheCentre) {
    const std::vector<TextRun> runs = {run({L"ab"}), run({L"c", L"abcdef"}), run({L"\n"}), run({L"abcdefghijkl"})};
    ASSERT_THAT(places(runs, 100), ElementsAre(Place{L"ab", 2, 4}, Place{L"c", 34, 4}, Place{L"abcdef", 2, 34},
                                               Place{L"abcdefghijkl", -10, 64}));
    EXPECT_THAT(places(runs, 100, LineAlignment::right),
                ElementsAre(Place{L"ab", 58, 4}, Place{L"c", 90, 4}, Place{L"abcdef", 40, 34},
                            Place{L"abcdefghijkl", -20, 64}));
    EXPECT_THAT(places(runs, 100, LineAlignment::centre),
                ElementsAre(Place{L"ab", 30, 4}, Place{L"c", 62, 4}, Place{L"abcdef", 21, 34},
                            Place{L"abcdefghijkl", -15, 64}));
    EXPECT_THAT(places({}, 100, LineAlignment::centre), IsEmpty());
}

TEST(RunLayout, GuessingFindsTheLinesThatMeasuringEveryCandidateDoes) {
    std::vector<std::wstring> words;
    for (uint32_t seed = 7; words.size() < 3000; seed = seed * 1664525 + 1013904223)
        words.emplace_back(1 + (seed >> 24) % ((seed >> 12) % 30 + 1), L'a');
    const auto plain = [](const TextRun&) {
        return RunFont{[](std::wstring_view text) { return Extent{static_cast<float>(text.size()) * 7, 10}; }, 10, 7};
    };
    std::vector<std::wstring> expected{L""};
    for (const std::wstring& word : words) {
        const std::wstring candidate = expected.back().empty() ? word : expected.back() + L" " + word;
        if (expected.back().empty() || static_cast<float>(candidate.size()) * 7 + 1 < 396)
            expected.back() = candidate;
        else
            expected.push_back(word);
    }
    std::vector<TextRun> runs{run(words)};
    placeRuns(runs, 400, LineAlignment::left, plain);
    std::vector<std::wstring> lines;
    for (const PlacedText& text : runs[0].placed) lines.push_back(text.text);
    EXPECT_EQ(lines, expected);
}

TEST(RunLayout, StopsWhenTheBoundsExceedTheLimit) {
    std::vector<TextRun> runs{run({L"a", L"\n"}), run({L"b"})};
    EXPECT_TRUE(placeRuns(runs, 100, LineAlignment::left, evenFont, 134));
    EXPECT_EQ(boundsOf(runs).height, 134);
    EXPECT_FALSE(placeRuns(runs, 100, LineAlignment::left, evenFont, 133.9f));
    std::vector<TextRun> blank{run({L"\n"})};
    EXPECT_TRUE(placeRuns(blank, 100, LineAlignment::left, evenFont, 0)) << "no bounds at all";
}

TEST(RunLayout, BoundsExceedTheTextByTwoPixels) {
    EXPECT_EQ(boundsOf({}), RectF{});
    EXPECT_EQ(boundsOf(placed({run({L"\n"})}, 100)), RectF{});
    EXPECT_EQ(boundsOf(placed({run({L"ab"}, {}, 20)}, 100)), (RectF{0, 2, 8, 24}));
    const auto runs = placed({run({L"abcdefghijkl", L"b"}), link({L"\n", L"c"})}, 100);
    EXPECT_EQ(boundsOf(runs), (RectF{-12, 2, 124, 164}));
    EXPECT_EQ(coveredBy(runs[1]), (RectF{2, 64, 10, 100}));
    EXPECT_EQ(coveredBy(run({L"a"})), RectF{}) << "not placed";
    // A text without width or height counts for nothing.
    TextRun odd = run({});
    odd.placed = {{L"", 5, 500, 0, 20}, {L"a", 10, 10, 10, 10}, {L"b", 500, 5, 20, 0}};
    EXPECT_EQ(coveredBy(odd), (RectF{10, 10, 10, 10}));
}

TEST(RunLayout, PrefersItsBoundsWithALimitedHeight) {
    const RectF bounds = {0, 2, 100.2f, 80.5f};
    const std::pair<LineHeight, Size> cases[] = {
        {{}, {101, 81}},
        {{LineHeight::factor, 0.5f}, {101, 41}},
        {{LineHeight::factor, 1}, {101, 81}},
        {{LineHeight::pixels, 95}, {101, 81}},
        {{LineHeight::pixels, 40.5f}, {101, 41}},
    };
    for (const auto& [limit, size] : cases)
        EXPECT_EQ(preferredSize(bounds, limit), size) << limit.kind << " " << limit.value;
    EXPECT_EQ(preferredSize({}, {}), Size{});
}

TEST(RunLayout, ScrollsByTheHiddenHeightAndOne) {
    EXPECT_EQ(scrollRange(150, 100), 51);
    EXPECT_EQ(scrollRange(150.1f, 100), 52);
    EXPECT_EQ(scrollRange(100.5f, 100), 2);
    EXPECT_EQ(scrollRange(1e30f, 100), (1 << 28) + 1);
}

TEST(RunLayout, FindsTheLinkAtAPoint) {
    // "ab" is no link; "cd" lies at (34, 4), "ef" at (2, 34), both 20 wide and 100 high.
    std::vector<TextRun> runs = placed({run({L"ab"}), link({L"cd", L"\n", L"ef"})}, 100);
    ASSERT_THAT(placesOf(runs), ElementsAre(Place{L"ab", 2, 4}, Place{L"cd", 34, 4}, Place{L"ef", 2, 34}));
    const std::tuple<float, float, bool> cases[] = {
        {34, 4, true},    {33.9f, 4, false}, {34, 3.9f, false}, {53.9f, 103.9f, true}, {54, 50, false},
        {40, 104, false}, {2, 34, true},     {10, 133, true},   {10, 134, false},      {10, 20, false}};
    for (const auto& [x, y, hit] : cases) EXPECT_EQ(linkAt(runs, x, y), hit ? &runs[1] : nullptr) << x << " " << y;
    // The first of two that overlap.
    runs.push_back(runs[1]);
    EXPECT_EQ(linkAt(runs, 34, 4), &runs[1]);
}

TEST(RunLayout, StepsThroughTheLinksAndNone) {
    const std::vector<TextRun> runs = {run({L"a"}), link({L"b"}), run({L"c"}), link({L"d"})};
    const std::tuple<size_t, bool, size_t> cases[] = {{4, false, 1}, {1, false, 3}, {3, false, 4}, {0, false, 1},
                                                      {4, true, 3},  {3, true, 1},  {1, true, 4}};
    for (const auto& [current, backwards, next] : cases)
        EXPECT_EQ(nextLink(runs, current, backwards), next) << current << backwards;
    const std::vector<TextRun> plain = {run({L"a"}), run({L"b"})};
    EXPECT_EQ(nextLink(plain, 2, false), 2u);
    EXPECT_EQ(nextLink(plain, 2, true), 2u);
    EXPECT_EQ(nextLink({}, 0, false), 0u);
    EXPECT_EQ(nextLink({}, 0, true), 0u);
}

TEST(RunLayout, ScrollsOnlyToATextOutOfView) {
    const std::tuple<RectF, int32_t, std::optional<int32_t>> cases[] = {
        // A window of 50, scrolled to 100.
        {{0, 100, 10, 20}, 100, std::nullopt},
        {{0, 81, 10, 20}, 100, std::nullopt},
        {{0, 149.5f, 10, 20}, 100, std::nullopt},
        {{0, 10, 10, 300}, 100, std::nullopt},
        {{0, 60.7f, 10, 20}, 100, 60},
        {{0, 80, 10, 20}, 100, 80},
        {{0, 150, 10, 20}, 100, 120},
        {{0, 200.5f, 10, 20.3f}, 100, 170},
    };
    for (const auto& [covered, position, moved] : cases)
        EXPECT_EQ(positionToShow(covered, position, 50), moved) << covered.y;
}

}  // namespace
}  // namespace pdx
