#include "harness/engine/EngineVariables.h"

#include <mutex>

namespace pdx {

namespace {

/// Variables that refer to each other in a ring would be followed for ever.
constexpr int maxFormatDepth = 16;

struct AsText {
    std::wstring operator()(int64_t number) const { return std::to_wstring(number); }
    std::wstring operator()(const std::wstring& text) const { return text; }
    std::wstring operator()(EngineVariables::Version version) const {
        std::wstring text;
        for (int shift = 48; shift >= 0; shift -= 16) {
            text += std::to_wstring(version.value >> shift & 0xffff);
            if (shift > 0) text += L'.';
        }
        return text;
    }
};

}  // namespace

void EngineVariables::set(std::wstring_view name, Value value) {
    const std::lock_guard guard(lock);
    values.insert_or_assign(std::wstring(name), std::move(value));
}

void EngineVariables::erase(std::wstring_view name) {
    const std::lock_guard guard(lock);
    if (const auto found = values.find(name); found != values.end()) values.erase(found);
}

std::optional<EngineVariables::Value> EngineVariables::get(std::wstring_view name) const {
    const std::lock_guard guard(lock);
    const auto found = values.find(name);
    if (found == values.end()) return std::nullopt;
    return found->second;
}

std::optional<std::wstring> EngineVariables::text(std::wstring_view name) const {
    const auto value = get(name);
    if (!value) return std::nullopt;
    return std::visit(AsText(), *value);
}

std::wstring EngineVariables::format(std::wstring_view text) const { return format(text, 0); }

std::wstring EngineVariables::format(std::wstring_view text, int depth) const {
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
            result += depth < maxFormatDepth ? format(*value, depth + 1) : *value;
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
