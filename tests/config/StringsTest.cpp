// What the fourteen files of strings have in common, and what a window needs of each.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <regex>
#include <set>
#include <sstream>

#include "config/Resources.h"
#include "config/StringFile.h"
#include "platform/Text.h"

namespace pdx {
namespace {

using testing::IsEmpty;

/// A language, and the code page that holds all characters of its writing and few of another's: 950 knows no
/// simplified character and 10008 no traditional one.
struct Language {
    const wchar_t* name;
    UINT codePage;
};
constexpr Language languages[] = {
    {L"DE", 1252}, {L"EN", 1252}, {L"ES", 1252},       {L"ES-MX", 1252},  {L"FR", 1252},
    {L"IT", 1252}, {L"JA", 932},  {L"KO", 949},        {L"PL", 1250},     {L"PT-BR", 1252},
    {L"RU", 1251}, {L"TH", 874},  {L"ZH-HANS", 10008}, {L"ZH-HANT", 950},
};

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

/// Labels of buttons and link buttons, which turn a to z into capitals and leave all other letters as they are.
constexpr wchar_t buttonKeys[] =
    L"button_uninstall-bastion go_back_cta not-now repair installer_abort installer_accept installer_cancel "
    L"installer_change installer_cancel_install installer_close installer_exit installer_continue "
    L"installer_ignore installer_no installer_continue_install installer_launch_client installer_ok "
    L"installer_lets_go installer_repair_cta installer_retry installer_try_again installer_uninstall "
    L"installer_yes installer_view_options";

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
    for (const Language& language : languages) {
        const StringTable strings = stringsOf(language.name);
        std::vector<std::string> differing;
        for (const auto& [key, text] : english) {
            if (!strings.contains(key)) differing.push_back("no " + toUtf8(key));
        }
        for (const auto& [key, text] : strings) {
            if (!english.contains(key)) differing.push_back("more: " + toUtf8(key));
        }
        EXPECT_THAT(differing, IsEmpty()) << toUtf8(language.name);
    }
}

TEST(Strings, EachTranslationMatchesItsEnglishText) {
    const StringTable english = stringsOf(L"EN");
    for (const Language& language : languages) {
        for (const auto& [key, text] : stringsOf(language.name)) {
            EXPECT_THAT(faults(language.name, key, english.at(key), text), IsEmpty())
                << toUtf8(language.name) << " " << toUtf8(key) << ": " << toUtf8(text);
        }
    }
}

TEST(Strings, EachLanguageKeepsToItsOwnWriting) {
    for (const Language& language : languages) {
        for (const auto& [key, text] : stringsOf(language.name)) {
            char narrow[2048];
            BOOL foreign = FALSE;
            const int length =
                WideCharToMultiByte(language.codePage, WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()),
                                    narrow, sizeof(narrow), nullptr, &foreign);
            EXPECT_TRUE(length > 0 && !foreign) << toUtf8(language.name) << " " << toUtf8(key) << ": " << toUtf8(text);
        }
    }
}

TEST(Strings, ButtonsHaveNoSmallLetterThatStaysSmall) {
    for (const Language& language : languages) {
        const StringTable strings = stringsOf(language.name);
        std::wistringstream keys(buttonKeys);
        for (std::wstring key; keys >> key;) {
            std::wstring label;
            for (const wchar_t letter : strings.at(key)) {
                if (letter > 0x7f) label += letter;
            }
            std::wstring capitals = label;
            CharUpperBuffW(capitals.data(), static_cast<DWORD>(capitals.size()));
            EXPECT_TRUE(label == capitals && label.find(L'\u00DF') == std::wstring::npos)
                << toUtf8(language.name) << " " << toUtf8(key) << ": " << toUtf8(strings.at(key));
        }
    }
}

/// Rough width in ems: full-width characters take one, Thai marks above and below none, the rest less than two thirds.
double roughWidth(const std::wstring& word) {
    double width = 0;
    for (const wchar_t letter : word) {
        const bool thaiMark =
            letter == 0x0E31 || (letter >= 0x0E34 && letter <= 0x0E3A) || (letter >= 0x0E47 && letter <= 0x0E4E);
        width += thaiMark ? 0 : letter >= 0x1100 && letter != 0x2026 && (letter < 0x2000 || letter > 0x206F) ? 1 : 0.62;
    }
    return width;
}

TEST(Strings, WhatCannotBeBrokenFitsALine) {
    // The window breaks a text at blanks alone, in Chinese, Japanese and Thai too. Titles are 27 pixels high and bold
    // in a label of 456 pixels, texts 18 at most in one of 416.
    constexpr double availableInTitle = 448, availableInText = 408;
    const std::wregex titleKey(L".*title|error_dialog_crash_send-report");
    for (const Language& language : languages) {
        for (const auto& [key, text] : stringsOf(language.name)) {
            const bool isTitle = std::regex_match(key, titleKey);
            const double size = isTitle ? 27 : 18;
            for (const std::wstring& word : matches(withoutMarkup(text), L"\\S+")) {
                EXPECT_LE(roughWidth(word) * size, isTitle ? availableInTitle : availableInText)
                    << toUtf8(language.name) << " " << toUtf8(key) << ": " << toUtf8(word);
            }
        }
    }
}

TEST(Strings, NearLanguagesHaveTheirOwnWords) {
    const std::pair<const wchar_t*, const wchar_t*> pairs[] = {{L"ES", L"ES-MX"}, {L"ZH-HANS", L"ZH-HANT"}};
    for (const auto& [left, right] : pairs) {
        const StringTable leftStrings = stringsOf(left);
        size_t different = 0;
        for (const auto& [key, text] : stringsOf(right)) different += leftStrings.at(key) != text;
        EXPECT_GT(different, 36u) << toUtf8(left);
    }
}

}  // namespace
}  // namespace pdx
