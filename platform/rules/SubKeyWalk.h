// The walk over a registry key's subkeys.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace pdx {

/// The result for the subkey at an index: the system's error code, and the name if that is 0.
struct SubKeyAnswer {
    int32_t error = 0;
    std::wstring name;
};

/// A user can make any number of subkeys in his own registry. Windows Installer's key of components has some 100,000.
inline constexpr uint32_t mostSubKeys = 1'000'000;

/// Calls the function with the name at each index below mostSubKeys. Ends when the function returns false, the handle
/// is invalid or there are no more items. After any other error, such as a name too long for the buffer, the walk
/// continues with the next index. So it does after the function has deleted its subkey: the subkey that moves to that
/// index is skipped.
void walkSubKeys(const std::function<SubKeyAnswer(uint32_t index)>& subKeyAt,
                 const std::function<bool(const std::wstring& name)>& function);

}  // namespace pdx
