#include "core/engine/BaseApplication.h"

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
    // Waits while PromptCancel's question is open: its answer counts already for this callback.
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
    if (m_display != BOOTSTRAPPER_DISPLAY_EMBEDDED) return cancelCheck();
    int answer = 0;
    const HRESULT hr = m_pEngine->SendEmbeddedProgress(progress, overall, &answer);
    if (SUCCEEDED(hr)) return answer < 0 ? answer : cancelCheck(answer);
    // Logged by the engine directly: this layer must work without a logger.
    m_pEngine->Log(BOOTSTRAPPER_LOG_LEVEL_ERROR,
                   toWide(fmt::format("Error 0x{:08x}: {}", static_cast<uint32_t>(hr), failure)).c_str());
    return -1;
}

int CBalBaseBootstrapperApplication::endSessionAnswer(DWORD endSession) const {
    return (endSession & ENDSESSION_CRITICAL) || !m_fApplying ? IDOK : IDCANCEL;
}

int CBalBaseBootstrapperApplication::beginApplying() {
    m_fApplying = true;
    m_dwProgressPercentage = 0;
    m_dwOverallProgressPercentage = 0;
    return cancelCheck();
}

int CBalBaseBootstrapperApplication::noteProgress(DWORD progress, DWORD overall) {
    m_dwProgressPercentage = progress;
    m_dwOverallProgressPercentage = overall;
    return sendEmbeddedProgress(progress, overall, "Failed to send embedded overall progress.");
}

int CBalBaseBootstrapperApplication::cacheProgressAnswer() {
    return sendEmbeddedProgress(m_dwProgressPercentage, m_dwOverallProgressPercentage,
                                "Failed to send embedded cache progress.");
}

int CBalBaseBootstrapperApplication::executeProgressAnswer(DWORD progress, DWORD overall) {
    return sendEmbeddedProgress(progress, overall, "Failed to send embedded execute progress.");
}

int CBalBaseBootstrapperApplication::errorAnswer(BOOTSTRAPPER_ERROR_TYPE type, LPCWSTR package, DWORD code,
                                                 int recommendation) {
    m_retry.errorOccurred(textOrEmpty(package), code);
    const bool authentication =
        type == BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_SERVER || type == BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_PROXY;
    if (m_display == BOOTSTRAPPER_DISPLAY_FULL && authentication) recommendation = resultTryAgain;
    return cancelCheck(recommendation);
}

int CBalBaseBootstrapperApplication::beginAcquire(LPCWSTR package, LPCWSTR payload) {
    m_retry.start(RetryKind::cache, textOrEmpty(package), textOrEmpty(payload));
    return cancelCheck();
}

int CBalBaseBootstrapperApplication::acquireAnswer(LPCWSTR package, LPCWSTR payload, HRESULT status,
                                                   int recommendation) {
    const int again = m_retry.end(RetryKind::cache, textOrEmpty(package), textOrEmpty(payload), status);
    return cancelCheck(again ? again : recommendation);
}

int CBalBaseBootstrapperApplication::beginPackage(LPCWSTR package, BOOL forward) {
    if (forward) m_retry.start(RetryKind::execute, textOrEmpty(package), L"");
    m_fRollingBack = !forward;
    return cancelCheck();
}

int CBalBaseBootstrapperApplication::packageAnswer(LPCWSTR package, HRESULT status, int recommendation) {
    const int again = m_retry.end(RetryKind::execute, textOrEmpty(package), L"", status);
    return cancelCheck(again ? again : recommendation);
}

}  // namespace pdx
