// Digests. Two functions on purpose: the machine's hash is made by CNG, the report's digests by CryptoAPI.
#pragma once

#include <windows.h>
// wincrypt.h needs the types of windows.h.
#include <wincrypt.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace pdx {

/// The digest of the bytes in lower-case hexadecimal, by one of the platform's algorithms ("SHA1", "MD5", "SHA256");
/// the empty text on any failure.
std::string hashString(const std::wstring& algorithm, const void* bytes, size_t length);

/// The digest of the bytes as text, by one of CryptoAPI's algorithms (CALG_SHA1, CALG_MD5) and forms
/// (CRYPT_STRING_HEXRAW, in lower case; CRYPT_STRING_BASE64), on one line. Empty on any failure.
std::string digestText(ALG_ID algorithm, std::string_view bytes, DWORD form);

}  // namespace pdx
