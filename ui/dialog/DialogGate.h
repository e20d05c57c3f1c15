// Where the threads of the engine and the UI thread meet.
#pragma once

#include <windows.h>

#include <atomic>

#include "platform/Handles.h"

namespace pdx {

/// Any thread. It outlives the dialog.
class DialogGate {
  public:
    /// Null before the dialog is made, and once it is gone.
    [[nodiscard]] HWND window() const { return dialog; }
    /// The dialog reports that its window exists (with the handle) or is gone (with null).
    void setWindow(HWND window) { dialog = window; }

    /// Reset while a prompt waits for the user, so that a message of another thread waits for the answer.
    void setReady(bool ready) {
        if (ready)
            SetEvent(dialogReady.get());
        else
            ResetEvent(dialogReady.get());
    }
    /// Waits until no prompt is open; without limit, for the user decides when that is.
    void awaitReady() const { WaitForSingleObject(dialogReady.get(), INFINITE); }
    [[nodiscard]] bool isReady() const { return WaitForSingleObject(dialogReady.get(), 0) == WAIT_OBJECT_0; }

  private:
    std::atomic<HWND> dialog = nullptr;
    Handle dialogReady{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

}  // namespace pdx
