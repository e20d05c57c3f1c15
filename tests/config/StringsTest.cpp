// What the fourteen files of strings have in common, and what a window needs of each.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>

#include "config/Resources.h"
#include "config/StringFile.h"
#include "platform/Text.h"

namespace pdx {
namespace {

using testing::IsEmpty;

constexpr const wchar_t* languages[] = {L"DE", L"EN", L"ES",    L"ES-MX", L"FR", L"IT",      L"JA",
                                        L"KO", L"PL", L"PT-BR", L"RU",    L"TH", L"ZH-HANS", L"ZH-HANT"};

/// Keys whose text is the English one in some languages, and right so.
const std::map<std::wstring, std::set<std::wstring>> sameAsEnglish = {
    {L"installer_ok", {L"DE", L"FR", L"IT", L"JA", L"PL", L"PT-BR"}},
    {L"installer_no", {L"ES", L"ES-MX", L"IT"}},
    {L"installer_error_title", {L"ES", L"ES-MX"}},
};

StringTable stringsOf(const std::wstring& language) {
    const ResourceData file = loadResource({L"PDX_LOCSTRINGS", language});
    return readStringFile({file.bytes, file.size}).value_or(StringTable());
}

std::multiset<std::wstring> matches(const std::wstring& text, const wchar_t* pattern) {
    const std::wregex expression(pattern);
    std::multiset<std::wstring> found;
    for (std::wsregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
        found.insert(match->str());
    return found;
}

std::wstring replaced(const std::wstring& text, const wchar_t* pattern, const wchar_t* by) {
    return std::regex_replace(text, std::wregex(pattern), by);
}

/// What is wrong with a translation beside its English text, in words; empty if nothing is.
std::vector<std::string> faults(const std::wstring& language, const std::wstring& key, const std::wstring& english,
                                const std::wstring& text) {
    std::vector<std::string> found;
    const auto expect = [&found](bool right, const char* fault) {
        if (!right) found.emplace_back(fault);
    };
    const auto known = sameAsEnglish.find(key);
    const bool same = language == L"EN" || (known != sameAsEnglish.end() && known->second.contains(language));
    expect((text == english) == same, same ? "translated" : "untranslated");
    // The English text of the key "Repair" is its name.
    expect(!equalsIgnoreCase(text, key) || language == L"EN", "bare key");
    expect(matches(text, L"<[^>]*>") == matches(english, L"<[^>]*>"), "markup");
    expect(matches(text, L"\\{[^}]*\\}|%\\w") == matches(english, L"\\{[^}]*\\}|%\\w"), "placeholder");
    expect(replaced(text, L"[^\\n]+", L"t") == replaced(english, L"[^\\n]+", L"t"), "lines");
    constexpr const wchar_t* names = L"palisade|bastion";
    expect(matches(toLower(text), names) == matches(toLower(english), names), "names");
    // The window leaves a blank at each tag, before a full stop too.
    expect(matches(text, L"</a>[^<]").empty(), "text after a link");
    const std::wstring words = replaced(text, L"<[^>]*>", L"");
    expect(matches(words, L"[<>&\\r\\t]|^ | $|  ").empty(), "blanks or stray markup");
    // The English strings have one pair of straight quotes, as they came.
    expect(language == L"EN" || matches(words, L"['\"]|\\.\\.").empty(), "typewriter quote or dots");
    return found;
}

TEST(Strings, EachTranslationMatchesItsEnglishText) {
    const StringTable english = stringsOf(L"EN");
    EXPECT_EQ(english.size(), 72u);
    for (const wchar_t* const language : languages) {
        const StringTable strings = stringsOf(language);
        EXPECT_EQ(strings.size(), english.size()) << toUtf8(language);
        for (const auto& [key, text] : english) {
            const auto found = strings.find(key);
            ASSERT_NE(found, strings.end()) << toUtf8(language) << " lacks " << toUtf8(key);
            EXPECT_THAT(faults(language, key, text, found->second), IsEmpty())
                << toUtf8(language) << " " << toUtf8(key) << ": " << toUtf8(found->second);
        }
    }
}

}  // namespace
}  // namespace pdx
