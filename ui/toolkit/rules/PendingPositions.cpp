#include "ui/toolkit/rules/PendingPositions.h"

namespace pdx {

void PendingPositions::queue(int32_t id, const Box* box, uint32_t flags, void* insertAfter) {
    const auto [found, isNew] = indexById.try_emplace(id, positions.size());
    if (isNew) positions.push_back({.id = id});
    PendingPosition& entry = positions[found->second];
    if (box) {
        entry.x = box->x;
        entry.y = box->y;
        entry.width = box->width;
        entry.height = box->height;
        entry.flags &= ~(positionNoMove | positionNoSize);
    }
    if (flags & positionShow) entry.flags &= ~positionHide;
    if (flags & positionHide) entry.flags &= ~positionShow;
    entry.flags |= flags;
    if (insertAfter) {
        entry.insertAfter = insertAfter;
        entry.flags &= ~(positionNoZOrder | positionNoOwnerZOrder);
    }
}

void PendingPositions::clear() {
    positions.clear();
    indexById.clear();
}

}  // namespace pdx
