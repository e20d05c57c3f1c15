#include "platform/Uuid.h"

#include <fmt/format.h>
#include <rpc.h>

#include <span>

namespace pdx {

std::string newUuidString() {
    UUID id{};
    UuidCreate(&id);
    const std::span<const unsigned char, 8> tail(id.Data4);
    return fmt::format("{:08x}-{:04x}-{:04x}-{:02x}-{:02x}", id.Data1, id.Data2, id.Data3, fmt::join(tail.first(2), ""),
                       fmt::join(tail.subspan(2), ""));
}

}  // namespace pdx
