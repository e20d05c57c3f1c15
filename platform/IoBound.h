// A bound for file operations that another program can hold up.
#pragma once

#include <windows.h>

#include "platform/Handles.h"
#include "platform/Thread.h"

namespace pdx {

/// Until it is destroyed, ends the making thread's file operations that do not return. A program that may read a file
/// can hold up every open of it by an oplock that it does not release. Whatever is pending when a period ends fails
/// with ERROR_OPERATION_ABORTED; local operations are practically never pending. Without a thread nothing is ended.
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
        while (WaitForSingleObject(self.over.get(), self.period) == WAIT_TIMEOUT) CancelSynchronousIo(self.owner.get());
        return 0;
    }

    DWORD period;
    Handle over;
    Handle owner;
    Thread ticker;
};

}  // namespace pdx
