#include "platform/rules/Scrub.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>

namespace pdx {
namespace {

bool equalNames(std::wstring_view left, std::wstring_view right) {
    return std::ranges::equal(left, right, {}, std::towlower, std::towlower);
}

TEST(Scrub, RemovesTheNameFromEachSpellingOfTheProfile) {
    const ScrubTexts texts =
        makeScrubTexts(L"C:\\Users\\Annabella\\", L"C:\\Users\\ANNABE~1\\", L"Annabella", equalNames);
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"C:\\Users\\Annabella\\a", L"C:\\Users\\####\\a"},
        {L"C:/Users/Annabella/a", L"C:/Users/####/a"},
        {L"C:\\Users\\ANNABE~1\\a", L"C:\\Users\\####\\a"},
        {L"C:/Users/ANNABE~1/a", L"C:/Users/####/a"},
        {L"C:\\Users\\Annabella\\C:\\Users\\Annabella\\", L"C:\\Users\\####\\C:\\Users\\####\\"},
        {L"x C:\\Users\\Annabella\\Annabella y", L"x C:\\Users\\####\\Annabella y"},
        {L"C:\\Users\\Annabella", L"C:\\Users\\Annabella"},
        {L"c:\\users\\annabella\\a", L"c:\\users\\annabella\\a"},
        {L"C:\\Users/Annabella\\a", L"C:\\Users/Annabella\\a"},
    };
    for (const auto& [text, scrubbed] : rows) EXPECT_EQ(scrub(texts, text), scrubbed) << text;
}

TEST(Scrub, ReplacesComponentsThatAreTheUsersName) {
    const struct {
        const wchar_t *profile, *shortPath, *user, *text, *scrubbed;
    } rows[] = {
        {L"D:\\ANN\\home\\Ann\\", L"", L"ann", L"D:\\ANN\\home\\Ann\\f", L"D:\\####\\home\\####\\f"},
        {L"C:\\Zo\u00EB %s {0}&'\\", L"", L"Zo\u00EB %s {0}&'", L"C:/Zo\u00EB %s {0}&'/f", L"C:/####/f"},
        {L"C:\\Users\\annabella\\", L"", L"anna", L"C:\\Users\\annabella\\f", L"C:\\Users\\annabella\\f"},
        {L"C:/Users/ann\\", L"", L"ann", L"C:\\Users\\ann\\f C:/Users/ann/f", L"C:\\Users\\####\\f C:/Users/####/f"},
        {L"C:\\Annabella\\", L"C:\\ANNABE~1\\", L"", L"C:\\Annabella\\C:/ANNABE~1/", L"C:\\Annabella\\C:/Annabella/"},
        {L"", L"", L"ann", L"C:\\Users\\ann\\a", L"C:\\Users\\ann\\a"},
        // Were the inserted text searched again, these would never end.
        {L"\\", L"", L"", L"a\\b\\\\c", L"a\\b\\\\c"},
        {L"####\\", L"", L"####", L"####\\####\\", L"####\\####\\"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(scrub(makeScrubTexts(row.profile, row.shortPath, row.user, equalNames), row.text), row.scrubbed);
}

}  // namespace
}  // namespace pdx
