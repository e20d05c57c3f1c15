#include "platform/Hash.h"

#include <windows.h>
// The next two need the types of windows.h.
#include <bcrypt.h>
#include <wincrypt.h>

#include <fmt/format.h>

#include <array>
#include <vector>

#include "platform/Handles.h"

namespace pdx {
namespace {

using Algorithm =
    Owned<BCRYPT_ALG_HANDLE, [](BCRYPT_ALG_HANDLE algorithm) { BCryptCloseAlgorithmProvider(algorithm, 0); }>;

bool succeeded(NTSTATUS status) { return status >= 0; }

/// A size from the algorithm's properties, in bytes; 0 on failure.
DWORD sizeProperty(BCRYPT_ALG_HANDLE algorithm, const wchar_t* name) {
    DWORD value = 0;
    DWORD written = 0;
    const NTSTATUS status =
        BCryptGetProperty(algorithm, name, reinterpret_cast<BYTE*>(&value), sizeof value, &written, 0);
    return succeeded(status) && written == sizeof value ? value : 0;
}

/// The digest; empty on any failure.
std::vector<BYTE> digestOf(const std::wstring& algorithm, const void* bytes, size_t length) {
    Algorithm provider;
    if (!succeeded(BCryptOpenAlgorithmProvider(provider.put(), algorithm.c_str(), nullptr, 0))) return {};
    std::vector<BYTE> object(sizeProperty(provider.get(), BCRYPT_OBJECT_LENGTH));
    std::vector<BYTE> digest(sizeProperty(provider.get(), BCRYPT_HASH_LENGTH));
    if (object.empty() || digest.empty()) return {};
    Owned<BCRYPT_HASH_HANDLE, BCryptDestroyHash> hash;
    // The function only reads its input, but declares it without const.
    auto* input = static_cast<BYTE*>(const_cast<void*>(bytes));
    if (!succeeded(BCryptCreateHash(provider.get(), hash.put(), object.data(), static_cast<DWORD>(object.size()),
                                    nullptr, 0, 0)) ||
        !succeeded(BCryptHashData(hash.get(), input, static_cast<DWORD>(length), 0)) ||
        !succeeded(BCryptFinishHash(hash.get(), digest.data(), static_cast<DWORD>(digest.size()), 0)))
        return {};
    return digest;
}

}  // namespace

std::string hashString(const std::wstring& algorithm, const void* bytes, size_t length) {
    return fmt::format("{:02x}", fmt::join(digestOf(algorithm, bytes, length), ""));
}

std::string hashBase64(const std::wstring& algorithm, std::string_view bytes) {
    const std::vector<BYTE> digest = digestOf(algorithm, bytes.data(), bytes.size());
    std::array<char, 128> text{};  // the longest digest, of 64 bytes, needs 89
    auto length = static_cast<DWORD>(text.size());
    if (digest.empty() || !CryptBinaryToStringA(digest.data(), static_cast<DWORD>(digest.size()),
                                                CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF, text.data(), &length))
        return {};
    return {text.data(), length};
}

}  // namespace pdx
