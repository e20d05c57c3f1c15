// The user interface of a run: the dialog on its UI thread, and the messages that the run sends to it.
#pragma once

#include "core/RunControls.h"
#include "core/RunUi.h"
#include "platform/PreparedThread.h"
#include "ui/dialog/DialogGate.h"

namespace pdx {

/// Made, opened and closed on the engine's thread. The run outlives the object.
class DialogUi : public RunUi {
  public:
    /// Starts to prepare the UI thread if the pictures of a first page are being prepared (PagePictures.h).
    explicit DialogUi(RunControls& controls);
    ~DialogUi() override { close(); }

    bool open() override;
    void close() override;
    void hideWindow() override;
    [[nodiscard]] HWND window() const override { return dialogGate.window(); }

    // ---- Each is a message (AppMessages.cpp).

    void settle() override;
    void showUpdateCheck() override;
    void detectComplete(HRESULT status) override;
    void planComplete(HRESULT status) override;
    int showError(const ErrorInfo& error) override;
    int cacheBegin() override;
    int cacheAcquireBegin(BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR source) override;
    int cacheAcquireProgress(DWORD overallPercentage) override;
    int cacheAcquireComplete(HRESULT status, int recommendation) override;
    int executeBegin(DWORD packages) override;
    int executePackageBegin(bool forward, LPCWSTR package) override;
    int executeProgress(DWORD packagePercentage, DWORD overallPercentage) override;
    int applyComplete(HRESULT status, BOOTSTRAPPER_APPLY_RESTART restart) override;
    InstalledChoice askInstalled() override;
    BastionChoice askAboutBastion() override;
    void showRepairBeginning() override;
    void showReportUnderWay() override;
    void showBastionTitle() override;
    void showBastionRemoval() override;

    /// Sends a message to the dialog and waits for its answer: IDCANCEL if the run is cancelled, 0 without a dialog.
    /// Waits while a prompt of another message is open.
    int sendAppMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0);
    DialogGate& gate() { return dialogGate; }

  protected:
    /// Runs on the UI thread: calls UIThreadFunc.
    virtual void runDialog();

  private:
    static unsigned __stdcall runThread(void* ui);
    /// Ends the system's modal loops on the UI thread, such as that of an open menu: they ignore WM_QUIT.
    /// Waits for nothing.
    void endSystemLoops() const;
    /// The same before a message whose handler asks the user: in such a loop no click would reach the question. Waits
    /// half a second at most.
    void awaitEndOfSystemLoops() const;

    RunControls& run;
    DialogGate dialogGate;
    PreparedThread thread;
};

/// Prepares the first page on the UI thread before the dialog exists. This loads the drawing library, the fonts, and
/// what the system keeps for a thread with windows. Sets the size of the pictures that are being prepared.
void prepareUiThread();

/// The routine of the UI thread: makes the dialog and runs its message loop until WM_QUIT.
void UIThreadFunc(RunControls& run, DialogGate& gate);

}  // namespace pdx
