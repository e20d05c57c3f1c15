// The callbacks of detection. Related bundles, features and the like are only kept for reports.
#include "config/Settings.h"
#include "core/BootstrapperApplication.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "state/rules/UpdateRules.h"

namespace pdx {

int BootstrapperApplication::OnDetectBegin(BOOL fInstalled, DWORD cPackages) {
    m_run.record(Operation::detectBegin,
                 {{"fInstalled", "inst", fInstalled != FALSE}, {"cPackages", "npkg", cPackages}});
    return cancelCheck();
}

int BootstrapperApplication::OnDetectForwardCompatibleBundle(LPCWSTR wzBundleId,
                                                             BOOTSTRAPPER_RELATION_TYPE relationType,
                                                             LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                                             int nRecommendation) {
    m_run.record(Operation::detectForwardCompatibleBundle, {{"wzBundleId", "bund", wzBundleId},
                                                            {"relationType", "relt", relationType},
                                                            {"wzBundleTag", "btag", wzBundleTag},
                                                            {"fPerMachine", "perm", fPerMachine != FALSE},
                                                            {"dw64Version", "vers", Version{dw64Version}},
                                                            {"nRecommendation", "reco", nRecommendation}});
    return cancelCheck(nRecommendation);
}

int BootstrapperApplication::OnDetectUpdateBegin(LPCWSTR wzUpdateLocation, int nRecommendation) {
    m_run.record(Operation::detectUpdateBegin,
                 {{"wzUpdateLocation", "locn", wzUpdateLocation}, {"nRecommendation", "reco", nRecommendation}});
    if (isUpdateCheckDue({m_action, m_command->relationType, isThinInstaller(),
                          getConfigBool("qa.installer.skipUpdateCheck", false)}))
        checkForUpdate();
    return cancelCheck(nRecommendation);
}

void BootstrapperApplication::checkForUpdate() {
    // The page stands before the network is waited for.
    sendAppMessage(WM_BA_DETECT_UPDATE_BEGIN);
    const auto address = m_hooks.newerInstaller(GetCurrentVersion());
    if (!address) return;
    // Neither size nor hash is known: the engine takes what it is sent.
    const HRESULT hr =
        m_engine->SetUpdate(nullptr, address->c_str(), 0, BOOTSTRAPPER_UPDATE_HASH_TYPE_NONE, nullptr, 0);
    if (FAILED(hr)) {
        PDX_LOG(logError, "BootstrapperApplication::OnDetectUpdateBegin", "The engine refuses the update %ls: %s",
                *address, describeError(hr));
        return;
    }
    m_action = BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED;
    // The newer installer takes it, while this one still runs.
    releaseInstallerMutex();
}

int BootstrapperApplication::OnDetectUpdate(LPCWSTR wzUpdateLocation, DWORD64 dw64Size, DWORD64 dw64Version,
                                            LPCWSTR wzTitle, LPCWSTR wzSummary, LPCWSTR wzContentType,
                                            LPCWSTR wzContent, int nRecommendation) {
    m_run.record(Operation::detectUpdate, {{"wzUpdateLocation", "locn", wzUpdateLocation},
                                           {"dw64Size", "size", dw64Size},
                                           {"dw64Version", "vers", Version{dw64Version}},
                                           {"wzTitle", "titl", wzTitle},
                                           {"wzSummary", "summ", wzSummary},
                                           {"wzContentType", "type", wzContentType},
                                           {"wzContent", "cont", wzContent},
                                           {"nRecommendation", "reco", nRecommendation}});
    return cancelCheck(nRecommendation);
}

void BootstrapperApplication::OnDetectUpdateComplete(HRESULT hrStatus, LPCWSTR wzUpdateLocation) {
    m_run.record(Operation::detectUpdateComplete,
                 {{"hrStatus", "stat", Status{hrStatus}}, {"wzUpdateLocation", "locn", wzUpdateLocation}});
    UpdateInstallStatus(hrStatus);
}

int BootstrapperApplication::OnDetectRelatedBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_RELATION_TYPE relationType,
                                                   LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                                   BOOTSTRAPPER_RELATED_OPERATION operation) {
    m_run.record(Operation::detectRelatedBundle, {{"wzBundleId", "bund", wzBundleId},
                                                  {"relationType", "relt", relationType},
                                                  {"wzBundleTag", "btag", wzBundleTag},
                                                  {"fPerMachine", "perm", fPerMachine != FALSE},
                                                  {"dw64Version", "vers", Version{dw64Version}},
                                                  {"operation", "oper", operation}});
    return cancelCheck();
}

int BootstrapperApplication::OnDetectPackageBegin(LPCWSTR wzPackageId) {
    m_run.record(Operation::detectPackageBegin, {{"wzPackageId", "pkid", wzPackageId}});
    return cancelCheck();
}

int BootstrapperApplication::OnDetectCompatiblePackage(LPCWSTR wzPackageId, LPCWSTR wzCompatiblePackageId) {
    m_run.record(Operation::detectCompatiblePackage,
                 {{"wzPackageId", "pkid", wzPackageId}, {"wzCompatiblePackageId", "cpid", wzCompatiblePackageId}});
    return cancelCheck();
}

int BootstrapperApplication::OnDetectRelatedMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode, BOOL fPerMachine,
                                                       DWORD64 dw64Version, BOOTSTRAPPER_RELATED_OPERATION operation) {
    m_run.record(Operation::detectRelatedMsiPackage, {{"wzPackageId", "pkid", wzPackageId},
                                                      {"wzProductCode", "pcod", wzProductCode},
                                                      {"fPerMachine", "perm", fPerMachine != FALSE},
                                                      {"dw64Version", "vers", Version{dw64Version}},
                                                      {"operation", "oper", operation}});
    return cancelCheck();
}

int BootstrapperApplication::OnDetectTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                      BOOTSTRAPPER_PACKAGE_STATE patchState) {
    m_run.record(Operation::detectTargetMsiPackage, {{"wzPackageId", "pkid", wzPackageId},
                                                     {"wzProductCode", "pcod", wzProductCode},
                                                     {"patchState", "ptch", patchState}});
    return cancelCheck();
}

int BootstrapperApplication::OnDetectMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId,
                                                BOOTSTRAPPER_FEATURE_STATE state) {
    m_run.record(
        Operation::detectMsiFeature,
        {{"wzPackageId", "pkid", wzPackageId}, {"wzFeatureId", "ftid", wzFeatureId}, {"state", "ftst", state}});
    return cancelCheck();
}

void BootstrapperApplication::OnDetectPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                      BOOTSTRAPPER_PACKAGE_STATE state) {
    // The package's state is not kept: reports show the status under this key.
    m_run.record(
        Operation::detectPackageComplete,
        {{"wzPackageId", "pkid", wzPackageId}, {"hrStatus", "pkst", Status{hrStatus}}, {"state", nullptr, state}});
    UpdateInstallStatus(hrStatus);
    if (isClientPackagePresent(m_action, textOrEmpty(wzPackageId), state)) promptAlreadyInstalled();
}

void BootstrapperApplication::OnDetectComplete(HRESULT hrStatus) {
    m_run.record(Operation::detectComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
    // The engine reports the end of a detection also after it was asked to quit; a plan made now would install.
    if (!m_quitRequested) sendAppMessage(WM_BA_DETECT_COMPLETE, static_cast<WPARAM>(hrStatus));
}

}  // namespace pdx
