// A thread with its identifier.
#pragma once

#include <process.h>
#include <windows.h>

#include "platform/Handles.h"

namespace pdx {

/// Owns a thread. The starter must join it: the destructor does not wait.
class Thread {
  public:
    using Routine = unsigned(__stdcall*)(void*);

    /// Starts the routine with its argument; false if no thread can be made.
    bool start(Routine routine, void* argument) {
        unsigned number = 0;
        handle.reset(reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, routine, argument, 0, &number)));
        identifier = handle ? number : 0;
        return static_cast<bool>(handle);
    }
    /// Waits without limit for the thread's end. Does nothing if none was started.
    void join() {
        if (handle) WaitForSingleObject(handle.get(), INFINITE);
        handle.reset();
        identifier = 0;
    }
    /// Whether the started thread ends within that time (milliseconds).
    [[nodiscard]] bool endsWithin(DWORD bound) const {
        return WaitForSingleObject(handle.get(), bound) != WAIT_TIMEOUT;
    }
    /// 0 means not started.
    [[nodiscard]] DWORD id() const { return identifier; }

  private:
    Handle handle;
    DWORD identifier = 0;
};

}  // namespace pdx
