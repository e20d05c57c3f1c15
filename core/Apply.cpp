// The callbacks of planning and applying. No requested state is changed: the plan follows the bundle's own conditions.
#include "core/BootstrapperApplication.h"
#include "core/Elevation.h"
#include "state/ElevatedBinaries.h"
#include "state/ProductState.h"

namespace pdx {

int BootstrapperApplication::OnPlanBegin(DWORD cPackages) {
    m_context.record(Operation::planBegin, {{"cPackages", "npkg", cPackages}});
    // The client's background parts see the mark before its files go.
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
        const std::wstring executable =
            folder.empty() ? std::wstring() : m_run.variables.get(variable::bundleExecutable);
        if (FAILED(lockElevatedBinaries(m_run, m_errors, folder, executable))) return IDCANCEL;
    }
    return cancelCheck();
}

int BootstrapperApplication::OnError(BOOTSTRAPPER_ERROR_TYPE errorType, LPCWSTR wzPackageId, DWORD dwCode,
                                     LPCWSTR wzError, DWORD uiFlags, DWORD cData, LPCWSTR* rgwzData,
                                     int nRecommendation) {
    // An HTTP authentication error is shown like all others: the base's answer for it is not kept.
    return m_errors.report({errorType, wzPackageId, dwCode, wzError, uiFlags, {cData, rgwzData}, nRecommendation});
}

int BootstrapperApplication::OnApplyComplete(HRESULT hrStatus, BOOTSTRAPPER_APPLY_RESTART restart) {
    m_context.record(Operation::applyComplete, {{"hrStatus", "stat", Status{hrStatus}}, {"restart", "rstr", restart}});
    UpdateInstallStatus(hrStatus);
    // m_fApplying stays set, although the work has ended: an ordinary end of the session is refused for the rest of the
    // run.
    return m_run.ui->applyComplete(hrStatus, restart);
}

}  // namespace pdx
