// The callbacks of detection that act.
#include "config/Settings.h"
#include "core/BootstrapperApplication.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "state/rules/UpdateRules.h"

namespace pdx {

int BootstrapperApplication::OnDetectUpdateBegin(LPCWSTR wzUpdateLocation, int nRecommendation) {
    m_context.record(Operation::detectUpdateBegin,
                     {{"wzUpdateLocation", "locn", wzUpdateLocation}, {"nRecommendation", "reco", nRecommendation}});
    if (isUpdateCheckDue({action(), m_command->relationType, isThinInstaller(),
                          getConfigBool("qa.installer.skipUpdateCheck", false)}))
        checkForUpdate();
    return cancelCheck(nRecommendation);
}

void BootstrapperApplication::checkForUpdate() {
    // Shown first: the check waits for the network.
    m_run.ui->showUpdateCheck();
    const auto address = m_run.hooks.newerInstaller(GetCurrentVersion());
    if (!address) return;
    // Size and hash are unknown: the engine accepts any file from that address.
    const HRESULT hr =
        m_run.engine->SetUpdate(nullptr, address->c_str(), 0, BOOTSTRAPPER_UPDATE_HASH_TYPE_NONE, nullptr, 0);
    if (FAILED(hr)) {
        PDX_LOG(logError, "BootstrapperApplication::OnDetectUpdateBegin", "The engine refuses the update %ls: %s",
                *address, describeError(hr));
        return;
    }
    m_run.action = BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED;
    // The newer installer takes the mutex while this one still runs.
    m_run.mutex.release();
}

void BootstrapperApplication::OnDetectPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                      BOOTSTRAPPER_PACKAGE_STATE state) {
    // The state is logged only: under "pkst" reports have the status.
    m_context.record(
        Operation::detectPackageComplete,
        {{"wzPackageId", "pkid", wzPackageId}, {"hrStatus", "pkst", Status{hrStatus}}, {"state", nullptr, state}});
    UpdateInstallStatus(hrStatus);
    if (isClientPackagePresent(m_run.action, textOrEmpty(wzPackageId), state)) m_repair.promptAlreadyInstalled();
}

void BootstrapperApplication::OnDetectComplete(HRESULT hrStatus) {
    m_context.record(Operation::detectComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
    // The engine completes a detection even after a request to quit; a plan made now would install.
    if (!m_run.isQuitRequested()) m_run.ui->detectComplete(hrStatus);
}

}  // namespace pdx
