// The end of what nothing is to catch.
#pragma once

#include <windows.h>

#include <exception>
#include <functional>

#include "platform/Thread.h"
#include "platform/UncaughtExceptions.h"

namespace pdx {

/// Runs a step on a thread of its own, which a fault that nobody catches ends.
class CrashingThread {
  public:
    /// The code with which the fault came to the filter of unhandled exceptions; 0 if none did.
    static DWORD run(std::function<void()> step) {
        code = 0;
        const auto terminate = std::get_terminate();
        installTerminateHandler();
        const auto filter = SetUnhandledExceptionFilter(note);
        Thread thread;
        thread.start(call, &step);
        thread.join();
        SetUnhandledExceptionFilter(filter);
        std::set_terminate(terminate);
        return code;
    }

  private:
    static unsigned __stdcall call(void* step) { return (*static_cast<std::function<void()>*>(step))(), 0; }
    static LONG WINAPI note(EXCEPTION_POINTERS* pointers) {
        code = pointers->ExceptionRecord->ExceptionCode;
        ExitThread(0);
    }
    static inline DWORD code = 0;
};

}  // namespace pdx
