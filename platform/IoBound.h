// A bound for file operations that another program can hold up.
#pragma once

#include <windows.h>

#include <cstdint>
#include <utility>

#include "platform/Clock.h"
#include "platform/Handles.h"
#include "platform/Thread.h"

namespace pdx {

/// Until it is destroyed, ends the making thread's file operations that do not return. A program that may read a file
/// can hold up every open of it by an oplock that it does not release. Such an operation fails with
/// ERROR_OPERATION_ABORTED after one to two periods in which the thread did not run at all. A slow disc alone ends
/// nothing, because the thread runs between its operations. If the second thread cannot be started, nothing is ended.
class IoBound {
  public:
    explicit IoBound(DWORD milliseconds = 10'000)
        : period(milliseconds), over(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
        if (over && DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), owner.put(), 0, FALSE,
                                    DUPLICATE_SAME_ACCESS))
            ticker.start(run, this);
    }
    ~IoBound() {
        SetEvent(over.get());
        ticker.join();
    }
    IoBound(const IoBound&) = delete;
    IoBound& operator=(const IoBound&) = delete;

  private:
    static unsigned __stdcall run(void* object) noexcept {
        const auto& self = *static_cast<IoBound*>(object);
        uint64_t used = self.processorUse();
        while (WaitForSingleObject(self.over.get(), self.period) == WAIT_TIMEOUT) {
            const uint64_t before = std::exchange(used, self.processorUse());
            if (used == before) CancelSynchronousIo(self.owner.get());
        }
        return 0;
    }

    /// What the owner has used of a processor: in cycles, or in units of 100 ns where these are not counted (Wine).
    uint64_t processorUse() const {
        ULONG64 cycles = 0;
        if (QueryThreadCycleTime(owner.get(), &cycles)) return cycles;
        FILETIME created{}, ended{}, kernel{}, user{};
        GetThreadTimes(owner.get(), &created, &ended, &kernel, &user);
        return fileTimeOf(kernel) + fileTimeOf(user);
    }

    DWORD period;
    Handle over;
    Handle owner;
    Thread ticker;
};

}  // namespace pdx
