// The callbacks around applying: begin and end, rights, registration, progress, errors.
#include "core/BootstrapperApplication.h"
#include "state/ElevatedBinaries.h"

namespace pdx {

int BootstrapperApplication::OnApplyBegin() {
    m_run.record(Operation::applyBegin, {});
    return beginApplying();
}

void BootstrapperApplication::OnApplyPhaseCount(DWORD dwPhaseCount) {
    m_run.record(Operation::applyPhaseCount, {{"dwPhaseCount", "nphs", dwPhaseCount}});
}

int BootstrapperApplication::OnElevate() {
    m_run.record(Operation::elevate, {});
    if (!m_hooks.isElevated()) {
        const std::wstring folder = elevatedFolderOf(m_hooks.libraryFolder());
        const std::wstring executable = folder.empty() ? std::wstring() : m_variables.get(variable::bundleExecutable);
        if (FAILED(lockElevatedBinaries(folder, executable))) return IDCANCEL;
    }
    return cancelCheck();
}

int BootstrapperApplication::OnProgress(DWORD dwProgressPercentage, DWORD dwOverallPercentage) {
    m_run.merge({{"cpct", dwProgressPercentage}, {"opct", dwOverallPercentage}});
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
    RunContext::trace("BootstrapperApplication::OnError", facts);
    const HRESULT hr = formError(errorType, dwCode);
    UpdateInstallStatus(hr);
    m_telemetry.sendError(hr, toUtf8(scrubProfilePath(textOrEmpty(wzError))));
    m_run.markErrorShown();
    // An HTTP authentication error goes to the dialog like all others: the base's answer for it is not kept.
    ErrorInfo record = {static_cast<DWORD>(errorType), dwCode, uiFlags, nRecommendation};
    return sendAppMessage(WM_BA_ERROR, reinterpret_cast<WPARAM>(&record));
}

int BootstrapperApplication::raiseError(ProgramError code) {
    return OnError(PALISADE_ERROR_TYPE, nullptr, code, nullptr, 0, 0, nullptr, resultOk);
}

int BootstrapperApplication::OnRegisterBegin() {
    m_run.record(Operation::registerBegin, {});
    return cancelCheck();
}

void BootstrapperApplication::OnRegisterComplete(HRESULT hrStatus) {
    m_run.record(Operation::registerComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
}

void BootstrapperApplication::OnUnregisterBegin() { m_run.record(Operation::unregisterBegin, {}); }

void BootstrapperApplication::OnUnregisterComplete(HRESULT hrStatus) {
    m_run.record(Operation::unregisterComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
}

int BootstrapperApplication::OnApplyComplete(HRESULT hrStatus, BOOTSTRAPPER_APPLY_RESTART restart) {
    m_run.record(Operation::applyComplete, {{"hrStatus", "stat", Status{hrStatus}}, {"restart", "rstr", restart}});
    UpdateInstallStatus(hrStatus);
    // m_fApplying stays set, although the work has ended: an ordinary end of the session is refused for the rest of the
    // run.
    return sendAppMessage(WM_BA_APPLY_COMPLETE, static_cast<WPARAM>(hrStatus), restart);
}

int BootstrapperApplication::OnLaunchApprovedExeBegin() {
    m_run.record(Operation::launchApprovedExeBegin, {});
    return cancelCheck();
}

void BootstrapperApplication::OnLaunchApprovedExeComplete(HRESULT hrStatus, DWORD dwProcessId) {
    m_run.record(Operation::launchApprovedExeComplete,
                 {{"hrStatus", "stat", Status{hrStatus}}, {"dwProcessId", "pid", dwProcessId}});
}

}  // namespace pdx
