// Digests.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pdx {

/// The digest of the bytes in lower-case hexadecimal, by one of the platform's algorithms ("SHA1", "MD5", "SHA256");
/// the empty text on any failure.
std::string hashString(const std::wstring& algorithm, const void* bytes, size_t length);
/// The same in base64, on one line.
std::string hashBase64(const std::wstring& algorithm, std::string_view bytes);

}  // namespace pdx
