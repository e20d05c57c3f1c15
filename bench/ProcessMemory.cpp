#include "bench/ProcessMemory.h"

#include <windows.h>

#include <psapi.h>

#include <array>
#include <span>

namespace pdx {

size_t workingSetNow() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    return K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)) ? counters.WorkingSetSize : 0;
}

ProcessMemory processMemory() {
    ProcessMemory memory{};
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
    for (const HANDLE heap : std::span(heaps).first(std::min<size_t>(count, heaps.size()))) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heap);
        while (HeapWalk(heap, &entry)) {
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) memory.heapInUse += entry.cbData;
        }
        HeapUnlock(heap);
    }
    memory.workingSet = workingSetNow();
    return memory;
}

}  // namespace pdx
