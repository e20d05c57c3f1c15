// Removing the user's name from paths: the searched texts and their replacements.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace pdx {

/// One spelling of the user's profile folder, with a slash at its end, and its replacement.
template <typename Letter>
struct Replacement {
    std::basic_string<Letter> search;  ///< empty if the system does not name it
    std::basic_string<Letter> text;
};

/// The replacements in the order in which they are applied: the long path with backslashes, with forward slashes, and
/// the 8.3 form with both.
template <typename Letter>
using Replacements = std::array<Replacement<Letter>, 4>;
using ScrubTexts = Replacements<wchar_t>;
using NarrowScrubTexts = Replacements<char>;  ///< UTF-8

using EqualNames = std::function<bool(std::wstring_view, std::wstring_view)>;

/// Derives all texts. profileBack is the profile folder, profileShort its 8.3 form; both end in a backslash. They and
/// userName may be empty if the system does not name them. equalNames
/// compares a path component with the user's name, without regard to case. A replacement has "####" for every component
/// that is the user's name.
ScrubTexts makeScrubTexts(std::wstring profileBack, std::wstring profileShort, std::wstring_view userName,
                          const EqualNames& equalNames);
NarrowScrubTexts narrowScrubTexts(const ScrubTexts& texts);

/// The text with the profile's four spellings replaced in their order. Each replacement is case-sensitive, runs left to
/// right and continues after the inserted text; the short form becomes the long one. The time is linear in the text.
std::wstring scrub(const ScrubTexts& texts, std::wstring text);
std::string scrub(const NarrowScrubTexts& texts, std::string text);

}  // namespace pdx
