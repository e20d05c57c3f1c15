// Narrow text is UTF-8, wide text is UTF-16 (UTF-32 where the host's wide characters are that wide). For well-formed
// text the results are those of the system's code page 65001; the rules need them where there is no system.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pdx {

/// UTF-8 of a wide text; a lone surrogate becomes U+FFFD, so the result is always valid UTF-8.
std::string toUtf8(std::wstring_view text);
/// Wide text of UTF-8. Each maximal invalid sequence becomes one U+FFFD, and so does each byte that begins no
/// character.
std::wstring toWide(std::string_view text);

/// Replaces the content of target by the UTF-8 of a wide text, keeping its memory: for code that runs for every line
/// of a long install.
void assignUtf8(std::string& target, std::wstring_view text);
/// Adds one code point as it is, a surrogate too.
void appendUtf8(std::string& target, uint32_t codePoint);

/// Whether toUtf8(toWide(bytes)) is the bytes themselves for certain. (A U+FFFD in them makes it false.)
bool isWellFormedUtf8(std::string_view bytes);
/// Adds toUtf8(toWide(bytes)), without making the wide text.
void appendWellFormed(std::string& target, std::string_view bytes);
/// Adds the UTF-8 of UTF-16 in little endian; an odd byte at the end is ignored.
void appendUtf16Bytes(std::string& target, std::string_view bytes);
/// The number of bytes at the end that begin a character which more bytes could end: 0 to 3.
size_t unfinishedUtf8(std::string_view bytes);
/// The same of UTF-16 in little endian: an odd byte, and the first half of a pair.
size_t unfinishedUtf16(std::string_view bytes);

}  // namespace pdx
