// Comparing texts by the system's rules. Conversions are in platform/rules/Utf8.h.
#pragma once

#include <string>
#include <string_view>

#include "platform/rules/Utf8.h"

namespace pdx {

/// The text of an argument; null counts as empty.
inline const wchar_t* textOrEmpty(const wchar_t* text) { return text ? text : L""; }

/// Lower-cased by the system's rules for the user's locale, as file names and process names are compared.
std::wstring toLower(std::wstring text);
/// Equal without regard to case, by the system's ordinal rules.
bool equalsIgnoreCase(std::wstring_view left, std::wstring_view right);
/// An order by the same rules, for containers of paths.
struct LessIgnoreCase {
    bool operator()(std::wstring_view left, std::wstring_view right) const;
};

}  // namespace pdx
