#include "platform/rules/Scrub.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>

namespace pdx {
namespace {

bool equalNames(std::wstring_view left, std::wstring_view right) {
    return std::ranges::equal(left, right, {}, std::towlower, std::towlower);
}

struct ScrubCase {
    const wchar_t* text;
    const wchar_t* scrubbed;
};

void expectScrubbed(const ScrubTexts& texts, std::initializer_list<ScrubCase> cases) {
    for (const ScrubCase& row : cases)
        EXPECT_EQ(scrub(texts, row.text), row.scrubbed) << testing::PrintToString(std::wstring(row.text));
}

TEST(Scrub, TakesTheNameOutOfEverySpellingOfTheProfile) {
    const ScrubTexts texts =
        makeScrubTexts(L"C:\\Users\\Annabella\\", L"C:\\Users\\ANNABE~1\\", L"Annabella", equalNames);
    expectScrubbed(texts, {
                              {L"C:\\Users\\Annabella\\a", L"C:\\Users\\####\\a"},
                              {L"C:/Users/Annabella/a", L"C:/Users/####/a"},
                              {L"C:\\Users\\ANNABE~1\\a", L"C:\\Users\\####\\a"},
                              {L"C:/Users/ANNABE~1/a", L"C:/Users/####/a"},
                              {L"C:\\Users\\Annabella\\C:\\Users\\Annabella\\", L"C:\\Users\\####\\C:\\Users\\####\\"},
                              {L"x C:\\Users\\Annabella\\Annabella y", L"x C:\\Users\\####\\Annabella y"},
                              {L"Annabella", L"Annabella"},
                              {L"C:\\Users\\Annabella", L"C:\\Users\\Annabella"},
                              {L"c:\\users\\annabella\\a", L"c:\\users\\annabella\\a"},
                              {L"C:\\Users/Annabella\\a", L"C:\\Users/Annabella\\a"},
                              {L"", L""},
                          });
}

TEST(Scrub, ComparesComponentsWithoutRegardToCase) {
    expectScrubbed(makeScrubTexts(L"D:\\ANN\\home\\Ann\\", {}, L"ann", equalNames),
                   {{L"D:\\ANN\\home\\Ann\\f", L"D:\\####\\home\\####\\f"}});
    expectScrubbed(makeScrubTexts(L"C:\\Users\\Zo\u00EB 100%s {0}&'\\", L"C:\\Users\\ZO100_~1\\",
                                  L"Zo\u00EB 100%s {0}&'", equalNames),
                   {{L"C:\\Users\\Zo\u00EB 100%s {0}&'\\f", L"C:\\Users\\####\\f"},
                    {L"C:/Users/Zo\u00EB 100%s {0}&'/f", L"C:/Users/####/f"},
                    {L"C:\\Users\\ZO100_~1\\f", L"C:\\Users\\####\\f"}});
    expectScrubbed(makeScrubTexts(L"C:\\Users\\annabella\\", {}, L"anna", equalNames),
                   {{L"C:\\Users\\annabella\\f", L"C:\\Users\\annabella\\f"}});
}

TEST(Scrub, ReadsAProfileWithForwardSlashes) {
    expectScrubbed(makeScrubTexts(L"C:/Users/ann\\", {}, L"ann", equalNames),
                   {{L"C:\\Users\\ann\\f", L"C:\\Users\\####\\f"}, {L"C:/Users/ann/f", L"C:/Users/####/f"}});
}

TEST(Scrub, LeavesWhatItDoesNotKnow) {
    const ScrubTexts noName = makeScrubTexts(L"C:\\Users\\Annabella\\", L"C:\\Users\\ANNABE~1\\", L"", equalNames);
    expectScrubbed(noName, {
                               {L"C:\\Users\\Annabella\\a", L"C:\\Users\\Annabella\\a"},
                               {L"C:\\Users\\ANNABE~1\\a", L"C:\\Users\\Annabella\\a"},
                               {L"C:/Users/ANNABE~1/a", L"C:/Users/Annabella/a"},
                           });
    const ScrubTexts nothing = makeScrubTexts({}, {}, L"ann", equalNames);
    expectScrubbed(nothing, {{L"C:\\Users\\ann\\a", L"C:\\Users\\ann\\a"}, {L"", L""}});
}

TEST(Scrub, GoesOnBehindWhatItPutIn) {
    // Were the inserted text searched again, these would never end.
    expectScrubbed(makeScrubTexts(L"\\", {}, L"", equalNames), {{L"a\\b\\\\c", L"a\\b\\\\c"}});
    expectScrubbed(makeScrubTexts(L"####\\", {}, L"####", equalNames), {{L"####\\####\\", L"####\\####\\"}});
}

}  // namespace
}  // namespace pdx
