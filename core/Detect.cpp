// The callbacks of detection. Related bundles, features and the like are only kept for reports.
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
    // The page stands before the network is waited for.
    m_run.ui->showUpdateCheck();
    const auto address = m_run.hooks.newerInstaller(GetCurrentVersion());
    if (!address) return;
    // Neither size nor hash is known: the engine takes what it is sent.
    const HRESULT hr =
        m_run.engine->SetUpdate(nullptr, address->c_str(), 0, BOOTSTRAPPER_UPDATE_HASH_TYPE_NONE, nullptr, 0);
    if (FAILED(hr)) {
        PDX_LOG(logError, "BootstrapperApplication::OnDetectUpdateBegin", "The engine refuses the update %ls: %s",
                *address, describeError(hr));
        return;
    }
    m_run.action = BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED;
    // The newer installer takes it, while this one still runs.
    m_run.mutex.release();
}

void BootstrapperApplication::OnDetectPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                      BOOTSTRAPPER_PACKAGE_STATE state) {
    // The package's state is not kept: reports show the status under this key.
    m_context.record(
        Operation::detectPackageComplete,
        {{"wzPackageId", "pkid", wzPackageId}, {"hrStatus", "pkst", Status{hrStatus}}, {"state", nullptr, state}});
    UpdateInstallStatus(hrStatus);
    if (isClientPackagePresent(m_run.action, textOrEmpty(wzPackageId), state)) m_repair.promptAlreadyInstalled();
}

void BootstrapperApplication::OnDetectComplete(HRESULT hrStatus) {
    m_context.record(Operation::detectComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
    // The engine reports the end of a detection also after it was asked to quit; a plan made now would install.
    if (!m_run.isQuitRequested()) m_run.ui->detectComplete(hrStatus);
}

}  // namespace pdx
