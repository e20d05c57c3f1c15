// What of memory this process has taken.
#pragma once

#include <cstddef>

namespace pdx {

struct ProcessMemory {
    size_t heapInUse;  ///< bytes of all blocks that are taken, in all heaps of the process
    size_t workingSet;
};

ProcessMemory processMemory();

/// The second of them alone, which is cheap.
size_t workingSetNow();

inline double mebibytes(size_t bytes) { return static_cast<double>(bytes) / (1024 * 1024); }

}  // namespace pdx
