// Deleting a folder with all that is in it, by handles, each of which is compared with where it has to lie.
#pragma once

#include <cstdint>

#include "platform/FoundFolder.h"

namespace pdx {

/// How much one removal does before it gives up: whoever may write to the folder could let it grow, or hold one entry
/// after the other, for ever.
struct RemovalBounds {
    /// Ten times what a large client with its products has; some minutes of work.
    int32_t entries = 1'000'000;
    /// Tries that fail, of all entries together: at 100 ms each, two minutes of nothing but waiting. Later each entry
    /// is tried once.
    int32_t failedTries = 1'200;
    /// Each level of folders takes some of the thread's stack, and paths can be made that are 16,000 levels deep.
    int32_t levels = 500;
};

/// Deletes a trusted folder and all that is in it, each entry with so many tries. True if it is gone, also if it was
/// never there. A folder that was found by a link is emptied and stays, as does the link. Links inside are removed,
/// what they lead to is left alone. Each entry is opened with no link followed at its end, its final path is compared
/// with the folder's and the names below it, and it is deleted by that handle. On a volume that gives no final paths
/// nothing is compared, and a folder that becomes a link meanwhile can lead elsewhere.
///
/// The first entry that stays ends the walk and is logged at INFO as "Failed to remove file %ls: error=%08x" or
/// "Failed to remove directory %ls: error=%08x". The error is 0000112b (4395) for an entry that a link led to and for a
/// folder that is not trusted, 000000ce (206) below the bound of levels, 00000091 (145) beyond the bound of entries,
/// which is logged before as "Gave up after %d entries". What was deleted before stays deleted.
bool deleteDirectoryTree(const FoundFolder& folder, int32_t tries, uint32_t delayMilliseconds,
                         const RemovalBounds& bounds = {});

}  // namespace pdx
