// The memory that this process uses.
#pragma once

#include <cstddef>

namespace pdx {

struct ProcessMemory {
    size_t heapInUse;   ///< bytes of all allocated blocks in all heaps
    size_t workingSet;  ///< bytes
};

ProcessMemory processMemory();

/// The working set alone, which is cheap to read; 0 on failure.
size_t workingSetNow();

inline double mebibytes(size_t bytes) { return static_cast<double>(bytes) / (1024 * 1024); }

}  // namespace pdx
