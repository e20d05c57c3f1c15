// The dialog of this process, and its painting.
#pragma once

#include <windows.h>

#include <stdexcept>

namespace pdx {

/// This process's dialog.
inline HWND findDialog() {
    HWND found = nullptr;
    while ((found = FindWindowExW(nullptr, found, L"#32770", nullptr)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(found, &process);
        if (process == GetCurrentProcessId()) return found;
    }
    throw std::runtime_error("there is no window");
}

/// Waits until the window and all that it shows are painted.
inline void paint(HWND dialog, UINT invalidation = 0) {
    RedrawWindow(dialog, nullptr, nullptr, invalidation | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

}  // namespace pdx
