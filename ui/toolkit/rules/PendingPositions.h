// Positions of a dialog's children, queued to be applied together.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

/// The platform's flags for a window position, by the names of SetWindowPos.
enum PositionFlags : uint32_t {
    positionNoSize = 0x1,
    positionNoMove = 0x2,
    positionNoZOrder = 0x4,
    positionShow = 0x40,
    positionHide = 0x80,
    positionNoOwnerZOrder = 0x200,
};

/// The queued position of one child; a new entry changes nothing.
struct PendingPosition {
    int32_t id = 0;
    int32_t x = 0;
    int32_t y = 0;
    int32_t width = 0;
    int32_t height = 0;
    uint32_t flags = positionNoSize | positionNoMove | positionNoZOrder | positionNoOwnerZOrder;
    void* insertAfter = nullptr;  ///< window handle
};

/// At most one entry for each control identifier, in the order of their first requests.
class PendingPositions {
  public:
    /// Merges a request into the entry of the identifier. A null box keeps position and size, and a null insertAfter
    /// keeps the z order. Show replaces hide and hide replaces show.
    void queue(int32_t id, const Box* box, uint32_t flags, void* insertAfter = nullptr);
    void clear() { positions.clear(); }
    [[nodiscard]] std::span<const PendingPosition> entries() const { return positions; }

  private:
    std::vector<PendingPosition> positions;
};

}  // namespace pdx
