// Case of the letters A to Z, the same in every locale: for keys, switches, tags, schemes and labels. Names of files
// and people are compared by the system's rules (platform/Text.h).
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace pdx {

template <typename Letter>
constexpr Letter lowerAscii(Letter letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<Letter>(letter - 'A' + 'a') : letter;
}

template <typename Letter>
constexpr Letter upperAscii(Letter letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<Letter>(letter - 'a' + 'A') : letter;
}

/// A to Z in lower case; every other letter, and each of its bytes in UTF-8, is unchanged.
template <typename Letter>
std::basic_string<Letter> loweredAscii(std::basic_string_view<Letter> text) {
    std::basic_string<Letter> lowered(text);
    std::ranges::transform(lowered, lowered.begin(), lowerAscii<Letter>);
    return lowered;
}

constexpr bool equalsAsciiCase(std::wstring_view left, std::wstring_view right) {
    return std::ranges::equal(left, right, {}, lowerAscii<wchar_t>, lowerAscii<wchar_t>);
}

}  // namespace pdx
