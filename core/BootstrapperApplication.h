// The application object that the engine calls: creation, the decisions of a start, the callbacks of detection,
// planning and applying, the status that tells the outcome, shutdown. One file a phase holds the callbacks.
#pragma once

#include <atomic>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/AppMessages.h"
#include "core/Download.h"
#include "core/engine/BaseApplication.h"
#include "core/ErrorReporting.h"
#include "core/rules/Startup.h"
#include "core/RunContext.h"
#include "core/RunHooks.h"
#include "core/RunTelemetry.h"
#include "core/RunVariables.h"
#include "platform/Handles.h"
#include "platform/Log.h"
#include "platform/PreparedThread.h"
#include "platform/rules/InstallerVersion.h"
#include "platform/rules/ProgramErrors.h"
#include "reporting/ExceptionHandler.h"

namespace pdx {

/// What the engine is to load the library anew for.
enum class ReloadPurpose {
    repair,
    migration,  ///< the older client is to go although the client is installed already
};

class BootstrapperApplication : public CBalBaseBootstrapperApplication {
  public:
    /// The routine of the UI thread: it makes the dialog for the application and runs its messages until WM_QUIT. Once
    /// it has ended, by an exception too, m_dialogReady is set.
    using UiRoutine = void (*)(BootstrapperApplication& application);

    /// Brings up the process-wide services and turns environment and command line into bundle variables. The engine and
    /// the command outlive the object. Without a telemetry factory the run tells nobody. Throws nothing but what memory
    /// exhaustion throws.
    BootstrapperApplication(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command, DWORD retryMaximum,
                            DWORD retryDelay, UiRoutine uiRoutine, TelemetryFactory makeTelemetry, RunHooks hooks = {});
    ~BootstrapperApplication() override;

    // ---- What the dialog and the steps around the engine ask of the application; any thread unless said otherwise.

    /// The value of a bundle variable, resolved by the engine when format is set; empty on any failure. Logs both.
    std::wstring GetEngineVariable(const std::wstring& name, bool format) const {
        return m_variables.get(name, format);
    }
    /// The version in force: the compiled-in one unless the configuration puts another in its place.
    std::string GetCurrentVersion() const;
    // As RunVariables has them.
    bool isThinInstaller() const { return m_variables.isThinInstaller(); }
    bool isRepair() const { return m_variables.isRepair(); }
    bool isMeridianMode() const { return m_variables.isMeridianMode(); }

    /// Sends a message to the dialog and waits for its answer: IDCANCEL if the run is cancelled, 0 without a dialog.
    /// Waits while a prompt of another message is open.
    int sendAppMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0);

    /// The status that tells the outcome, as far as it is known.
    HRESULT installStatus() const { return m_run.status(); }
    /// Takes the status of a step into the one that tells the outcome; logs a change.
    void UpdateInstallStatus(HRESULT hr) { m_run.updateStatus(hr); }
    /// Makes the engine end the run with that code. From then on detection leads to nothing: the engine finishes a
    /// detection that is under way and reports it all the same.
    void quit(DWORD code);
    /// Ends the run with 1 if the engine refuses the operation of that name: it would call nothing more, and the run
    /// would stand still. Logs it, and takes it into the status.
    void quitOnFailure(const char* operation, HRESULT hr);
    /// Asks the engine to end this run and then to load the library anew, in the mode that the reload is for.
    void requestReload(ReloadPurpose purpose);
    /// The same for a repair, for the dialog.
    void requestRepairReload();

    /// As RunVariables.
    void setInstallFolder(const std::wstring& folder) { m_variables.setInstallFolder(folder); }

    IBootstrapperEngine* engine() const { return m_engine; }
    BOOTSTRAPPER_ACTION action() const { return m_action; }
    /// The display towards the user. The engine that runs this one embedded is told progress by its own word for it.
    BOOTSTRAPPER_DISPLAY display() const { return m_userDisplay; }

    /// Null before the dialog is made, and once it is gone.
    HWND dialogWindow() const { return m_dialogWindow; }
    /// The dialog tells that its window exists (with the handle) or is gone (with null).
    void setDialogWindow(HWND window);
    /// Reset while a prompt waits for the user, so that a message of another thread waits for the answer.
    void setDialogReady(bool ready);
    /// The Windows session ends under the dialog.
    void noteLogoutExit() { m_logoutExit = true; }

    /// What is reported of the run: the dialog reports the clicks.
    const RunTelemetry& telemetry() const { return m_telemetry; }

    void takeFault(HRESULT status) override { UpdateInstallStatus(status); }
    void endAfterFault() override { quit(1); }

    // ---- The engine's callbacks, in the order of its table.

    HRESULT STDMETHODCALLTYPE OnStartup() override;
    int STDMETHODCALLTYPE OnShutdown() override;
    int STDMETHODCALLTYPE OnSystemShutdown(DWORD dwEndSession, int nRecommendation) override;

    int STDMETHODCALLTYPE OnDetectBegin(BOOL fInstalled, DWORD cPackages) override;
    int STDMETHODCALLTYPE OnDetectForwardCompatibleBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_RELATION_TYPE relationType,
                                                          LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                                          int nRecommendation) override;
    int STDMETHODCALLTYPE OnDetectUpdateBegin(LPCWSTR wzUpdateLocation, int nRecommendation) override;
    int STDMETHODCALLTYPE OnDetectUpdate(LPCWSTR wzUpdateLocation, DWORD64 dw64Size, DWORD64 dw64Version,
                                         LPCWSTR wzTitle, LPCWSTR wzSummary, LPCWSTR wzContentType, LPCWSTR wzContent,
                                         int nRecommendation) override;
    void STDMETHODCALLTYPE OnDetectUpdateComplete(HRESULT hrStatus, LPCWSTR wzUpdateLocation) override;
    int STDMETHODCALLTYPE OnDetectRelatedBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_RELATION_TYPE relationType,
                                                LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                                BOOTSTRAPPER_RELATED_OPERATION operation) override;
    int STDMETHODCALLTYPE OnDetectPackageBegin(LPCWSTR wzPackageId) override;
    int STDMETHODCALLTYPE OnDetectCompatiblePackage(LPCWSTR wzPackageId, LPCWSTR wzCompatiblePackageId) override;
    int STDMETHODCALLTYPE OnDetectRelatedMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode, BOOL fPerMachine,
                                                    DWORD64 dw64Version,
                                                    BOOTSTRAPPER_RELATED_OPERATION operation) override;
    int STDMETHODCALLTYPE OnDetectTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                   BOOTSTRAPPER_PACKAGE_STATE patchState) override;
    int STDMETHODCALLTYPE OnDetectMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId,
                                             BOOTSTRAPPER_FEATURE_STATE state) override;
    void STDMETHODCALLTYPE OnDetectPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                   BOOTSTRAPPER_PACKAGE_STATE state) override;
    void STDMETHODCALLTYPE OnDetectComplete(HRESULT hrStatus) override;

    int STDMETHODCALLTYPE OnPlanBegin(DWORD cPackages) override;
    int STDMETHODCALLTYPE OnPlanRelatedBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) override;
    int STDMETHODCALLTYPE OnPlanPackageBegin(LPCWSTR wzPackageId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) override;
    int STDMETHODCALLTYPE OnPlanCompatiblePackage(LPCWSTR wzPackageId,
                                                  BOOTSTRAPPER_REQUEST_STATE* pRequestedState) override;
    int STDMETHODCALLTYPE OnPlanTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                 BOOTSTRAPPER_REQUEST_STATE* pRequestedState) override;
    int STDMETHODCALLTYPE OnPlanMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId,
                                           BOOTSTRAPPER_FEATURE_STATE* pRequestedState) override;
    void STDMETHODCALLTYPE OnPlanPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                 BOOTSTRAPPER_PACKAGE_STATE state, BOOTSTRAPPER_REQUEST_STATE requested,
                                                 BOOTSTRAPPER_ACTION_STATE execute,
                                                 BOOTSTRAPPER_ACTION_STATE rollback) override;
    void STDMETHODCALLTYPE OnPlanComplete(HRESULT hrStatus) override;

    int STDMETHODCALLTYPE OnApplyBegin() override;
    void STDMETHODCALLTYPE OnApplyPhaseCount(DWORD dwPhaseCount) override;
    int STDMETHODCALLTYPE OnElevate() override;
    int STDMETHODCALLTYPE OnProgress(DWORD dwProgressPercentage, DWORD dwOverallPercentage) override;
    int STDMETHODCALLTYPE OnError(BOOTSTRAPPER_ERROR_TYPE errorType, LPCWSTR wzPackageId, DWORD dwCode, LPCWSTR wzError,
                                  DWORD uiFlags, DWORD cData, LPCWSTR* rgwzData, int nRecommendation) override;
    int STDMETHODCALLTYPE OnRegisterBegin() override;
    void STDMETHODCALLTYPE OnRegisterComplete(HRESULT hrStatus) override;
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
    int STDMETHODCALLTYPE OnCacheVerifyBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId) override;
    int STDMETHODCALLTYPE OnCacheVerifyComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId, HRESULT hrStatus,
                                                int nRecommendation) override;
    int STDMETHODCALLTYPE OnCachePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus, int nRecommendation) override;
    void STDMETHODCALLTYPE OnCacheComplete(HRESULT hrStatus) override;

    int STDMETHODCALLTYPE OnExecuteBegin(DWORD cExecutingPackages) override;
    int STDMETHODCALLTYPE OnExecutePackageBegin(LPCWSTR wzPackageId, BOOL fExecute) override;
    int STDMETHODCALLTYPE OnExecutePatchTarget(LPCWSTR wzPackageId, LPCWSTR wzTargetProductCode) override;
    int STDMETHODCALLTYPE OnExecuteProgress(LPCWSTR wzPackageId, DWORD dwProgressPercentage,
                                            DWORD dwOverallPercentage) override;
    int STDMETHODCALLTYPE OnExecuteMsiMessage(LPCWSTR wzPackageId, int mt, UINT uiFlags, LPCWSTR wzMessage, DWORD cData,
                                              LPCWSTR* rgwzData, int nRecommendation) override;
    int STDMETHODCALLTYPE OnExecuteFilesInUse(LPCWSTR wzPackageId, DWORD cFiles, LPCWSTR* rgwzFiles) override;
    int STDMETHODCALLTYPE OnExecutePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                   BOOTSTRAPPER_APPLY_RESTART restart, int nRecommendation) override;
    void STDMETHODCALLTYPE OnExecuteComplete(HRESULT hrStatus) override;
    void STDMETHODCALLTYPE OnUnregisterBegin() override;
    void STDMETHODCALLTYPE OnUnregisterComplete(HRESULT hrStatus) override;
    int STDMETHODCALLTYPE OnApplyComplete(HRESULT hrStatus, BOOTSTRAPPER_APPLY_RESTART restart) override;
    int STDMETHODCALLTYPE OnLaunchApprovedExeBegin() override;
    void STDMETHODCALLTYPE OnLaunchApprovedExeComplete(HRESULT hrStatus, DWORD dwProcessId) override;

  protected:
    RunContext::State state() const { return m_run.state(); }
    /// Whether a message to the dialog would wait for no prompt.
    bool isDialogReady() const { return WaitForSingleObject(m_dialogReady.get(), 0) == WAIT_OBJECT_0; }

  private:
    // Constructor's steps.
    void takeEnvironment();
    void takeCommandLine(std::span<const std::wstring> arguments);
    void setShortcutTitles();
    void setProductVariables();

    // OnStartup's steps.
    static unsigned __stdcall runUi(void* application);
    /// Whether there is a dialog: without one a run cannot go on.
    bool startUiThread();
    void stopUiThread();
    /// Ends the loops that the system runs on the UI thread, as that of an open menu or of moving the window: they hear
    /// no WM_QUIT. Waits for nothing.
    void endSystemLoops() const;
    /// The same for a message whose handler asks the user: inside such a loop no click would reach the question. Waits
    /// for half a second at the most.
    void awaitEndOfSystemLoops() const;
    /// Raises the error and gives it as the start's result: the engine ends the run then.
    HRESULT failStartup(ProgramError code);
    bool takeInstallerMutex();
    void releaseInstallerMutex();
    StartupFacts startupFacts(bool installed, bool fromDisc) const;
    /// The disc's parameters are those of the client, for a start from a disc. Returns the start's result.
    HRESULT takeStartupStep(StartupStep step, const std::wstring& discParameters);
    /// Asks the engine to detect. A refusal is the start's result, on an install as after a clean-up: the engine ends
    /// the run with it at once, and its exit code names the failure.
    HRESULT detect();

    // The runs that need elevated rights, and those that end in the client.
    HRESULT continueElevated();
    /// Holds the files until the elevated copy has loaded them, after the window has gone; not without limit.
    HRESULT relaunchElevated();
    /// Locks the files that are to run elevated for the life of this object; raises the error if that fails.
    HRESULT lockElevatedBinaries(const std::wstring& folder, const std::wstring& executable);
    HRESULT performRepairCleanup();
    /// Whether the user has cancelled the run. While the dialog asks for that, the answer is waited for.
    bool hasUserCancelled();
    /// Starts no uninstaller after a cancel. One that runs is waited for without limit, and a cancel meanwhile changes
    /// nothing about that.
    void removeOlderClient();
    /// Not after a cancel.
    void launchClientToUpdate();
    void promptAlreadyInstalled();
    void promptBastionUninstall();

    /// Raises an error of the library's own, as the engine raises its errors, and gives the dialog's answer.
    int raiseError(ProgramError code);

    // Detection.
    void checkForUpdate();

    // Execution.
    bool openClientLog(const std::wstring& logPath);
    HRESULT packageStatus(LPCWSTR wzPackageId, HRESULT hrStatus) const;

    // Shutdown.
    void endAsCancel();
    void endAsFailure();
    void endAsSuccess();
    /// Sends the report of a run that did not succeed, if the user has agreed to it, and waits for that. Its tracking
    /// id; empty if there is none.
    std::string submitErrorReport();
    /// The run is over for the user: the window goes, and a second run may start. Waits for nothing.
    void leaveTheScreen();

    ExceptionHandlerLife m_exceptionHandler;
    LoggerLife m_logger;  // outlives all that logs
    IBootstrapperEngine* m_engine;
    const BOOTSTRAPPER_COMMAND* m_command;
    UiRoutine m_uiRoutine;
    const RunHooks m_hooks;
    std::atomic<BOOTSTRAPPER_ACTION> m_action;
    BOOTSTRAPPER_DISPLAY m_userDisplay;
    RunVariables m_variables;
    RunContext m_run;
    RunTelemetry m_telemetry;
    Download m_download;
    ErrorReporting m_reporting;
    Handle m_installerMutex;
    PreparedThread m_uiThread;
    Handle m_dialogReady;
    std::atomic<HWND> m_dialogWindow = nullptr;
    std::atomic<bool> m_logoutExit = false;
    std::atomic<bool> m_quitRequested = false;
    std::atomic<int> m_shutdownResult = 0;
    bool m_executing = false;
    std::vector<FileHandle> m_lockedFiles;
};

}  // namespace pdx
