// The callbacks around applying: begin and end, rights, registration, progress, errors.
#include <mutex>

#include "core/BootstrapperApplication.h"
#include "state/ElevatedBinaries.h"

namespace pdx {

int BootstrapperApplication::OnApplyBegin() {
    record(Operation::applyBegin, {});
    return beginApplying();
}

void BootstrapperApplication::OnApplyPhaseCount(DWORD dwPhaseCount) {
    record(Operation::applyPhaseCount, {{"dwPhaseCount", "nphs", dwPhaseCount}});
}

int BootstrapperApplication::OnElevate() {
    record(Operation::elevate, {});
    if (!m_hooks.isElevated()) {
        const std::wstring folder = elevatedFolderOf(m_hooks.libraryFolder());
        const std::wstring executable =
            folder.empty() ? std::wstring() : GetEngineVariable(L"BundleExecutableName", false);
        if (FAILED(lockElevatedBinaries(folder, executable))) return IDCANCEL;
    }
    return cancelCheck();
}

int BootstrapperApplication::OnProgress(DWORD dwProgressPercentage, DWORD dwOverallPercentage) {
    mergeContext({{"cpct", dwProgressPercentage}, {"opct", dwOverallPercentage}});
    return noteProgress(dwProgressPercentage, dwOverallPercentage);
}

int BootstrapperApplication::OnError(BOOTSTRAPPER_ERROR_TYPE errorType, LPCWSTR wzPackageId, DWORD dwCode,
                                     LPCWSTR wzError, DWORD uiFlags, DWORD cData, LPCWSTR* rgwzData,
                                     int nRecommendation) {
    const Fact facts[] = {{"errorType", nullptr, errorType},
                          {"wzPackageId", nullptr, wzPackageId},
                          {"dwCode", nullptr, dwCode},
                          {"wzError", nullptr, wzError},
                          {"uiFlags", nullptr, BoxStyle{uiFlags}},
                          {"cData", nullptr, cData},
                          {"rgwzData", nullptr, TextList{cData, rgwzData}},
                          {"nRecommendation", nullptr, nRecommendation}};
    trace("BootstrapperApplication::OnError", facts);
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
    record(Operation::registerBegin, {});
    return cancelCheck();
}

void BootstrapperApplication::OnRegisterComplete(HRESULT hrStatus) {
    record(Operation::registerComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
}

void BootstrapperApplication::OnUnregisterBegin() { record(Operation::unregisterBegin, {}); }

void BootstrapperApplication::OnUnregisterComplete(HRESULT hrStatus) {
    record(Operation::unregisterComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
}

int BootstrapperApplication::OnApplyComplete(HRESULT hrStatus, BOOTSTRAPPER_APPLY_RESTART restart) {
    record(Operation::applyComplete, {{"hrStatus", "stat", Status{hrStatus}}, {"restart", "rstr", restart}});
    UpdateInstallStatus(hrStatus);
    // m_fApplying stays set, although the work has ended: an ordinary end of the session is refused for the rest of the
    // run.
    return sendAppMessage(WM_BA_APPLY_COMPLETE, static_cast<WPARAM>(hrStatus), restart);
}

int BootstrapperApplication::OnLaunchApprovedExeBegin() {
    record(Operation::launchApprovedExeBegin, {});
    return cancelCheck();
}

void BootstrapperApplication::OnLaunchApprovedExeComplete(HRESULT hrStatus, DWORD dwProcessId) {
    record(Operation::launchApprovedExeComplete,
           {{"hrStatus", "stat", Status{hrStatus}}, {"dwProcessId", "pid", dwProcessId}});
}

}  // namespace pdx
