// The walk over a registry key's subkeys.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace pdx {

/// The answer to the question for the subkey at an index: the system's error code, and the name where that is 0.
struct SubKeyAnswer {
    int32_t error = 0;
    std::wstring name;
};

/// Calls the function with the name at each index from 0 on, until it returns false, the handle turns out invalid or
/// there are no more items. After any other error, such as that of a name too long for the buffer, the next index
/// follows. So it does after a call that deleted its subkey: the subkey that moves to that index is not seen.
void walkSubKeys(const std::function<SubKeyAnswer(uint32_t index)>& subKeyAt,
                 const std::function<bool(const std::wstring& name)>& function);

}  // namespace pdx
