// The mutex that one installer of the machine holds.
#pragma once

#include "platform/Handles.h"

namespace pdx {

/// Taken and released by the engine's thread: the mutex belongs to the thread.
class InstallerMutex {
  public:
    InstallerMutex() = default;
    ~InstallerMutex() { release(); }
    InstallerMutex(const InstallerMutex&) = delete;
    InstallerMutex& operator=(const InstallerMutex&) = delete;

    /// False while another installer holds it.
    bool take() {
        if (mutex) return true;
        Handle made(CreateMutexW(nullptr, TRUE, L"Global\\Palisade_Desktop_Installer"));
        if (!made || GetLastError() == ERROR_ALREADY_EXISTS) return false;
        mutex = std::move(made);
        return true;
    }
    void release() {
        if (mutex) ReleaseMutex(mutex.get());
        mutex.reset();
    }

  private:
    Handle mutex;
};

}  // namespace pdx
