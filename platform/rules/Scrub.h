// Taking the user's name out of paths: the texts that are searched for and what replaces them.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace pdx {

/// The texts that scrubbing works with; made once from what the system tells of the user.
struct ScrubTexts {
    std::wstring profileBack;          ///< profile folder with a backslash at its end
    std::wstring profileForward;       ///< the same with forward slashes
    std::wstring profileShort;         ///< its 8.3 form
    std::wstring profileShortForward;  ///< that with forward slashes
    std::wstring scrubbedBack;         ///< profileBack with every component that is the user's name as "####"
    std::wstring scrubbedForward;      ///< the same with forward slashes
};

using EqualNames = std::function<bool(std::wstring_view, std::wstring_view)>;

/// Derives all texts. profileBack and profileShort may be empty when the system did not tell them, userName too;
/// equalNames compares a path component with the user's name, without regard to case.
ScrubTexts makeScrubTexts(std::wstring profileBack, std::wstring profileShort, std::wstring_view userName,
                          const EqualNames& equalNames);

/// The text with the profile's four spellings replaced, in the order long, long forward, short, short forward. Each
/// replacement regards case, runs left to right and goes on behind what it put in; the short form comes out long.
std::wstring scrub(const ScrubTexts& texts, std::wstring text);

}  // namespace pdx
