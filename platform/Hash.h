// Digests.
#pragma once

#include <cstddef>
#include <string>

namespace pdx {

/// The digest of the bytes in lower-case hexadecimal, by one of the platform's algorithms ("SHA1", "MD5", "SHA256");
/// the empty text on any failure.
std::string hashString(const std::wstring& algorithm, const void* bytes, size_t length);

}  // namespace pdx
