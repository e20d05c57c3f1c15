// The bounds of a record from an untrusted file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace pdx {

/// The number of elements, at most count, that are within the record from the address on; 0 for an address outside.
inline size_t countWithin(std::span<const std::byte> record, const void* address, size_t elementSize, size_t count) {
    const auto offset = reinterpret_cast<uintptr_t>(address) - reinterpret_cast<uintptr_t>(record.data());
    if (offset > record.size()) return 0;
    const size_t within = (record.size() - offset) / elementSize;
    return count < within ? count : within;
}

}  // namespace pdx
