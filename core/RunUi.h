// What a run asks of its user interface. The dialog is one; a test puts a script in its place.
#pragma once

#include <cstdint>

#include "platform/Engine.h"

namespace pdx {

/// An error as the prompt shows it.
struct ErrorInfo {
    DWORD errorType;  ///< BOOTSTRAPPER_ERROR_TYPE, or PALISADE_ERROR_TYPE
    DWORD code;       ///< the callback's code; at shutdown the status
    DWORD uiHint;     ///< message box style word
    int32_t defaultResult;
};

/// What is to become of a client that is installed already.
enum class InstalledChoice { none, launch, repair };

/// What is to become of the older client.
enum class BastionChoice { none, uninstall, notNow };

/// Each operation but hideWindow() waits until the user interface has handled it, and so for the user's answer if
/// it asks. It waits while the question of another thread is open. Once the user has cancelled, and before a rollback,
/// nothing is shown, and the answer is IDCANCEL or none. Without a window the answer is 0 or none.
class RunUi {
  public:
    /// Ends as close() does.
    virtual ~RunUi() = default;

    /// Brings up the window, on a thread of its own. Whether it is there.
    virtual bool open() = 0;
    /// Waits until that thread has ended, with the window.
    virtual void close() = 0;
    /// Takes the window off the screen. Waits for nothing.
    virtual void hideWindow() = 0;
    /// Null before the window is made, and once it is gone.
    [[nodiscard]] virtual HWND window() const = 0;
    /// Shows nothing, but waits as all others.
    virtual void settle() = 0;

    // ---- For a callback of the engine: each gives the callback's answer.

    virtual int showUpdateCheck() = 0;
    virtual int detectComplete(HRESULT status) = 0;
    virtual int planComplete(HRESULT status) = 0;
    virtual int showError(const ErrorInfo& error) = 0;
    virtual int cacheBegin() = 0;
    virtual int cacheAcquireBegin(BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR source) = 0;
    virtual int cacheAcquireProgress(DWORD overallPercentage) = 0;
    virtual int cacheAcquireComplete(HRESULT status, int recommendation) = 0;
    virtual int executeBegin(DWORD packages) = 0;
    virtual int executePackageBegin(bool forward, LPCWSTR package) = 0;
    virtual int executeProgress(DWORD packagePercentage, DWORD overallPercentage) = 0;
    virtual int applyComplete(HRESULT status, BOOTSTRAPPER_APPLY_RESTART restart) = 0;

    // ---- For the other steps of a run.

    virtual InstalledChoice askInstalled() = 0;
    virtual BastionChoice askAboutBastion() = 0;
    virtual void showRepairBeginning() = 0;
    virtual void showReportUnderWay() = 0;
    /// The page stays, with another title.
    virtual void showBastionTitle() = 0;
    virtual void showBastionRemoval() = 0;
};

}  // namespace pdx
