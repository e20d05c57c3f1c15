#include "ui/toolkit/rules/DialogLayout.h"

namespace pdx {
namespace {

constexpr size_t versionSize = 2, recordSize = 8;

uint16_t wordAt(std::span<const std::byte> bytes, size_t offset) {
    return static_cast<uint16_t>(std::to_integer<unsigned>(bytes[offset]) | std::to_integer<unsigned>(bytes[offset + 1])
                                                                                << 8);
}

}  // namespace

std::vector<LayoutRecord> parseLayoutRecords(std::span<const std::byte> resource) {
    if (resource.size() <= versionSize || (resource.size() - versionSize) % recordSize != 0) return {};
    if (wordAt(resource, 0) != 0) return {};
    std::vector<LayoutRecord> records;
    records.reserve((resource.size() - versionSize) / recordSize);
    for (size_t at = versionSize; at < resource.size(); at += recordSize)
        records.push_back({.moveX = wordAt(resource, at),
                           .moveY = wordAt(resource, at + 2),
                           .sizeX = wordAt(resource, at + 4),
                           .sizeY = wordAt(resource, at + 6)});
    return records;
}

}  // namespace pdx
