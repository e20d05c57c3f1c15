#include <windows.h>

#include "bench/Benchmarks.h"
#include "config/Resources.h"
#include "config/StringFile.h"
#include "ui/toolkit/GdiPlus.h"
#include "ui/toolkit/HtmlStatic.h"

namespace pdx {

namespace {

constexpr const wchar_t* languages[] = {L"DE", L"EN", L"ES",    L"ES-MX", L"FR", L"IT",      L"JA",
                                        L"KO", L"PL", L"PT-BR", L"RU",    L"TH", L"ZH-HANS", L"ZH-HANT"};
constexpr int shortRounds = 50;
constexpr int longRounds = 5;
constexpr int manyWords = 1000;
/// Width of the body on a page.
constexpr int32_t bodyWidth = 416;

std::wstring longestText() {
    std::wstring longest;
    for (const wchar_t* language : languages) {
        const ResourceData file = loadResource({L"PDX_LOCSTRINGS", language});
        const auto strings = readStringFile({file.bytes, file.size});
        if (!strings) throw std::runtime_error("the strings cannot be read");
        for (const auto& [key, text] : *strings)
            if (text.size() > longest.size()) longest = text;
    }
    return longest;
}

std::wstring wordsOf(int count) {
    constexpr const wchar_t* words[] = {L"a", L"client", L"is", L"installing", L"quietly", L"<b>today</b>"};
    std::wstring text;
    for (int word = 0; word < count; ++word) (text += words[static_cast<size_t>(word) % std::size(words)]) += L' ';
    return text;
}

}  // namespace

Measurements measureLayout() {
    startGraphics();
    LoadPrivateFonts();
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, bodyWidth, 80, nullptr, nullptr, nullptr, nullptr);
    if (!window) throw std::runtime_error("there is no window for a text");
    double longest = 0, many = 0;
    const std::wstring text = longestText();
    {
        HtmlStatic label(window);
        label.SetFont(CreateFontByName(textFace, 16, fontRegular));
        label.SetDefaultLineHeight({LineHeight::pixels, 26});
        longest = medianSeconds(shortRounds, [&] { label.SetText(text); });
        const std::wstring words = wordsOf(manyWords);
        many = medianSeconds(longRounds, [&] { label.SetText(words); });
    }
    DestroyWindow(window);
    return {
        {"layout_longest", longest * 1000, "ms",
         "layout of the longest text, " + std::to_string(text.size()) + " characters"},
        {"layout_words", many * 1000, "ms", "layout of " + std::to_string(manyWords) + " words"},
        {"layout_ratio", many / longest, "x", "layout_words to layout_longest"},
    };
}

}  // namespace pdx
