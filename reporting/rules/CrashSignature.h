// A crash's short signature, from the modules on its stack and the address of the fault.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pdx {

/// The 64-bit FNV-1a hash over the names of a stack's modules, innermost frame first.
class StackHash {
  public:
    /// One frame: the file name of its module, without the path.
    constexpr void add(std::string_view moduleName) {
        for (const char c : moduleName) {
            value ^= static_cast<uint8_t>(c);
            value *= prime;
        }
    }
    [[nodiscard]] constexpr uint64_t get() const { return value; }

  private:
    static constexpr uint64_t prime = 0x100000001B3;
    uint64_t value = 0xCBF29CE484222325;
};

/// "25-ABCD": the hash's low byte, and the low 16 bits of the address of the fault. Crashes on one path of modules at
/// one offset within 64 KB have the same signature; functions within a module have no influence.
std::string crashSignature(const StackHash& stack, uint64_t faultAddress);

/// Whether an exception ends the program: its code's severity, the two highest bits, is "error".
constexpr bool isFatalException(uint32_t code) { return (code & 0xC0000000u) == 0xC0000000u; }

}  // namespace pdx
