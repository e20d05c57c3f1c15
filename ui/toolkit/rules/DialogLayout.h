// The layout record that lies beside a dialog template: how much each child would move and grow with the dialog.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace pdx {

/// Percentages, 0 to 100, of the dialog's growth that one child takes part in.
struct LayoutRecord {
    uint16_t moveX = 0;
    uint16_t moveY = 0;
    uint16_t sizeX = 0;
    uint16_t sizeY = 0;
    bool operator==(const LayoutRecord&) const = default;
};

/// The records in the order of the children: behind a version word of 0 four little-endian words each. Empty when the
/// version is another, when there is no record, or when the last one is cut off.
std::vector<LayoutRecord> parseLayoutRecords(std::span<const std::byte> resource);

}  // namespace pdx
