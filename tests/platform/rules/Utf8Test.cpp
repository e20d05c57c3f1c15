#include "platform/rules/Utf8.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(Text, ConvertsAnyUtf16ToValidUtf8) {
    const wchar_t high = 0xD83D;
    const wchar_t low = 0xDE00;
    const std::string replacement = "\xEF\xBF\xBD";
    const std::string face = "\xF0\x9F\x98\x80";
    const std::pair<std::wstring, std::string> cases[] = {
        {{}, {}},
        {L"\x00E9\x20AC", "\xC3\xA9\xE2\x82\xAC"},
        {{high, low}, face},
        {{L'a', high}, "a" + replacement},
        {{low, L'b'}, replacement + "b"},
        {{high, L'b', low}, replacement + "b" + replacement},
        {{low, high}, replacement + replacement},
        {{high, high, low, low}, replacement + face + replacement},
        {{L'a', L'\0', L'b'}, {'a', '\0', 'b'}},
        {{wchar_t{0xFFFE}, wchar_t{0xFFFF}}, "\xEF\xBF\xBE\xEF\xBF\xBF"},
    };
    for (const auto& [wide, narrow] : cases) {
        EXPECT_EQ(toUtf8(wide), narrow);
        std::string reused(5000, 'x');
        assignUtf8(reused, wide);
        EXPECT_EQ(reused, narrow);
    }
}

TEST(Text, ConvertsAnyBytesToWideText) {
    const std::pair<std::string, std::wstring> cases[] = {
        {{}, {}},
        {"\xC3\xA9\xE2\x82\xAC", L"\x00E9\x20AC"},
        {"\xF0\x9F\x98\x80", L"\U0001F600"},
        {"a\xFF", L"a\xFFFD"},
        {"\xC3(", L"\xFFFD("},
        {"\xE2\x82z", L"\xFFFDz"},
        // Overlong, a surrogate, and above the last code point: no byte continues what the one before it began.
        {"\xC0\x80", L"\xFFFD\xFFFD"},
        {"\xE0\x80\x80", L"\xFFFD\xFFFD\xFFFD"},
        {"\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},
        {"\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD"},
        {{'a', '\0', 'b'}, {L'a', L'\0', L'b'}},
    };
    for (const auto& [narrow, wide] : cases) EXPECT_EQ(toWide(narrow), wide) << narrow;
}

}  // namespace
}  // namespace pdx
