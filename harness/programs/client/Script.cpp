#include "Script.h"

namespace client {

std::wstring takeWord(std::wstring& text) {
    const size_t end = text.find(L' ');
    std::wstring word = text.substr(0, end);
    text.erase(0, end == std::wstring::npos ? end : end + 1);
    return word;
}

std::vector<Step> stepsOf(std::wstring_view script, std::wstring_view stage) {
    std::vector<Step> steps;
    while (!script.empty()) {
        const size_t end = script.find(L'\n');
        std::wstring line(script.substr(0, end));
        script.remove_prefix(end == std::wstring_view::npos ? script.size() : end + 1);
        if (!line.empty() && line.back() == L'\r') line.pop_back();
        if (takeWord(line) != stage) continue;
        std::wstring verb = takeWord(line);
        steps.push_back({std::move(verb), std::move(line)});
    }
    return steps;
}

}  // namespace client
