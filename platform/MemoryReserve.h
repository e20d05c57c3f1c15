// Memory for work that may not fail.
#pragma once

namespace pdx {

/// Keeps 128 KiB back, which operator new frees at the first shortage before it tries again. With it a run can end in
/// order: the destructor of a JSON value allocates, and an exception there would end the process. The next shortage
/// throws std::bad_alloc as usual. Does nothing while a reserve is kept. If there is no memory for a reserve, none is
/// kept.
void keepMemoryReserve();

/// Frees what is kept, when the library is unmapped in a process that continues.
void releaseMemoryReserve();

}  // namespace pdx
