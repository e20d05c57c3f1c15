// Taking the user's name out of paths: the texts that are searched for and what replaces them.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace pdx {

/// One spelling of the user's profile folder, with a slash at its end, and what replaces it.
template <typename Letter>
struct Replacement {
    std::basic_string<Letter> search;  ///< empty where the system does not name it
    std::basic_string<Letter> text;
};

/// The texts that scrubbing works with, made once from the names that the system has of the user. In the order in which
/// they are applied: the long path with backslashes, with forward slashes, the 8.3 form with both.
template <typename Letter>
using Replacements = std::array<Replacement<Letter>, 4>;
using ScrubTexts = Replacements<wchar_t>;
using NarrowScrubTexts = Replacements<char>;  ///< UTF-8

using EqualNames = std::function<bool(std::wstring_view, std::wstring_view)>;

/// Derives all texts. profileBack, profileShort and userName may be empty when the system did not give them. equalNames
/// compares a path component with the user's name, without regard to case. What replaces a path has "####" in the place
/// of every component that is the user's name.
ScrubTexts makeScrubTexts(std::wstring profileBack, std::wstring profileShort, std::wstring_view userName,
                          const EqualNames& equalNames);
NarrowScrubTexts narrowScrubTexts(const ScrubTexts& texts);

/// The text with the profile's four spellings replaced in their order. Each replacement is case-sensitive, runs left
/// to right and continues after the inserted text; the short form becomes the long one. Takes time in proportion to the
/// text alone.
std::wstring scrub(const ScrubTexts& texts, std::wstring text);
std::string scrub(const NarrowScrubTexts& texts, std::string text);

}  // namespace pdx
