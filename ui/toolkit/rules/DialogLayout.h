// The layout resource of a dialog template: how much each child would move and grow with the dialog.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace pdx {

/// One child's shares of the dialog's growth, in percent, 0 to 100.
struct LayoutRecord {
    uint16_t moveX = 0;
    uint16_t moveY = 0;
    uint16_t sizeX = 0;
    uint16_t sizeY = 0;
    bool operator==(const LayoutRecord&) const = default;
};

/// The records in the order of the children. The resource is a version word of 0, then four little-endian words a
/// record. Empty for another version, for no record, and when the last record is cut off.
std::vector<LayoutRecord> parseLayoutRecords(std::span<const std::byte> resource);

}  // namespace pdx
