// The user interface of a run: the dialog on a thread of its own, and the messages by which the run reaches it.
#pragma once

#include "core/RunControls.h"
#include "core/RunUi.h"
#include "platform/PreparedThread.h"
#include "ui/dialog/DialogGate.h"

namespace pdx {

/// Made on the engine's thread, which also opens and closes it. The run outlives it.
class DialogUi : public RunUi {
  public:
    /// Begins to prepare the UI thread where pictures of a first page are being prepared (PagePictures.h).
    explicit DialogUi(RunControls& controls);
    ~DialogUi() override { close(); }

    bool open() override;
    void close() override;
    void hideWindow() override;
    [[nodiscard]] HWND window() const override { return dialogGate.window(); }

    // ---- Each is a message (AppMessages.cpp).

    void settle() override;
    int showUpdateCheck() override;
    int detectComplete(HRESULT status) override;
    int planComplete(HRESULT status) override;
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
    /// What the UI thread does: makes the dialog and runs its messages until WM_QUIT.
    virtual void runDialog();

  private:
    static unsigned __stdcall runThread(void* ui);
    /// Ends the loops that the system runs on the UI thread, as that of an open menu or of moving the window: they hear
    /// no WM_QUIT. Waits for nothing.
    void endSystemLoops() const;
    /// The same for a message whose handler asks the user: inside such a loop no click would reach the question. Waits
    /// for half a second at the most.
    void awaitEndOfSystemLoops() const;

    RunControls& run;
    DialogGate dialogGate;
    PreparedThread thread;
};

/// Prepares on the UI thread what the first page needs there, before there is a dialog: the drawing library, the faces,
/// what the system sets up for a thread with windows. The pictures that were begun learn their size.
void prepareUiThread();

/// The routine of the UI thread: makes the dialog and runs its messages until WM_QUIT.
void UIThreadFunc(RunControls& run, DialogGate& gate);

}  // namespace pdx
