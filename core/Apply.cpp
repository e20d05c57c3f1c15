// The callbacks of planning and applying. No requested state is changed: the plan follows the bundle's own conditions.
#include "core/BootstrapperApplication.h"
#include "core/Elevation.h"
#include "state/ElevatedBinaries.h"
#include "state/ProductState.h"

namespace pdx {

int BootstrapperApplication::OnPlanBegin(DWORD cPackages) {
    m_context.record(Operation::planBegin, {{"cPackages", "npkg", cPackages}});
    // The client's background programs must read the mark before its files are removed.
    if (action() == BOOTSTRAPPER_ACTION_UNINSTALL) setUnavailable();
    return cancelCheck();
}

void BootstrapperApplication::OnPlanComplete(HRESULT hrStatus) {
    m_context.record(Operation::planComplete, {{"hrStatus", "plst", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
    m_run.ui->planComplete(hrStatus);
}

int BootstrapperApplication::OnElevate() {
    m_context.record(Operation::elevate, {});
    if (!m_run.hooks.isElevated()) {
        const std::wstring folder = elevatedFolderOf(m_run.hooks.libraryFolder());
        const std::wstring executable = folder.empty() ? std::wstring() : m_bundleExecutable;
        if (FAILED(lockBeforeElevation(m_run, m_errors, folder, executable))) return IDCANCEL;
    }
    return cancelCheck();
}

int BootstrapperApplication::OnError(BOOTSTRAPPER_ERROR_TYPE errorType, LPCWSTR wzPackageId, DWORD dwCode,
                                     LPCWSTR wzError, DWORD uiFlags, DWORD cData, LPCWSTR* rgwzData,
                                     int nRecommendation) {
    // The base's answer to an HTTP authentication error is not used: such an error is shown like all others.
    return m_errors.report({errorType, wzPackageId, dwCode, wzError, uiFlags, {cData, rgwzData}, nRecommendation});
}

int BootstrapperApplication::OnApplyComplete(HRESULT hrStatus, BOOTSTRAPPER_APPLY_RESTART restart) {
    m_context.record(Operation::applyComplete, {{"hrStatus", "stat", Status{hrStatus}}, {"restart", "rstr", restart}});
    UpdateInstallStatus(hrStatus);
    // m_fApplying stays set on purpose: for the rest of the run an ordinary end of the session is refused.
    return m_run.ui->applyComplete(hrStatus, restart);
}

}  // namespace pdx
