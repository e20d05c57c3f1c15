// Narrow text is UTF-8, wide text is UTF-16 (UTF-32 on a host with such wide characters). For well-formed text the
// results are those of the system's code page 65001, which the rules cannot use: they also run on the host.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pdx {

/// UTF-8 of a wide text, always valid: a lone surrogate becomes U+FFFD.
std::string toUtf8(std::wstring_view text);
/// Wide text of UTF-8. Each maximal invalid sequence becomes one U+FFFD, and so does each byte that begins no
/// character.
std::wstring toWide(std::string_view text);

/// Replaces target by the UTF-8 of a wide text and reuses its memory: for code that runs for every line of a long
/// install.
void assignUtf8(std::string& target, std::wstring_view text);
/// Appends one code point, also a surrogate.
void appendUtf8(std::string& target, uint32_t codePoint);

/// Whether toUtf8(toWide(bytes)) equals the bytes. False too if they contain U+FFFD.
bool isWellFormedUtf8(std::string_view bytes);
/// Appends toUtf8(toWide(bytes)) without making the wide text.
void appendWellFormed(std::string& target, std::string_view bytes);
/// Appends the UTF-8 of UTF-16 in little endian; an odd byte at the end is ignored.
void appendUtf16Bytes(std::string& target, std::string_view bytes);
/// The number of bytes at the end that more bytes could complete to a character: 0 to 3.
size_t unfinishedUtf8(std::string_view bytes);
/// The same for UTF-16 in little endian: an odd byte, and the first half of a pair.
size_t unfinishedUtf16(std::string_view bytes);

}  // namespace pdx
