// What the fourteen files of strings have in common, and what a window needs of each.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

/// Texts that are the same as the English one and right so.
const std::set<std::pair<std::wstring, std::wstring>> sameAsEnglish = {
    {L"DE", L"installer_ok"},
    {L"FR", L"installer_ok"},
    {L"IT", L"installer_ok"},
    {L"JA", L"installer_ok"},
    {L"PL", L"installer_ok"},
    {L"PT-BR", L"installer_ok"},
    {L"ES", L"installer_no"},
    {L"ES-MX", L"installer_no"},
    {L"IT", L"installer_no"},
    {L"ES", L"installer_error_title"},
    {L"ES-MX", L"installer_error_title"},
};

StringTable stringsOf(const std::wstring& language) {
    const ResourceData file = loadResource({L"PDX_LOCSTRINGS", language});
    return readStringFile({file.bytes, file.size}).value_or(StringTable());
}

std::multiset<std::wstring> matches(const std::wstring& text, const wchar_t* pattern) {
    const std::wregex expression(pattern);
    std::multiset<std::wstring> found;
    for (std::wsregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match) {
        found.insert(match->str());
    }
    return found;
}

/// The words that a person sees.
std::wstring withoutMarkup(const std::wstring& text) { return std::regex_replace(text, std::wregex(L"<[^>]*>"), L""); }

/// "t" for each line with text and "-" for each empty one.
std::wstring lineShape(const std::wstring& text) {
    std::wstring shape;
    size_t begin = 0;
    for (size_t end; begin <= text.size(); begin = end + 1) {
        end = std::min(text.find(L'\n', begin), text.size());
        shape += end == begin ? L'-' : L't';
    }
    return shape;
}

size_t countOf(const std::wstring& text, const wchar_t* name) { return matches(toLower(text), name).size(); }

/// What is wrong with a translation beside its English text, in words; empty if nothing is.
std::vector<std::string> faults(const std::wstring& language, const std::wstring& key, const std::wstring& english,
                                const std::wstring& text) {
    std::vector<std::string> found;
    const auto expect = [&found](bool right, const char* fault) {
        if (!right) found.emplace_back(fault);
    };
    const bool same = language == L"EN" || sameAsEnglish.contains({language, key});
    expect((text == english) == same, same ? "translated" : "untranslated");
    // The English text of the key "Repair" is its name.
    expect(!equalsIgnoreCase(text, key) || language == L"EN", "bare key");
    expect(matches(text, L"<[^>]*>") == matches(english, L"<[^>]*>"), "markup");
    expect(matches(text, L"\\{[^}]*\\}|%\\w") == matches(english, L"\\{[^}]*\\}|%\\w"), "placeholder");
    expect(lineShape(text) == lineShape(english), "lines");
    expect(countOf(text, L"palisade") == countOf(english, L"palisade"), "name Palisade");
    expect(countOf(text, L"bastion") == countOf(english, L"bastion"), "name Bastion");
    // The window leaves a blank at each tag, ahead of a full stop too.
    expect(matches(text, L"</a>[^<]").empty(), "text behind a link");
    const std::wstring words = withoutMarkup(text);
    expect(matches(words, L"[<>&\\r\\t]|^ | $|  ").empty(), "blanks or stray markup");
    // The English strings have one pair of straight quotes, as they came.
    expect(language == L"EN" || matches(words, L"['\"]|\\.\\.").empty(), "typewriter quote or dots");
    return found;
}

TEST(Strings, AllLanguagesHaveTheSameKeys) {
    const StringTable english = stringsOf(L"EN");
    EXPECT_EQ(english.size(), 72u);
    for (const wchar_t* const language : languages) {
        const StringTable strings = stringsOf(language);
        std::vector<std::string> differing;
        for (const auto& [key, text] : english) {
            if (!strings.contains(key)) differing.push_back("no " + toUtf8(key));
        }
        for (const auto& [key, text] : strings) {
            if (!english.contains(key)) differing.push_back("more: " + toUtf8(key));
        }
        EXPECT_THAT(differing, IsEmpty()) << toUtf8(language);
    }
}

TEST(Strings, EachTranslationMatchesItsEnglishText) {
    const StringTable english = stringsOf(L"EN");
    for (const wchar_t* const language : languages) {
        for (const auto& [key, text] : stringsOf(language)) {
            EXPECT_THAT(faults(language, key, english.at(key), text), IsEmpty())
                << toUtf8(language) << " " << toUtf8(key) << ": " << toUtf8(text);
        }
    }
}

}  // namespace
}  // namespace pdx
