// Numbers and texts of the platform that several modules use.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pdx {

/// The characters in a buffer for a path or an environment text. A text that does not fit counts as missing; only
/// finalPathOf reads longer ones.
inline constexpr size_t pathCapacity = 4096;
/// The beginning of every final path, and of a path that the system opens exactly as it is spelt.
inline constexpr std::wstring_view finalPathStart = L"\\\\?\\";

/// The longest reply of a service that is read, in bytes. A usual one has some hundred; parsing needs many times the
/// size.
inline constexpr size_t mostReplyBytes = 64 * 1024;

/// A millisecond in the units of file times.
inline constexpr uint64_t fileTimePerMillisecond = 10'000;

/// A text of decimal digits as a number; 0 for any other text and for a number of more than 32 bits. Blanks and line
/// ends around it do not count. A negative number gives its two's complement: "-2147023293" is 0x80070643.
constexpr uint32_t parseDecimal(std::wstring_view text) {
    constexpr std::wstring_view blanks = L" \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
    const bool isNegative = text.starts_with(L'-');
    if (isNegative) text.remove_prefix(1);
    uint64_t number = 0;
    for (const wchar_t letter : text) {
        if (letter < L'0' || letter > L'9') return 0;
        number = number * 10 + static_cast<uint64_t>(letter - L'0');
        if (number > UINT32_MAX) return 0;
    }
    return static_cast<uint32_t>(isNegative ? 0 - number : number);
}

}  // namespace pdx
