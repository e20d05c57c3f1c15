// What a run asks of its user interface. The dialog implements it; tests use a script.
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

/// What to do with a client that is installed already.
enum class InstalledChoice { none, launch, repair };

/// What to do with the older client.
enum class BastionChoice { none, uninstall, notNow };

/// Each operation from settle() on waits until the user interface has handled it, for a question until the user has
/// answered. Each also waits while a question from another thread is open. Between a cancel and the rollback nothing is
/// shown, and the answer is IDCANCEL or none. Without a window the answer is 0 or none.
class RunUi {
  public:
    /// Closes as close() does.
    virtual ~RunUi() = default;

    /// Opens the window on its UI thread. False on failure.
    virtual bool open() = 0;
    /// Closes the window and waits until the UI thread has ended.
    virtual void close() = 0;
    /// Hides the window. Waits for nothing.
    virtual void hideWindow() = 0;
    /// Null before the window is made and after it is destroyed.
    [[nodiscard]] virtual HWND window() const = 0;
    /// Shows nothing, but waits as the others do.
    virtual void settle() = 0;

    // ---- For a callback of the engine: each returns the callback's answer.

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

    virtual void showUpdateCheck() = 0;
    virtual void detectComplete(HRESULT status) = 0;
    virtual void planComplete(HRESULT status) = 0;
    virtual InstalledChoice askInstalled() = 0;
    virtual BastionChoice askAboutBastion() = 0;
    virtual void showRepairBeginning() = 0;
    virtual void showReportUnderWay() = 0;
    /// Changes the title of the current page.
    virtual void showBastionTitle() = 0;
    virtual void showBastionRemoval() = 0;
};

}  // namespace pdx
