#include "core/BaseApplication.h"

#include <fmt/format.h>

#include <mutex>

#include "platform/Text.h"

namespace pdx {

CBalBaseBootstrapperApplication::CBalBaseBootstrapperApplication(IBootstrapperEngine* engine,
                                                                 const BOOTSTRAPPER_COMMAND* command,
                                                                 DWORD retryMaximum, DWORD retryDelay)
    : m_display(command->display),
      m_restart(command->restart),
      m_pEngine(ComPtr<IBootstrapperEngine>::share(engine)),
      m_retry(retryMaximum, retryDelay, [](uint32_t milliseconds) { Sleep(milliseconds); }) {}

CBalBaseBootstrapperApplication::~CBalBaseBootstrapperApplication() = default;

HRESULT CBalBaseBootstrapperApplication::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_INVALIDARG;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IBootstrapperApplication) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IBootstrapperApplication*>(this);
    return S_OK;
}

ULONG CBalBaseBootstrapperApplication::AddRef() { return ++m_cReferences; }

ULONG CBalBaseBootstrapperApplication::Release() {
    const ULONG references = --m_cReferences;
    if (references == 0) delete this;
    return references;
}

int CBalBaseBootstrapperApplication::cancelCheck(int value) const {
    { const std::lock_guard ordering(m_csCanceled); }
    return !m_fRollingBack && m_fCanceled ? static_cast<int>(IDCANCEL) : value;
}

BOOL CBalBaseBootstrapperApplication::PromptCancel(HWND hWnd, BOOL fForceCancel, LPCWSTR wzMessage, LPCWSTR wzCaption) {
    const std::lock_guard guard(m_csCanceled);
    if (!m_fCanceled &&
        (fForceCancel || MessageBoxW(hWnd, wzMessage, wzCaption, MB_YESNO | MB_ICONEXCLAMATION) == IDYES))
        m_fCanceled = true;
    return m_fCanceled;
}

int CBalBaseBootstrapperApplication::sendEmbeddedProgress(DWORD progress, DWORD overall, const char* failure) {
    if (m_display != BOOTSTRAPPER_DISPLAY_EMBEDDED) return 0;
    int result = 0;
    const HRESULT hr = m_pEngine->SendEmbeddedProgress(progress, overall, &result);
    if (SUCCEEDED(hr)) return result;
    m_pEngine->Log(BOOTSTRAPPER_LOG_LEVEL_ERROR,
                   toWide(fmt::format("Error 0x{:08x}: {}", static_cast<uint32_t>(hr), failure)).c_str());
    return -1;
}

int CBalBaseBootstrapperApplication::progressAnswer(DWORD progress, DWORD overall, const char* failure) {
    const int answer = sendEmbeddedProgress(progress, overall, failure);
    return answer < 0 ? answer : cancelCheck(answer);
}

HRESULT CBalBaseBootstrapperApplication::OnStartup() { return S_OK; }
int CBalBaseBootstrapperApplication::OnShutdown() { return 0; }

int CBalBaseBootstrapperApplication::OnSystemShutdown(DWORD dwEndSession, int) {
    return (dwEndSession & ENDSESSION_CRITICAL) || !m_fApplying ? IDOK : IDCANCEL;
}

int CBalBaseBootstrapperApplication::OnDetectBegin(BOOL, DWORD) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnDetectForwardCompatibleBundle(LPCWSTR, BOOTSTRAPPER_RELATION_TYPE, LPCWSTR, BOOL,
                                                                     DWORD64, int nRecommendation) {
    return cancelCheck(nRecommendation);
}
int CBalBaseBootstrapperApplication::OnDetectUpdateBegin(LPCWSTR, int nRecommendation) {
    return cancelCheck(nRecommendation);
}
int CBalBaseBootstrapperApplication::OnDetectUpdate(LPCWSTR, DWORD64, DWORD64, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR,
                                                    int nRecommendation) {
    return cancelCheck(nRecommendation);
}
void CBalBaseBootstrapperApplication::OnDetectUpdateComplete(HRESULT, LPCWSTR) {}
int CBalBaseBootstrapperApplication::OnDetectRelatedBundle(LPCWSTR, BOOTSTRAPPER_RELATION_TYPE, LPCWSTR, BOOL, DWORD64,
                                                           BOOTSTRAPPER_RELATED_OPERATION) {
    return cancelCheck();
}
int CBalBaseBootstrapperApplication::OnDetectPackageBegin(LPCWSTR) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnDetectCompatiblePackage(LPCWSTR, LPCWSTR) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnDetectRelatedMsiPackage(LPCWSTR, LPCWSTR, BOOL, DWORD64,
                                                               BOOTSTRAPPER_RELATED_OPERATION) {
    return cancelCheck();
}
int CBalBaseBootstrapperApplication::OnDetectTargetMsiPackage(LPCWSTR, LPCWSTR, BOOTSTRAPPER_PACKAGE_STATE) {
    return cancelCheck();
}
int CBalBaseBootstrapperApplication::OnDetectMsiFeature(LPCWSTR, LPCWSTR, BOOTSTRAPPER_FEATURE_STATE) {
    return cancelCheck();
}
void CBalBaseBootstrapperApplication::OnDetectPackageComplete(LPCWSTR, HRESULT, BOOTSTRAPPER_PACKAGE_STATE) {}
void CBalBaseBootstrapperApplication::OnDetectComplete(HRESULT) {}

int CBalBaseBootstrapperApplication::OnPlanBegin(DWORD) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnPlanRelatedBundle(LPCWSTR, BOOTSTRAPPER_REQUEST_STATE*) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnPlanPackageBegin(LPCWSTR, BOOTSTRAPPER_REQUEST_STATE*) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnPlanCompatiblePackage(LPCWSTR, BOOTSTRAPPER_REQUEST_STATE*) {
    return cancelCheck();
}
int CBalBaseBootstrapperApplication::OnPlanTargetMsiPackage(LPCWSTR, LPCWSTR, BOOTSTRAPPER_REQUEST_STATE*) {
    return cancelCheck();
}
int CBalBaseBootstrapperApplication::OnPlanMsiFeature(LPCWSTR, LPCWSTR, BOOTSTRAPPER_FEATURE_STATE*) {
    return cancelCheck();
}
void CBalBaseBootstrapperApplication::OnPlanPackageComplete(LPCWSTR, HRESULT, BOOTSTRAPPER_PACKAGE_STATE,
                                                            BOOTSTRAPPER_REQUEST_STATE, BOOTSTRAPPER_ACTION_STATE,
                                                            BOOTSTRAPPER_ACTION_STATE) {}
void CBalBaseBootstrapperApplication::OnPlanComplete(HRESULT) {}

int CBalBaseBootstrapperApplication::OnApplyBegin() {
    m_fApplying = true;
    m_dwProgressPercentage = 0;
    m_dwOverallProgressPercentage = 0;
    return cancelCheck();
}
void CBalBaseBootstrapperApplication::OnApplyPhaseCount(DWORD) {}
int CBalBaseBootstrapperApplication::OnElevate() { return cancelCheck(); }

int CBalBaseBootstrapperApplication::OnProgress(DWORD dwProgressPercentage, DWORD dwOverallPercentage) {
    m_dwProgressPercentage = dwProgressPercentage;
    m_dwOverallProgressPercentage = dwOverallPercentage;
    return progressAnswer(dwProgressPercentage, dwOverallPercentage, "Failed to send embedded overall progress.");
}

int CBalBaseBootstrapperApplication::OnError(BOOTSTRAPPER_ERROR_TYPE errorType, LPCWSTR wzPackageId, DWORD dwCode,
                                             LPCWSTR, DWORD, DWORD, LPCWSTR*, int nRecommendation) {
    m_retry.errorOccurred(textOrEmpty(wzPackageId), dwCode);
    const bool authentication =
        errorType == BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_SERVER || errorType == BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_PROXY;
    if (m_display == BOOTSTRAPPER_DISPLAY_FULL && authentication) nRecommendation = resultTryAgain;
    return cancelCheck(nRecommendation);
}

int CBalBaseBootstrapperApplication::OnRegisterBegin() { return cancelCheck(); }
void CBalBaseBootstrapperApplication::OnRegisterComplete(HRESULT) {}
int CBalBaseBootstrapperApplication::OnCacheBegin() { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnCachePackageBegin(LPCWSTR, DWORD, DWORD64) { return cancelCheck(); }

int CBalBaseBootstrapperApplication::OnCacheAcquireBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                         BOOTSTRAPPER_CACHE_OPERATION, LPCWSTR) {
    m_retry.start(RetryKind::cache, textOrEmpty(wzPackageOrContainerId), textOrEmpty(wzPayloadId));
    return cancelCheck();
}

int CBalBaseBootstrapperApplication::OnCacheAcquireProgress(LPCWSTR, LPCWSTR, DWORD64, DWORD64, DWORD) {
    return progressAnswer(m_dwProgressPercentage, m_dwOverallProgressPercentage,
                          "Failed to send embedded cache progress.");
}

int CBalBaseBootstrapperApplication::OnResolveSource(LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR) { return cancelCheck(); }

int CBalBaseBootstrapperApplication::OnCacheAcquireComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                            HRESULT hrStatus, int nRecommendation) {
    const int again =
        m_retry.end(RetryKind::cache, textOrEmpty(wzPackageOrContainerId), textOrEmpty(wzPayloadId), hrStatus);
    return cancelCheck(again ? again : nRecommendation);
}

int CBalBaseBootstrapperApplication::OnCacheVerifyBegin(LPCWSTR, LPCWSTR) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnCacheVerifyComplete(LPCWSTR, LPCWSTR, HRESULT, int nRecommendation) {
    return cancelCheck(nRecommendation);
}
int CBalBaseBootstrapperApplication::OnCachePackageComplete(LPCWSTR, HRESULT, int nRecommendation) {
    return cancelCheck(nRecommendation);
}
void CBalBaseBootstrapperApplication::OnCacheComplete(HRESULT) {}

int CBalBaseBootstrapperApplication::OnExecuteBegin(DWORD) { return cancelCheck(); }

int CBalBaseBootstrapperApplication::OnExecutePackageBegin(LPCWSTR wzPackageId, BOOL fExecute) {
    if (fExecute) m_retry.start(RetryKind::execute, textOrEmpty(wzPackageId), L"");
    m_fRollingBack = !fExecute;
    return cancelCheck();
}

int CBalBaseBootstrapperApplication::OnExecutePatchTarget(LPCWSTR, LPCWSTR) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnExecuteProgress(LPCWSTR, DWORD dwProgressPercentage, DWORD dwOverallPercentage) {
    return progressAnswer(dwProgressPercentage, dwOverallPercentage, "Failed to send embedded execute progress.");
}
int CBalBaseBootstrapperApplication::OnExecuteMsiMessage(LPCWSTR, int, UINT, LPCWSTR, DWORD, LPCWSTR*,
                                                         int nRecommendation) {
    return cancelCheck(nRecommendation);
}
int CBalBaseBootstrapperApplication::OnExecuteFilesInUse(LPCWSTR, DWORD, LPCWSTR*) { return cancelCheck(); }

int CBalBaseBootstrapperApplication::OnExecutePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                              BOOTSTRAPPER_APPLY_RESTART, int nRecommendation) {
    const int again = m_retry.end(RetryKind::execute, textOrEmpty(wzPackageId), L"", hrStatus);
    return cancelCheck(again ? again : nRecommendation);
}

void CBalBaseBootstrapperApplication::OnExecuteComplete(HRESULT) {}
void CBalBaseBootstrapperApplication::OnUnregisterBegin() {}
void CBalBaseBootstrapperApplication::OnUnregisterComplete(HRESULT) {}

int CBalBaseBootstrapperApplication::OnApplyComplete(HRESULT, BOOTSTRAPPER_APPLY_RESTART restart) {
    m_fApplying = false;
    return restart == BOOTSTRAPPER_APPLY_RESTART_REQUIRED ? static_cast<int>(resultRestart) : cancelCheck();
}

int CBalBaseBootstrapperApplication::OnLaunchApprovedExeBegin() { return cancelCheck(); }
void CBalBaseBootstrapperApplication::OnLaunchApprovedExeComplete(HRESULT, DWORD) {}
int CBalBaseBootstrapperApplication::OnReserved57(DWORD) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnReserved58(DWORD, DWORD) { return cancelCheck(); }
int CBalBaseBootstrapperApplication::OnReserved59(DWORD, DWORD, DWORD) { return cancelCheck(); }

}  // namespace pdx
