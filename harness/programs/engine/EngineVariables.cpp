#include "harness/programs/engine/EngineVariables.h"

#include <mutex>
#include <utility>

namespace pdx {

void EngineVariables::set(std::wstring_view name, std::wstring value) {
    const std::lock_guard guard(lock);
    values.insert_or_assign(std::wstring(name), std::move(value));
}

void EngineVariables::erase(std::wstring_view name) {
    const std::lock_guard guard(lock);
    if (const auto found = values.find(name); found != values.end()) values.erase(found);
}

std::optional<std::wstring> EngineVariables::text(std::wstring_view name) const {
    const std::lock_guard guard(lock);
    const auto found = values.find(name);
    if (found == values.end()) return std::nullopt;
    return found->second;
}

std::wstring EngineVariables::format(std::wstring_view text) const {
    std::wstring result;
    while (!text.empty()) {
        const size_t open = text.find(L'[');
        const size_t close = open == text.npos ? text.npos : text.find(L']', open + 1);
        if (close == text.npos) return result.append(text);
        result.append(text.substr(0, open));
        const auto reference = text.substr(open + 1, close - open - 1);
        if (reference.empty()) {
            result += L"[]";
        } else if (reference.size() > 1 && reference[0] == L'\\') {
            result += reference[1];
        } else if (const auto value = this->text(reference)) {
            result += format(*value);
        }
        text.remove_prefix(close + 1);
    }
    return result;
}

std::wstring EngineVariables::escape(std::wstring_view text) {
    std::wstring result;
    for (const wchar_t character : text) {
        const bool special = std::wstring_view(L"[]{}").find(character) != std::wstring_view::npos;
        if (special) result += L"[\\";
        result += character;
        if (special) result += L']';
    }
    return result;
}

}  // namespace pdx
