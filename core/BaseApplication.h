// The support layer between the engine's table and the application: reference count, cancel flag, and the default
// answer of every slot.
#pragma once

#include <atomic>

#include "core/rules/RetrySupport.h"
#include "platform/ComPtr.h"
#include "platform/Engine.h"
#include "platform/Lock.h"

namespace pdx {

class CBalBaseBootstrapperApplication : public IBootstrapperApplication {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    /// Deletes the object with the last reference.
    ULONG STDMETHODCALLTYPE Release() override;

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
    int STDMETHODCALLTYPE OnReserved57(DWORD first) override;
    int STDMETHODCALLTYPE OnReserved58(DWORD first, DWORD second) override;
    int STDMETHODCALLTYPE OnReserved59(DWORD first, DWORD second, DWORD third) override;

    /// Asks to cancel the run: at once when forced, else by a yes-or-no message box over hWnd. Returns whether the run
    /// is cancelled. Called on the dialog's thread.
    virtual BOOL STDMETHODCALLTYPE PromptCancel(HWND hWnd, BOOL fForceCancel, LPCWSTR wzMessage, LPCWSTR wzCaption);

  protected:
    /// retryMaximum and retryDelay (milliseconds) are those of the support layer's retries.
    CBalBaseBootstrapperApplication(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command,
                                    DWORD retryMaximum, DWORD retryDelay);
    /// Behind every slot that the engine calls: compilers lay out the entries of a destructor differently.
    virtual ~CBalBaseBootstrapperApplication();

    /// IDCANCEL if the user has cancelled and the engine is not rolling back, else the value: a rollback runs to its
    /// end.
    int cancelCheck(int value = 0) const;
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
    /// Tells progress to the engine that runs this one embedded. Returns 0, the parent's answer, or -1 when it could
    /// not be told. That is logged with the given text, and straight to the engine: this layer is below the logger.
    int sendEmbeddedProgress(DWORD progress, DWORD overall, const char* failure);
    int progressAnswer(DWORD progress, DWORD overall, const char* failure);

    mutable RecursiveLock m_csCanceled;
    std::atomic<bool> m_fCanceled = false;
    std::atomic<ULONG> m_cReferences = 1;
};

}  // namespace pdx
