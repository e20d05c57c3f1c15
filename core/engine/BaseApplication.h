// The support layer between the engine's table and the application: reference count, cancel flag, and the answers of
// the callbacks.
#pragma once

#include <atomic>

#include "core/engine/Callbacks.h"
#include "core/engine/rules/RetrySupport.h"
#include "platform/ComPtr.h"
#include "platform/Lock.h"

namespace pdx {

/// The table in CallbackGuard.cpp gives each callback its default answer from those below.
class CBalBaseBootstrapperApplication : public IBootstrapperApplication {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    /// Deletes the object with the last reference.
    ULONG STDMETHODCALLTYPE Release() override;

    int STDMETHODCALLTYPE OnReserved57(DWORD) override { return cancelCheck(); }
    int STDMETHODCALLTYPE OnReserved58(DWORD, DWORD) override { return cancelCheck(); }
    int STDMETHODCALLTYPE OnReserved59(DWORD, DWORD, DWORD) override { return cancelCheck(); }

    /// Asks to cancel the run: at once when forced, else by a yes-or-no message box over hWnd. Returns whether the run
    /// is cancelled. Called on the dialog's thread.
    virtual BOOL STDMETHODCALLTYPE PromptCancel(HWND hWnd, BOOL fForceCancel, LPCWSTR wzMessage, LPCWSTR wzCaption);

    // ---- Answers of callbacks

    /// IDCANCEL if the user has cancelled and the engine is not rolling back, else the value: a rollback runs to its
    /// end.
    int cancelCheck(int value = 0) const;
    /// Whether the session may end (IDOK): always at a critical end, and otherwise while nothing is applied.
    int endSessionAnswer(DWORD endSession) const;
    /// Marks the run as applying, for its whole rest, and resets both percentages to 0.
    int beginApplying();
    /// Stores the percentages and passes them on to a parent engine.
    int noteProgress(DWORD progress, DWORD overall);
    /// Passes progress on to the engine that runs this one embedded, if any. Returns its answer under the cancel check,
    /// or -1 if the progress could not be sent.
    int cacheProgressAnswer();
    int executeProgressAnswer(DWORD progress, DWORD overall);
    /// Stores the code for the retries. With full display the answer to an HTTP authentication error is IDTRYAGAIN.
    int errorAnswer(BOOTSTRAPPER_ERROR_TYPE type, LPCWSTR package, DWORD code, int recommendation);
    /// Starts the retries of a payload.
    int beginAcquire(LPCWSTR package, LPCWSTR payload);
    /// IDRETRY if the support layer retries, else the recommendation; under the cancel check.
    int acquireAnswer(LPCWSTR package, LPCWSTR payload, HRESULT status, int recommendation);
    /// Starts the retries of a package's execution; notes whether it is a rollback.
    int beginPackage(LPCWSTR package, BOOL forward);
    /// As acquireAnswer, for a package's execution.
    int packageAnswer(LPCWSTR package, HRESULT status, int recommendation);

    // ---- For CallbackGuard, after an exception

    /// Updates the run's status with the failure of a callback.
    virtual void takeFault(HRESULT status) = 0;
    /// Ends the run: no message would continue it.
    virtual void quitAfterCallbackFault() = 0;

  protected:
    /// retryMaximum and retryDelay (milliseconds) are those of the support layer's retries.
    CBalBaseBootstrapperApplication(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command,
                                    DWORD retryMaximum, DWORD retryDelay);
    /// Declared last: destructor entries differ between compilers and must not shift the callback table.
    virtual ~CBalBaseBootstrapperApplication();

    /// The user has cancelled, whether or not the engine is rolling back.
    bool isCanceled() const { return m_fCanceled; }

    BOOTSTRAPPER_DISPLAY m_display;
    BOOTSTRAPPER_RESTART m_restart;
    ComPtr<IBootstrapperEngine> m_pEngine;
    std::atomic<bool> m_fApplying = false;
    std::atomic<bool> m_fRollingBack = false;
    std::atomic<DWORD> m_dwProgressPercentage = 0;
    std::atomic<DWORD> m_dwOverallProgressPercentage = 0;
    RetrySupport m_retry;

  private:
    int sendEmbeddedProgress(DWORD progress, DWORD overall, const char* failure);

    mutable RecursiveLock m_csCanceled;
    std::atomic<bool> m_fCanceled = false;
    std::atomic<ULONG> m_cReferences = 1;
};

}  // namespace pdx
