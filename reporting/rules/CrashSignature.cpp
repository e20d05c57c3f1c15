#include "reporting/rules/CrashSignature.h"

#include <fmt/format.h>

namespace pdx {

std::string crashSignature(const StackHash& stack, uint64_t faultAddress) {
    return fmt::format("{:02X}-{:04X}", stack.get() & 0xFF, faultAddress & 0xFFFF);
}

}  // namespace pdx
