// The installer's one window, on the UI thread. It takes the application's messages and drives the engine onward.
#pragma once

#include "core/BootstrapperApplication.h"

namespace pdx {

/// All calls on the UI thread.
class BootstrapperDialog {
  public:
    explicit BootstrapperDialog(BootstrapperApplication& owner) : app(owner) {}
    BootstrapperDialog(const BootstrapperDialog&) = delete;
    BootstrapperDialog& operator=(const BootstrapperDialog&) = delete;
    /// Lets go of every thread that waits for the dialog, then destroys the window if the user has not.
    ~BootstrapperDialog();

    /// Makes the window, which tells the application of itself; null on failure.
    HWND create();

  private:
    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

    void onInitDialog();
    void onDestroy();
    /// The answer to a message of the application; 0 where none is asked for.
    LRESULT onAppMessage(UINT message, WPARAM wparam, LPARAM lparam);
    void onDetectComplete();
    LRESULT onError(const ErrorInfo& error);
    LRESULT onApplyComplete(HRESULT status, int restart);
    /// Ends a run whose next step the engine has refused.
    void quitOnFailure(const char* operation, HRESULT hr);
    /// The answer to a question to the user: the default where the display does not allow one.
    int showPrompt(int defaultResult);

    BootstrapperApplication& app;
    HWND window = nullptr;
};

/// The routine of the UI thread: makes the dialog and runs its messages until WM_QUIT.
void UIThreadFunc(BootstrapperApplication& application);

}  // namespace pdx
