// The interface through which the Burn engine (3.11) reports a run, in the order of its table.
#pragma once

#include "platform/Engine.h"

// Names of the engine's interface.
// NOLINTBEGIN(readability-identifier-naming)
/// {53C31D56-49C0-426B-AB06-099D717C67FE}
inline constexpr GUID IID_IBootstrapperApplication = {
    0x53c31d56, 0x49c0, 0x426b, {0xab, 0x06, 0x09, 0x9d, 0x71, 0x7c, 0x67, 0xfe}};

/// Callbacks 3 to 59 of the engine's table, after the three of IUnknown. The engine calls on more than one thread.
/// OnCacheBegin to OnCacheComplete, with the OnProgress between them, run on its cache thread, which may overlap with
/// execution. OnSystemShutdown runs on the thread of its message window.
struct IBootstrapperApplication : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE OnStartup() = 0;
    virtual int STDMETHODCALLTYPE OnShutdown() = 0;
    virtual int STDMETHODCALLTYPE OnSystemShutdown(DWORD dwEndSession, int nRecommendation) = 0;
    virtual int STDMETHODCALLTYPE OnDetectBegin(BOOL fInstalled, DWORD cPackages) = 0;
    virtual int STDMETHODCALLTYPE OnDetectForwardCompatibleBundle(LPCWSTR wzBundleId,
                                                                  BOOTSTRAPPER_RELATION_TYPE relationType,
                                                                  LPCWSTR wzBundleTag, BOOL fPerMachine,
                                                                  DWORD64 dw64Version, int nRecommendation) = 0;
    virtual int STDMETHODCALLTYPE OnDetectUpdateBegin(LPCWSTR wzUpdateLocation, int nRecommendation) = 0;
    virtual int STDMETHODCALLTYPE OnDetectUpdate(LPCWSTR wzUpdateLocation, DWORD64 dw64Size, DWORD64 dw64Version,
                                                 LPCWSTR wzTitle, LPCWSTR wzSummary, LPCWSTR wzContentType,
                                                 LPCWSTR wzContent, int nRecommendation) = 0;
    virtual void STDMETHODCALLTYPE OnDetectUpdateComplete(HRESULT hrStatus, LPCWSTR wzUpdateLocation) = 0;
    virtual int STDMETHODCALLTYPE OnDetectRelatedBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_RELATION_TYPE relationType,
                                                        LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                                        BOOTSTRAPPER_RELATED_OPERATION operation) = 0;
    virtual int STDMETHODCALLTYPE OnDetectPackageBegin(LPCWSTR wzPackageId) = 0;
    virtual int STDMETHODCALLTYPE OnDetectCompatiblePackage(LPCWSTR wzPackageId, LPCWSTR wzCompatiblePackageId) = 0;
    virtual int STDMETHODCALLTYPE OnDetectRelatedMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                            BOOL fPerMachine, DWORD64 dw64Version,
                                                            BOOTSTRAPPER_RELATED_OPERATION operation) = 0;
    virtual int STDMETHODCALLTYPE OnDetectTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                           BOOTSTRAPPER_PACKAGE_STATE patchState) = 0;
    virtual int STDMETHODCALLTYPE OnDetectMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId,
                                                     BOOTSTRAPPER_FEATURE_STATE state) = 0;
    virtual void STDMETHODCALLTYPE OnDetectPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                           BOOTSTRAPPER_PACKAGE_STATE state) = 0;
    virtual void STDMETHODCALLTYPE OnDetectComplete(HRESULT hrStatus) = 0;
    virtual int STDMETHODCALLTYPE OnPlanBegin(DWORD cPackages) = 0;
    virtual int STDMETHODCALLTYPE OnPlanRelatedBundle(LPCWSTR wzBundleId,
                                                      BOOTSTRAPPER_REQUEST_STATE* pRequestedState) = 0;
    virtual int STDMETHODCALLTYPE OnPlanPackageBegin(LPCWSTR wzPackageId,
                                                     BOOTSTRAPPER_REQUEST_STATE* pRequestedState) = 0;
    virtual int STDMETHODCALLTYPE OnPlanCompatiblePackage(LPCWSTR wzPackageId,
                                                          BOOTSTRAPPER_REQUEST_STATE* pRequestedState) = 0;
    virtual int STDMETHODCALLTYPE OnPlanTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                         BOOTSTRAPPER_REQUEST_STATE* pRequestedState) = 0;
    virtual int STDMETHODCALLTYPE OnPlanMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId,
                                                   BOOTSTRAPPER_FEATURE_STATE* pRequestedState) = 0;
    virtual void STDMETHODCALLTYPE OnPlanPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                         BOOTSTRAPPER_PACKAGE_STATE state,
                                                         BOOTSTRAPPER_REQUEST_STATE requested,
                                                         BOOTSTRAPPER_ACTION_STATE execute,
                                                         BOOTSTRAPPER_ACTION_STATE rollback) = 0;
    virtual void STDMETHODCALLTYPE OnPlanComplete(HRESULT hrStatus) = 0;
    virtual int STDMETHODCALLTYPE OnApplyBegin() = 0;
    virtual void STDMETHODCALLTYPE OnApplyPhaseCount(DWORD dwPhaseCount) = 0;
    virtual int STDMETHODCALLTYPE OnElevate() = 0;
    virtual int STDMETHODCALLTYPE OnProgress(DWORD dwProgressPercentage, DWORD dwOverallPercentage) = 0;
    virtual int STDMETHODCALLTYPE OnError(BOOTSTRAPPER_ERROR_TYPE errorType, LPCWSTR wzPackageId, DWORD dwCode,
                                          LPCWSTR wzError, DWORD uiFlags, DWORD cData, LPCWSTR* rgwzData,
                                          int nRecommendation) = 0;
    virtual int STDMETHODCALLTYPE OnRegisterBegin() = 0;
    virtual void STDMETHODCALLTYPE OnRegisterComplete(HRESULT hrStatus) = 0;
    virtual int STDMETHODCALLTYPE OnCacheBegin() = 0;
    virtual int STDMETHODCALLTYPE OnCachePackageBegin(LPCWSTR wzPackageId, DWORD cCachePayloads,
                                                      DWORD64 dw64PackageCacheSize) = 0;
    virtual int STDMETHODCALLTYPE OnCacheAcquireBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                      BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR wzSource) = 0;
    virtual int STDMETHODCALLTYPE OnCacheAcquireProgress(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                         DWORD64 dw64Progress, DWORD64 dw64Total,
                                                         DWORD dwOverallPercentage) = 0;
    virtual int STDMETHODCALLTYPE OnResolveSource(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                  LPCWSTR wzLocalSource, LPCWSTR wzDownloadSource) = 0;
    virtual int STDMETHODCALLTYPE OnCacheAcquireComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                         HRESULT hrStatus, int nRecommendation) = 0;
    virtual int STDMETHODCALLTYPE OnCacheVerifyBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId) = 0;
    virtual int STDMETHODCALLTYPE OnCacheVerifyComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                        HRESULT hrStatus, int nRecommendation) = 0;
    virtual int STDMETHODCALLTYPE OnCachePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                         int nRecommendation) = 0;
    virtual void STDMETHODCALLTYPE OnCacheComplete(HRESULT hrStatus) = 0;
    virtual int STDMETHODCALLTYPE OnExecuteBegin(DWORD cExecutingPackages) = 0;
    virtual int STDMETHODCALLTYPE OnExecutePackageBegin(LPCWSTR wzPackageId, BOOL fExecute) = 0;
    virtual int STDMETHODCALLTYPE OnExecutePatchTarget(LPCWSTR wzPackageId, LPCWSTR wzTargetProductCode) = 0;
    virtual int STDMETHODCALLTYPE OnExecuteProgress(LPCWSTR wzPackageId, DWORD dwProgressPercentage,
                                                    DWORD dwOverallPercentage) = 0;
    virtual int STDMETHODCALLTYPE OnExecuteMsiMessage(LPCWSTR wzPackageId, int mt, UINT uiFlags, LPCWSTR wzMessage,
                                                      DWORD cData, LPCWSTR* rgwzData, int nRecommendation) = 0;
    virtual int STDMETHODCALLTYPE OnExecuteFilesInUse(LPCWSTR wzPackageId, DWORD cFiles, LPCWSTR* rgwzFiles) = 0;
    virtual int STDMETHODCALLTYPE OnExecutePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                           BOOTSTRAPPER_APPLY_RESTART restart, int nRecommendation) = 0;
    virtual void STDMETHODCALLTYPE OnExecuteComplete(HRESULT hrStatus) = 0;
    virtual void STDMETHODCALLTYPE OnUnregisterBegin() = 0;
    virtual void STDMETHODCALLTYPE OnUnregisterComplete(HRESULT hrStatus) = 0;
    virtual int STDMETHODCALLTYPE OnApplyComplete(HRESULT hrStatus, BOOTSTRAPPER_APPLY_RESTART restart) = 0;
    virtual int STDMETHODCALLTYPE OnLaunchApprovedExeBegin() = 0;
    virtual void STDMETHODCALLTYPE OnLaunchApprovedExeComplete(HRESULT hrStatus, DWORD dwProcessId) = 0;
    /// Three later additions to the interface, of which only the size of the arguments is known.
    virtual int STDMETHODCALLTYPE OnReserved57(DWORD first) = 0;
    virtual int STDMETHODCALLTYPE OnReserved58(DWORD first, DWORD second) = 0;
    virtual int STDMETHODCALLTYPE OnReserved59(DWORD first, DWORD second, DWORD third) = 0;
};
// NOLINTEND(readability-identifier-naming)
