// The bytes of one embedded resource, and a stream buffer over them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <streambuf>
#include <string>
#include <variant>

namespace pdx {

/// Names one resource: its type and either a name, compared without regard to case, or a number.
struct ResourceId {
    std::wstring type;
    std::variant<std::wstring, uint16_t> id;
};

/// Bytes in the library's mapped image: not owned, valid while the library is loaded. Size 0 and null for a missing or
/// empty resource.
struct ResourceData {
    const char* bytes = nullptr;
    uint32_t size = 0;
    [[nodiscard]] std::span<const std::byte> asBytes() const { return std::as_bytes(std::span(bytes, size)); }
};

/// Reads a resource's bytes in place: no copy, no seeking, no refill, no writing.
class ResourceStreamBuf : public std::streambuf {
  public:
    explicit ResourceStreamBuf(ResourceData data) {
        // The interface takes writable characters, but without a put area nothing is written.
        char* first = const_cast<char*>(data.bytes);
        setg(first, first, first + data.size);
    }
};

}  // namespace pdx
