// The check value by which the error report service recognises a request of the installer.
#pragma once

#include <cstdint>
#include <string_view>

namespace pdx {

/// 16 bits over the bytes of a text, 0 for the empty one. Bytes are signed, as in the service: "A" gives 65, and a byte
/// above 127 subtracts.
constexpr uint16_t requestCheckValue(std::string_view text) {
    constexpr uint16_t mask = 0x4B1D;  // over the value after every second byte
    uint16_t value = 0;
    for (size_t index = 0; index < text.size(); ++index) {
        const auto byte = static_cast<int8_t>(text[index]);
        value = static_cast<uint16_t>(byte + value * 5);
        if (index % 2 == 1) value ^= mask;
    }
    return value;
}

}  // namespace pdx
