// The callbacks of detection. Related bundles, features and the like are only kept for reports.
#include "config/Settings.h"
#include "core/BootstrapperApplication.h"
#include "core/ContextText.h"
#include "core/rules/Names.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "platform/rules/Version.h"
#include "state/rules/UpdateRules.h"

namespace pdx {

using Base = CBalBaseBootstrapperApplication;

int BootstrapperApplication::OnDetectBegin(BOOL fInstalled, DWORD cPackages) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectBegin", "fInstalled=%s, cPackages=%u", nameOfBool(fInstalled),
            cPackages);
    replaceContext(operationDetectBegin, {{"inst", fInstalled != FALSE}, {"npkg", cPackages}});
    return Base::OnDetectBegin(fInstalled, cPackages);
}

int BootstrapperApplication::OnDetectForwardCompatibleBundle(LPCWSTR wzBundleId,
                                                             BOOTSTRAPPER_RELATION_TYPE relationType,
                                                             LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                                             int nRecommendation) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectForwardCompatibleBundle",
            "wzBundleId=%ls, relationType=%s, wzBundleTag=%ls, fPerMachine=%s, dw64Version=%s, nRecommendation=%d",
            textOrEmpty(wzBundleId), nameOf(relationType), textOrEmpty(wzBundleTag), nameOfBool(fPerMachine),
            versionText(dw64Version), nRecommendation);
    mergeContext(operationDetectForwardCompatibleBundle, {{"bund", contextText(wzBundleId)},
                                                          {"relt", static_cast<int32_t>(relationType)},
                                                          {"btag", contextText(wzBundleTag)},
                                                          {"perm", fPerMachine != FALSE},
                                                          {"vers", versionText(dw64Version)},
                                                          {"reco", nRecommendation}});
    return Base::OnDetectForwardCompatibleBundle(wzBundleId, relationType, wzBundleTag, fPerMachine, dw64Version,
                                                 nRecommendation);
}

int BootstrapperApplication::OnDetectUpdateBegin(LPCWSTR wzUpdateLocation, int nRecommendation) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectUpdateBegin", "wzUpdateLocation=%ls, nRecommendation=%d",
            textOrEmpty(wzUpdateLocation), nRecommendation);
    replaceContext(operationDetectUpdateBegin, {{"locn", contextText(wzUpdateLocation)}, {"reco", nRecommendation}});
    if (isUpdateCheckDue({m_action, m_command->relationType, isThinInstaller(),
                          getConfigBool("qa.installer.skipUpdateCheck", false)}))
        checkForUpdate();
    return Base::OnDetectUpdateBegin(wzUpdateLocation, nRecommendation);
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
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectUpdate",
            "wzUpdateLocation=%ls, dw64Size=%llu, dw64Version=%s, wzTitle=%ls, wzSummary=%ls, wzContentType=%ls, "
            "wzContent=%ls, nRecommendation=%d",
            textOrEmpty(wzUpdateLocation), dw64Size, versionText(dw64Version), textOrEmpty(wzTitle),
            textOrEmpty(wzSummary), textOrEmpty(wzContentType), textOrEmpty(wzContent), nRecommendation);
    mergeContext(operationDetectUpdate, {{"locn", contextText(wzUpdateLocation)},
                                         {"size", dw64Size},
                                         {"vers", versionText(dw64Version)},
                                         {"titl", contextText(wzTitle)},
                                         {"summ", contextText(wzSummary)},
                                         {"type", contextText(wzContentType)},
                                         {"cont", contextText(wzContent)},
                                         {"reco", nRecommendation}});
    return Base::OnDetectUpdate(wzUpdateLocation, dw64Size, dw64Version, wzTitle, wzSummary, wzContentType, wzContent,
                                nRecommendation);
}

void BootstrapperApplication::OnDetectUpdateComplete(HRESULT hrStatus, LPCWSTR wzUpdateLocation) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectUpdateComplete", "hrStatus=%s, wzUpdateLocation=%ls",
            describeError(hrStatus), textOrEmpty(wzUpdateLocation));
    mergeContext(operationDetectUpdateComplete,
                 {{"stat", contextStatus(hrStatus)}, {"locn", contextText(wzUpdateLocation)}});
    UpdateInstallStatus(hrStatus);
}

int BootstrapperApplication::OnDetectRelatedBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_RELATION_TYPE relationType,
                                                   LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                                   BOOTSTRAPPER_RELATED_OPERATION operation) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectRelatedBundle",
            "wzBundleId=%ls, relationType=%s, wzBundleTag=%ls, fPerMachine=%s, dw64Version=%s, operation=%s",
            textOrEmpty(wzBundleId), nameOf(relationType), textOrEmpty(wzBundleTag), nameOfBool(fPerMachine),
            versionText(dw64Version), nameOf(operation));
    mergeContext(operationDetectRelatedBundle, {{"bund", contextText(wzBundleId)},
                                                {"relt", static_cast<int32_t>(relationType)},
                                                {"btag", contextText(wzBundleTag)},
                                                {"perm", fPerMachine != FALSE},
                                                {"vers", versionText(dw64Version)},
                                                {"oper", static_cast<int32_t>(operation)}});
    return Base::OnDetectRelatedBundle(wzBundleId, relationType, wzBundleTag, fPerMachine, dw64Version, operation);
}

int BootstrapperApplication::OnDetectPackageBegin(LPCWSTR wzPackageId) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectPackageBegin", "wzPackageId=%ls", textOrEmpty(wzPackageId));
    replaceContext(operationDetectPackageBegin, {{"pkid", contextText(wzPackageId)}});
    return Base::OnDetectPackageBegin(wzPackageId);
}

int BootstrapperApplication::OnDetectCompatiblePackage(LPCWSTR wzPackageId, LPCWSTR wzCompatiblePackageId) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectCompatiblePackage",
            "wzPackageId=%ls, wzCompatiblePackageId=%ls", textOrEmpty(wzPackageId), textOrEmpty(wzCompatiblePackageId));
    mergeContext(operationDetectCompatiblePackage,
                 {{"pkid", contextText(wzPackageId)}, {"cpid", contextText(wzCompatiblePackageId)}});
    return Base::OnDetectCompatiblePackage(wzPackageId, wzCompatiblePackageId);
}

int BootstrapperApplication::OnDetectRelatedMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode, BOOL fPerMachine,
                                                       DWORD64 dw64Version, BOOTSTRAPPER_RELATED_OPERATION operation) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectRelatedMsiPackage",
            "wzPackageId=%ls, wzProductCode=%ls, fPerMachine=%s, dw64Version=%s, operation=%s",
            textOrEmpty(wzPackageId), textOrEmpty(wzProductCode), nameOfBool(fPerMachine), versionText(dw64Version),
            nameOf(operation));
    mergeContext(operationDetectRelatedMsiPackage, {{"pkid", contextText(wzPackageId)},
                                                    {"pcod", contextText(wzProductCode)},
                                                    {"perm", fPerMachine != FALSE},
                                                    {"vers", versionText(dw64Version)},
                                                    {"oper", static_cast<int32_t>(operation)}});
    return Base::OnDetectRelatedMsiPackage(wzPackageId, wzProductCode, fPerMachine, dw64Version, operation);
}

int BootstrapperApplication::OnDetectTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                      BOOTSTRAPPER_PACKAGE_STATE patchState) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectTargetMsiPackage",
            "wzPackageId=%ls, wzProductCode=%ls, patchState=%s", textOrEmpty(wzPackageId), textOrEmpty(wzProductCode),
            nameOf(patchState));
    mergeContext(operationDetectTargetMsiPackage, {{"pkid", contextText(wzPackageId)},
                                                   {"pcod", contextText(wzProductCode)},
                                                   {"ptch", static_cast<int32_t>(patchState)}});
    return Base::OnDetectTargetMsiPackage(wzPackageId, wzProductCode, patchState);
}

int BootstrapperApplication::OnDetectMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId,
                                                BOOTSTRAPPER_FEATURE_STATE state) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectMsiFeature", "wzPackageId=%ls, wzFeatureId=%ls, state=%s",
            textOrEmpty(wzPackageId), textOrEmpty(wzFeatureId), nameOf(state));
    mergeContext(operationDetectMsiFeature, {{"pkid", contextText(wzPackageId)},
                                             {"ftid", contextText(wzFeatureId)},
                                             {"ftst", static_cast<int32_t>(state)}});
    return Base::OnDetectMsiFeature(wzPackageId, wzFeatureId, state);
}

void BootstrapperApplication::OnDetectPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                      BOOTSTRAPPER_PACKAGE_STATE state) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectPackageComplete", "wzPackageId=%ls, hrStatus=%s, state=%s",
            textOrEmpty(wzPackageId), describeError(hrStatus), nameOf(state));
    // The package's state is not kept: reports show the status under this key.
    mergeContext(operationDetectPackageComplete,
                 {{"pkid", contextText(wzPackageId)}, {"pkst", contextStatus(hrStatus)}});
    UpdateInstallStatus(hrStatus);
    if (isClientPackagePresent(m_action, textOrEmpty(wzPackageId), state)) promptAlreadyInstalled();
}

void BootstrapperApplication::OnDetectComplete(HRESULT hrStatus) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnDetectComplete", "hrStatus=%s", describeError(hrStatus));
    mergeContext(operationDetectComplete, {{"stat", contextStatus(hrStatus)}});
    UpdateInstallStatus(hrStatus);
    // The engine reports the end of a detection also after it was asked to quit; a plan made now would install.
    if (!m_quitRequested) sendAppMessage(WM_BA_DETECT_COMPLETE, static_cast<WPARAM>(hrStatus));
}

}  // namespace pdx
