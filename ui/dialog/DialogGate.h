// What the engine's threads and the UI thread share.
#pragma once

#include <windows.h>

#include <atomic>

#include "platform/Handles.h"

namespace pdx {

/// Any thread. The object outlives the dialog.
class DialogGate {
  public:
    /// Null before the dialog is made and after it is destroyed.
    [[nodiscard]] HWND window() const { return dialog; }
    /// The dialog sets its window when it exists, and null when it is destroyed.
    void setWindow(HWND window) { dialog = window; }

    /// Reset until the dialog exists, and while a prompt is open: messages of other threads wait for the answer.
    void setReady(bool ready) {
        if (ready)
            SetEvent(dialogReady.get());
        else
            ResetEvent(dialogReady.get());
    }
    /// Waits until the dialog exists and no prompt is open, or the dialog is gone. No limit: the user has to answer.
    void awaitReady() const { WaitForSingleObject(dialogReady.get(), INFINITE); }
    [[nodiscard]] bool isReady() const { return WaitForSingleObject(dialogReady.get(), 0) == WAIT_OBJECT_0; }

  private:
    std::atomic<HWND> dialog = nullptr;
    Handle dialogReady{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

}  // namespace pdx
