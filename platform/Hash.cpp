#include "platform/Hash.h"

#include <windows.h>
// bcrypt.h needs the types of windows.h.
#include <bcrypt.h>
#include <fmt/format.h>

#include <array>
#include <vector>

#include "platform/Handles.h"

namespace pdx {
namespace {

using Algorithm =
    Owned<BCRYPT_ALG_HANDLE, [](BCRYPT_ALG_HANDLE algorithm) { BCryptCloseAlgorithmProvider(algorithm, 0); }>;
using Provider = Owned<HCRYPTPROV, [](HCRYPTPROV provider) { CryptReleaseContext(provider, 0); }>;

bool succeeded(NTSTATUS status) { return status >= 0; }

/// A size from the algorithm's properties, in bytes; 0 on failure.
DWORD sizeProperty(BCRYPT_ALG_HANDLE algorithm, const wchar_t* name) {
    DWORD value = 0;
    DWORD written = 0;
    const NTSTATUS status =
        BCryptGetProperty(algorithm, name, reinterpret_cast<BYTE*>(&value), sizeof value, &written, 0);
    return succeeded(status) && written == sizeof value ? value : 0;
}

}  // namespace

std::string hashString(const std::wstring& algorithm, const void* bytes, size_t length) {
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
    return fmt::format("{:02x}", fmt::join(digest, ""));
}

std::string digestText(ALG_ID algorithm, std::string_view bytes, DWORD form) {
    Provider provider;
    Owned<HCRYPTHASH, CryptDestroyHash> hash;
    std::array<BYTE, 64> digest{};
    auto size = static_cast<DWORD>(digest.size());
    if (!CryptAcquireContextW(provider.put(), nullptr, nullptr, PROV_RSA_FULL, CRYPT_VERIFYCONTEXT) ||
        !CryptCreateHash(provider.get(), algorithm, 0, 0, hash.put()) ||
        !CryptHashData(hash.get(), reinterpret_cast<const BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()), 0) ||
        !CryptGetHashParam(hash.get(), HP_HASHVAL, digest.data(), &size, 0))
        return {};
    std::array<char, 2 * digest.size() + 1> text{};
    auto length = static_cast<DWORD>(text.size());
    if (!CryptBinaryToStringA(digest.data(), size, form | CRYPT_STRING_NOCRLF, text.data(), &length)) return {};
    return {text.data(), length};
}

}  // namespace pdx
