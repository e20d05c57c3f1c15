// The engine's callbacks that only write their log line and their context, for error reports.
#pragma once

#include "core/engine/BaseApplication.h"
#include "core/RunContext.h"

namespace pdx {

/// Each answers as the base does. One that gets a status updates the run's status with it, failed or not
/// (InstallStatus). Only OnLaunchApprovedExeComplete does not.
class RecordedCallbacks : public CBalBaseBootstrapperApplication {
  public:
    int STDMETHODCALLTYPE OnSystemShutdown(DWORD dwEndSession, int nRecommendation) override;
    int STDMETHODCALLTYPE OnDetectBegin(BOOL fInstalled, DWORD cPackages) override;
    int STDMETHODCALLTYPE OnDetectForwardCompatibleBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_RELATION_TYPE relationType,
                                                          LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                                          int nRecommendation) override;
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
    int STDMETHODCALLTYPE OnApplyBegin() override;
    void STDMETHODCALLTYPE OnApplyPhaseCount(DWORD dwPhaseCount) override;
    int STDMETHODCALLTYPE OnProgress(DWORD dwProgressPercentage, DWORD dwOverallPercentage) override;
    int STDMETHODCALLTYPE OnRegisterBegin() override;
    void STDMETHODCALLTYPE OnRegisterComplete(HRESULT hrStatus) override;
    int STDMETHODCALLTYPE OnCacheVerifyBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId) override;
    int STDMETHODCALLTYPE OnCachePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus, int nRecommendation) override;
    void STDMETHODCALLTYPE OnCacheComplete(HRESULT hrStatus) override;
    int STDMETHODCALLTYPE OnExecutePatchTarget(LPCWSTR wzPackageId, LPCWSTR wzTargetProductCode) override;
    int STDMETHODCALLTYPE OnExecuteFilesInUse(LPCWSTR wzPackageId, DWORD cFiles, LPCWSTR* rgwzFiles) override;
    void STDMETHODCALLTYPE OnUnregisterBegin() override;
    void STDMETHODCALLTYPE OnUnregisterComplete(HRESULT hrStatus) override;
    int STDMETHODCALLTYPE OnLaunchApprovedExeBegin() override;
    void STDMETHODCALLTYPE OnLaunchApprovedExeComplete(HRESULT hrStatus, DWORD dwProcessId) override;

  protected:
    using CBalBaseBootstrapperApplication::CBalBaseBootstrapperApplication;

    RunContext m_context;
};

}  // namespace pdx
