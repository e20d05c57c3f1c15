#include "platform/rules/Scrub.h"

#include <algorithm>

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

void replaceAll(std::wstring& text, std::wstring_view search, std::wstring_view replacement) {
    if (search.empty()) return;
    for (size_t at = text.find(search); at != std::wstring::npos; at = text.find(search, at + replacement.size()))
        text.replace(at, search.size(), replacement);
}

}  // namespace

ScrubTexts makeScrubTexts(std::wstring profileBack, std::wstring profileShort, std::wstring_view userName,
                          const EqualNames& equalNames) {
    std::replace(profileBack.begin(), profileBack.end(), L'/', L'\\');
    ScrubTexts texts;
    texts.profileForward = withForwardSlashes(profileBack);
    texts.profileShortForward = withForwardSlashes(profileShort);
    texts.scrubbedBack = scrubComponents(profileBack, userName, equalNames);
    texts.scrubbedForward = withForwardSlashes(texts.scrubbedBack);
    texts.profileBack = std::move(profileBack);
    texts.profileShort = std::move(profileShort);
    return texts;
}

std::wstring scrub(const ScrubTexts& texts, std::wstring text) {
    replaceAll(text, texts.profileBack, texts.scrubbedBack);
    replaceAll(text, texts.profileForward, texts.scrubbedForward);
    replaceAll(text, texts.profileShort, texts.scrubbedBack);
    replaceAll(text, texts.profileShortForward, texts.scrubbedForward);
    return text;
}

}  // namespace pdx
