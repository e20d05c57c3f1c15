// The mutex that keeps a second installer of the machine from running.
#pragma once

#include "platform/Handles.h"

namespace pdx {

/// Taken and released on one thread, the engine's: the system's mutex belongs to a thread.
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
