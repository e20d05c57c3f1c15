// The callbacks around applying: begin and end, rights, registration, progress, errors.
#include <mutex>

#include "core/BootstrapperApplication.h"
#include "core/ContextText.h"
#include "core/rules/Names.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "state/ElevatedBinaries.h"

namespace pdx {

using Base = CBalBaseBootstrapperApplication;

int BootstrapperApplication::OnApplyBegin() {
    PDX_LOG(logTrace, "BootstrapperApplication::OnApplyBegin", "Entering OnApplyBegin");
    replaceContext(operationApplyBegin);
    return Base::OnApplyBegin();
}

void BootstrapperApplication::OnApplyPhaseCount(DWORD dwPhaseCount) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnApplyPhaseCount", "dwPhaseCount=%u", dwPhaseCount);
    mergeContext(operationApplyPhaseCount, {{"nphs", dwPhaseCount}});
}

int BootstrapperApplication::OnElevate() {
    PDX_LOG(logTrace, "BootstrapperApplication::OnElevate", "Entering OnElevate");
    replaceContext(operationElevate);
    if (!m_hooks.isElevated()) {
        const std::wstring folder = elevatedFolderOf(m_hooks.libraryFolder());
        const std::wstring executable =
            folder.empty() ? std::wstring() : GetEngineVariable(L"BundleExecutableName", false);
        if (FAILED(lockElevatedBinaries(folder, executable))) return IDCANCEL;
    }
    return Base::OnElevate();
}

int BootstrapperApplication::OnProgress(DWORD dwProgressPercentage, DWORD dwOverallPercentage) {
    mergeContext({{"cpct", dwProgressPercentage}, {"opct", dwOverallPercentage}});
    return Base::OnProgress(dwProgressPercentage, dwOverallPercentage);
}

int BootstrapperApplication::OnError(BOOTSTRAPPER_ERROR_TYPE errorType, LPCWSTR wzPackageId, DWORD dwCode,
                                     LPCWSTR wzError, DWORD uiFlags, DWORD cData, LPCWSTR* rgwzData,
                                     int nRecommendation) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnError",
            "errorType=%s, wzPackageId=%ls, dwCode=%u, wzError=%ls, uiFlags=%s, cData=%u, rgwzData=[%ls], "
            "nRecommendation=%d",
            nameOf(errorType), textOrEmpty(wzPackageId), dwCode, textOrEmpty(wzError), nameOfMessageBoxStyle(uiFlags),
            cData, joinTexts(cData, rgwzData), nRecommendation);
    const HRESULT hr = formError(errorType, dwCode);
    UpdateInstallStatus(hr);
    tellError(hr, toUtf8(scrubProfilePath(textOrEmpty(wzError))));
    {
        const std::lock_guard guard(m_stateLock);
        m_status.errorShown = true;
    }
    // An HTTP authentication error goes to the dialog like all others: the base's answer for it is not kept.
    ErrorInfo record = {static_cast<DWORD>(errorType), dwCode, uiFlags, nRecommendation};
    return sendAppMessage(WM_BA_ERROR, reinterpret_cast<WPARAM>(&record));
}

int BootstrapperApplication::raiseError(ProgramError code) {
    return OnError(PALISADE_ERROR_TYPE, nullptr, code, nullptr, 0, 0, nullptr, resultOk);
}

int BootstrapperApplication::OnRegisterBegin() {
    PDX_LOG(logTrace, "BootstrapperApplication::OnRegisterBegin", "Entering OnRegisterBegin");
    replaceContext(operationRegisterBegin);
    return Base::OnRegisterBegin();
}

void BootstrapperApplication::OnRegisterComplete(HRESULT hrStatus) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnRegisterComplete", "hrStatus=%s", describeError(hrStatus));
    mergeContext(operationRegisterComplete, {{"stat", contextStatus(hrStatus)}});
    UpdateInstallStatus(hrStatus);
}

void BootstrapperApplication::OnUnregisterBegin() {
    PDX_LOG(logTrace, "BootstrapperApplication::OnUnregisterBegin", "Entering OnUnregisterBegin");
    replaceContext(operationUnregisterBegin);
}

void BootstrapperApplication::OnUnregisterComplete(HRESULT hrStatus) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnUnregisterComplete", "hrStatus=%s", describeError(hrStatus));
    mergeContext(operationUnregisterComplete, {{"stat", contextStatus(hrStatus)}});
    UpdateInstallStatus(hrStatus);
}

int BootstrapperApplication::OnApplyComplete(HRESULT hrStatus, BOOTSTRAPPER_APPLY_RESTART restart) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnApplyComplete", "hrStatus=%s, restart=%s", describeError(hrStatus),
            nameOf(restart));
    mergeContext(operationApplyComplete, {{"stat", contextStatus(hrStatus)}, {"rstr", static_cast<int32_t>(restart)}});
    UpdateInstallStatus(hrStatus);
    // m_fApplying stays set, unlike in the base: an ordinary end of the session is refused for the rest of the run.
    return sendAppMessage(WM_BA_APPLY_COMPLETE, static_cast<WPARAM>(hrStatus), restart);
}

int BootstrapperApplication::OnLaunchApprovedExeBegin() {
    PDX_LOG(logTrace, "BootstrapperApplication::OnLaunchApprovedExeBegin", "Entering OnLaunchApprovedExeBegin");
    replaceContext(operationLaunchApprovedExeBegin);
    return Base::OnLaunchApprovedExeBegin();
}

void BootstrapperApplication::OnLaunchApprovedExeComplete(HRESULT hrStatus, DWORD dwProcessId) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnLaunchApprovedExeComplete", "hrStatus=%s, dwProcessId=%u",
            describeError(hrStatus), dwProcessId);
    mergeContext(operationLaunchApprovedExeComplete, {{"stat", contextStatus(hrStatus)}, {"pid", dwProcessId}});
}

}  // namespace pdx
