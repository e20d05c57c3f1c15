// The application object that the engine calls. It routes each callback to its part of the run, and the requests of the
// user interface to the engine.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/Download.h"
#include "core/ErrorReporting.h"
#include "core/Migration.h"
#include "core/RecordedCallbacks.h"
#include "core/Repair.h"
#include "core/rules/StartupSteps.h"
#include "core/Run.h"
#include "core/RunControls.h"
#include "platform/Log.h"
#include "reporting/ExceptionHandler.h"

namespace pdx {

/// Makes the user interface of a run, which is destroyed before the run.
using UiFactory = std::function<std::unique_ptr<RunUi>(RunControls& run)>;

class BootstrapperApplication : public RecordedCallbacks, public RunControls {
  public:
    /// Starts the process-wide services and turns environment and command line into bundle variables. The engine and
    /// the command outlive the object. Without a telemetry factory the run sends no events. Throws only if memory is
    /// exhausted.
    BootstrapperApplication(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command, DWORD retryMaximum,
                            DWORD retryDelay, const UiFactory& makeUi, TelemetryFactory makeTelemetry,
                            RunHooks hooks = {});
    ~BootstrapperApplication() override;

    // ---- RunControls

    BOOTSTRAPPER_ACTION action() const override { return m_run.action; }
    BOOTSTRAPPER_DISPLAY display() const override { return m_userDisplay; }
    bool isThinInstaller() const override { return m_run.variables.isThinInstaller(); }
    bool isRepair() const override { return m_run.variables.isRepair(); }
    bool isStopped() const override { return cancelCheck() == IDCANCEL; }
    bool asksAboutBastion() const override;
    std::wstring installFolder() const override { return GetEngineVariable(variable::installFolder, true); }
    const RunTelemetry& telemetry() const override { return m_run.telemetry; }
    void setInstallFolder(const std::wstring& folder) override { m_run.variables.setInstallFolder(folder); }
    void setDesktopShortcut(bool wanted) override {
        m_run.variables.set(variable::desktopShortcut, wanted ? L"1" : L"");
    }
    void setBastionRemoval(bool wanted) override { m_run.variables.setNumber(variable::uninstallBastion, wanted); }
    void setReportConsent(bool given) override { m_run.variables.setNumber(variable::submitReport, given); }
    void enableSending() override;
    void plan() override;
    void apply(HWND window) override;
    void quit(DWORD code) override { m_run.quit(code); }
    void quitAfterDialogFault() override { m_run.quitOnFailure("A message", E_FAIL); }
    void cancel(HWND window) override;
    void requestRepair() override { m_run.requestReload(ReloadPurpose::repair); }
    void noteLogout() override { m_run.loggedOut = true; }

    // ---- Facts of the run

    /// As RunVariables::get.
    std::wstring GetEngineVariable(const std::wstring& name, bool format) const {
        return m_run.variables.get(name, format);
    }
    /// The compiled-in version unless the configuration replaces it.
    std::string GetCurrentVersion() const;
    bool isMeridianMode() const { return m_run.variables.isMeridianMode(); }
    HRESULT installStatus() const { return m_context.status(); }

    void takeFault(HRESULT status) override { UpdateInstallStatus(status); }
    void quitAfterCallbackFault() override { quit(1); }

    // ---- The callbacks that do more than log and answer

    HRESULT STDMETHODCALLTYPE OnStartup() override;
    int STDMETHODCALLTYPE OnShutdown() override;
    int STDMETHODCALLTYPE OnDetectUpdateBegin(LPCWSTR wzUpdateLocation, int nRecommendation) override;
    void STDMETHODCALLTYPE OnDetectPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                   BOOTSTRAPPER_PACKAGE_STATE state) override;
    void STDMETHODCALLTYPE OnDetectComplete(HRESULT hrStatus) override;
    int STDMETHODCALLTYPE OnPlanBegin(DWORD cPackages) override;
    void STDMETHODCALLTYPE OnPlanComplete(HRESULT hrStatus) override;
    int STDMETHODCALLTYPE OnElevate() override;
    int STDMETHODCALLTYPE OnError(BOOTSTRAPPER_ERROR_TYPE errorType, LPCWSTR wzPackageId, DWORD dwCode, LPCWSTR wzError,
                                  DWORD uiFlags, DWORD cData, LPCWSTR* rgwzData, int nRecommendation) override;
    int STDMETHODCALLTYPE OnCacheBegin() override;
    int STDMETHODCALLTYPE OnCachePackageBegin(LPCWSTR wzPackageId, DWORD cCachePayloads,
                                              DWORD64 dw64PackageCacheSize) override;
    int STDMETHODCALLTYPE OnCacheAcquireBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                              BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR wzSource) override;
    int STDMETHODCALLTYPE OnCacheAcquireProgress(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                 DWORD64 dw64Progress, DWORD64 dw64Total,
                                                 DWORD dwOverallPercentage) override;
    int STDMETHODCALLTYPE OnResolveSource(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId, LPCWSTR wzLocalSource,
                                          LPCWSTR wzDownloadSource) override;
    int STDMETHODCALLTYPE OnCacheAcquireComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId, HRESULT hrStatus,
                                                 int nRecommendation) override;
    int STDMETHODCALLTYPE OnCacheVerifyComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId, HRESULT hrStatus,
                                                int nRecommendation) override;
    int STDMETHODCALLTYPE OnExecuteBegin(DWORD cExecutingPackages) override;
    int STDMETHODCALLTYPE OnExecutePackageBegin(LPCWSTR wzPackageId, BOOL fExecute) override;
    int STDMETHODCALLTYPE OnExecuteProgress(LPCWSTR wzPackageId, DWORD dwProgressPercentage,
                                            DWORD dwOverallPercentage) override;
    int STDMETHODCALLTYPE OnExecuteMsiMessage(LPCWSTR wzPackageId, int mt, UINT uiFlags, LPCWSTR wzMessage, DWORD cData,
                                              LPCWSTR* rgwzData, int nRecommendation) override;
    int STDMETHODCALLTYPE OnExecutePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                   BOOTSTRAPPER_APPLY_RESTART restart, int nRecommendation) override;
    void STDMETHODCALLTYPE OnExecuteComplete(HRESULT hrStatus) override;
    int STDMETHODCALLTYPE OnApplyComplete(HRESULT hrStatus, BOOTSTRAPPER_APPLY_RESTART restart) override;

  protected:
    /// Updates the run's status with that of a step; logs a change.
    void UpdateInstallStatus(HRESULT hr) { m_context.updateStatus(hr); }

  private:
    // OnStartup's steps (Startup.cpp), in their order.
    void logStart() const;
    bool takeInstallLocation();  ///< true if one is recorded
    void addReportFiles();
    HRESULT openUi();
    HRESULT checkMachine();
    HRESULT takeFirstStep(bool installed, bool fromDisc, const std::wstring& discParameters);
    StartupFacts startupFacts(bool installed, bool fromDisc) const;

    void checkForUpdate();

    ExceptionHandlerLife m_exceptionHandler;
    LoggerLife m_logger;  // declared before all that logs, and so destroyed after it
    const BOOTSTRAPPER_COMMAND* m_command;
    Run m_run;
    ErrorReporting m_errors;
    Download m_download;
    Migration m_migration;
    Repair m_repair;
    const BOOTSTRAPPER_DISPLAY m_userDisplay;
    std::wstring m_bundleExecutable;  ///< as the bundle set it: the command line must not choose the file to be locked
    bool m_executing = false;         ///< the package begun last runs forward; stays set after its end
};

}  // namespace pdx
