// Deletes a folder with all its content, by handles whose final paths are checked.
#pragma once

#include <chrono>
#include <cstdint>

#include "platform/FoundFolder.h"

namespace pdx {

/// The bounds of one removal: a program that may read or write the folder could let it grow, or keep entries open,
/// without end.
struct RemovalBounds {
    /// Ten times the entries of a large client with its products; some minutes of work.
    int32_t entries = 1'000'000;
    /// Failed tries of all entries together: at 100 ms each, two minutes of waiting. After that each entry is tried
    /// once.
    int32_t failedTries = 1'200;
    /// Of all the work. A large client on a slow disc takes some minutes.
    std::chrono::milliseconds time = std::chrono::minutes(30);
};

/// Deletes a trusted folder and all its content, each entry with that number of tries. If the path was a link, its
/// target folder is emptied; folder and link stay. True if the folder is gone, or, for a link, emptied. Links inside
/// are removed, but not their targets. Each entry is opened without following a link at its end. Its final path is
/// compared with the folder's and the names below it, and it is deleted by that handle. On a volume without final paths
/// nothing is compared, and a folder that becomes a link meanwhile can lead elsewhere.
///
/// The first entry that cannot be deleted ends the walk and is logged at INFO. The line is "Failed to remove file %ls:
/// error=%08x" or "Failed to remove directory %ls: error=%08x". The error is 0000112b (4395) for an entry that a link
/// led to and for a folder that is not trusted. It is 00000091 (145) beyond the bound of entries or of time, which is
/// logged first as "Gave up after %d entries in %lld ms". Earlier deletions are not undone. Any depth of folders is
/// deleted, up to the 32,767 characters of a path.
bool deleteDirectoryTree(const FoundFolder& folder, int32_t tries, uint32_t delayMilliseconds,
                         const RemovalBounds& bounds = {});

}  // namespace pdx
