#include "platform/rules/Scrub.h"

#include <algorithm>
#include <utility>

#include "platform/rules/Utf8.h"

namespace pdx {
namespace {

constexpr std::wstring_view placeholder = L"####";

std::wstring withForwardSlashes(std::wstring path) {
    std::replace(path.begin(), path.end(), L'\\', L'/');
    return path;
}

std::wstring scrubComponents(std::wstring_view path, std::wstring_view userName, const EqualNames& equalNames) {
    std::wstring scrubbed;
    size_t start = 0;
    for (;;) {
        const size_t end = path.find(L'\\', start);
        const std::wstring_view component = path.substr(start, end - start);
        scrubbed += !userName.empty() && equalNames(component, userName) ? placeholder : component;
        if (end == std::wstring_view::npos) return scrubbed;
        scrubbed += L'\\';
        start = end + 1;
    }
}

template <typename Letter>
void replaceAll(std::basic_string<Letter>& text, const Replacement<Letter>& row) {
    if (row.search.empty()) return;
    size_t at = text.find(row.search);
    if (at == text.npos) return;  // nearly always
    std::basic_string<Letter> replaced;
    size_t done = 0;
    for (; at != text.npos; at = text.find(row.search, done)) {
        replaced.append(text, done, at - done).append(row.text);
        done = at + row.search.size();
    }
    text = std::move(replaced.append(text, done));
}

template <typename Letter>
std::basic_string<Letter> scrubbed(const Replacements<Letter>& texts, std::basic_string<Letter> text) {
    for (const Replacement<Letter>& row : texts) replaceAll(text, row);
    return text;
}

}  // namespace

ScrubTexts makeScrubTexts(std::wstring profileBack, std::wstring profileShort, std::wstring_view userName,
                          const EqualNames& equalNames) {
    std::replace(profileBack.begin(), profileBack.end(), L'/', L'\\');
    const std::wstring back = scrubComponents(profileBack, userName, equalNames);
    const std::wstring forward = withForwardSlashes(back);
    return {{{profileBack, back},
             {withForwardSlashes(profileBack), forward},
             {profileShort, back},
             {withForwardSlashes(profileShort), forward}}};
}

NarrowScrubTexts narrowScrubTexts(const ScrubTexts& texts) {
    NarrowScrubTexts narrow;
    for (size_t i = 0; i < texts.size(); ++i) narrow[i] = {toUtf8(texts[i].search), toUtf8(texts[i].text)};
    return narrow;
}

std::wstring scrub(const ScrubTexts& texts, std::wstring text) { return scrubbed(texts, std::move(text)); }
std::string scrub(const NarrowScrubTexts& texts, std::string text) { return scrubbed(texts, std::move(text)); }

}  // namespace pdx
