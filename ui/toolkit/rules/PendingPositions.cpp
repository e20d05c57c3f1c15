#include "ui/toolkit/rules/PendingPositions.h"

#include <algorithm>

namespace pdx {

void PendingPositions::queue(int32_t id, const Box* box, uint32_t flags, void* insertAfter) {
    auto found = std::ranges::find(positions, id, &PendingPosition::id);
    if (found == positions.end()) found = positions.insert(found, {.id = id});
    PendingPosition& entry = *found;
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

}  // namespace pdx
