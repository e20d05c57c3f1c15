// Narrow text is UTF-8, wide text is UTF-16; both conversions go through code page 65001.
#pragma once

#include <string>
#include <string_view>

namespace pdx {

/// UTF-8 of a wide text; a lone surrogate becomes U+FFFD, so the result is always valid UTF-8.
std::string toUtf8(std::wstring_view text);
/// Wide text of UTF-8; bytes that are no UTF-8 become U+FFFD.
std::wstring toWide(std::string_view text);

/// The text of an argument that may be null, which counts as empty.
inline const wchar_t* textOrEmpty(const wchar_t* text) { return text ? text : L""; }

/// Writes the UTF-8 of a wide text over what target holds, keeping its memory: for places that run for every line of
/// a long install.
void assignUtf8(std::string& target, std::wstring_view text);

/// Lower-cased by the system's rules for the user's locale, as file names and process names are compared.
std::wstring toLower(std::wstring text);
/// Equal without regard to case, by the system's ordinal rules.
bool equalsIgnoreCase(std::wstring_view left, std::wstring_view right);

}  // namespace pdx
