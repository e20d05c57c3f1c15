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
/// there are no more items. Any other error, such as that of a name without enough room, goes on with the next index;
/// so does a call that deletes its subkey, whose follower takes the index just passed and is not seen.
void walkSubKeys(const std::function<SubKeyAnswer(uint32_t index)>& subKeyAt,
                 const std::function<bool(const std::wstring& name)>& function);

}  // namespace pdx
