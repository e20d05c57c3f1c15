// The callbacks of planning. No requested state is changed: the plan follows the bundle's own conditions.
#include "core/BootstrapperApplication.h"
#include "core/ContextText.h"
#include "core/rules/Names.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "state/ProductState.h"

namespace pdx {
namespace {

using Base = CBalBaseBootstrapperApplication;

/// The number of a requested state; null, which the engine never gives, counts as 0.
template <typename State>
int32_t numberOf(const State* requested) {
    return requested ? static_cast<int32_t>(*requested) : 0;
}

}  // namespace

int BootstrapperApplication::OnPlanBegin(DWORD cPackages) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnPlanBegin", "cPackages=%u", cPackages);
    replaceContext(operationPlanBegin, {{"npkg", cPackages}});
    // The client's background parts see the mark before its files go.
    if (m_action == BOOTSTRAPPER_ACTION_UNINSTALL) setUnavailable();
    return Base::OnPlanBegin(cPackages);
}

int BootstrapperApplication::OnPlanRelatedBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnPlanRelatedBundle", "wzBundleId=%ls, pRequestedState=%s",
            textOrEmpty(wzBundleId), nameOfPointed(pRequestedState));
    mergeContext(operationPlanRelatedBundle, {{"bund", contextText(wzBundleId)}, {"rqst", numberOf(pRequestedState)}});
    return Base::OnPlanRelatedBundle(wzBundleId, pRequestedState);
}

int BootstrapperApplication::OnPlanPackageBegin(LPCWSTR wzPackageId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnPlanPackageBegin", "wzPackageId=%ls, pRequestedState=%s",
            textOrEmpty(wzPackageId), nameOfPointed(pRequestedState));
    replaceContext(operationPlanPackageBegin,
                   {{"pkid", contextText(wzPackageId)}, {"rqst", numberOf(pRequestedState)}});
    return Base::OnPlanPackageBegin(wzPackageId, pRequestedState);
}

int BootstrapperApplication::OnPlanCompatiblePackage(LPCWSTR wzPackageId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnPlanCompatiblePackage", "wzPackageId=%ls, pRequestedState=%s",
            textOrEmpty(wzPackageId), nameOfPointed(pRequestedState));
    mergeContext(operationPlanCompatiblePackage,
                 {{"pkid", contextText(wzPackageId)}, {"rqst", numberOf(pRequestedState)}});
    return Base::OnPlanCompatiblePackage(wzPackageId, pRequestedState);
}

int BootstrapperApplication::OnPlanTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                    BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnPlanTargetMsiPackage",
            "wzPackageId=%ls, wzProductCode=%ls, pRequestedState=%s", textOrEmpty(wzPackageId),
            textOrEmpty(wzProductCode), nameOfPointed(pRequestedState));
    mergeContext(operationPlanTargetMsiPackage, {{"pkid", contextText(wzPackageId)},
                                                 {"pcod", contextText(wzProductCode)},
                                                 {"rqst", numberOf(pRequestedState)}});
    return Base::OnPlanTargetMsiPackage(wzPackageId, wzProductCode, pRequestedState);
}

int BootstrapperApplication::OnPlanMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId,
                                              BOOTSTRAPPER_FEATURE_STATE* pRequestedState) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnPlanMsiFeature",
            "wzPackageId=%ls, wzFeatureId=%ls, pRequestedState=%s", textOrEmpty(wzPackageId), textOrEmpty(wzFeatureId),
            nameOfPointed(pRequestedState));
    mergeContext(
        operationPlanMsiFeature,
        {{"pkid", contextText(wzPackageId)}, {"ftid", contextText(wzFeatureId)}, {"rqst", numberOf(pRequestedState)}});
    return Base::OnPlanMsiFeature(wzPackageId, wzFeatureId, pRequestedState);
}

void BootstrapperApplication::OnPlanPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                    BOOTSTRAPPER_PACKAGE_STATE state,
                                                    BOOTSTRAPPER_REQUEST_STATE requested,
                                                    BOOTSTRAPPER_ACTION_STATE execute,
                                                    BOOTSTRAPPER_ACTION_STATE rollback) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnPlanPackageComplete",
            "wzPackageId=%ls, hrStatus=%s, state=%s, requested=%s, execute=%s, rollback=%s", textOrEmpty(wzPackageId),
            describeError(hrStatus), nameOf(state), nameOf(requested), nameOf(execute), nameOf(rollback));
    mergeContext(operationPlanPackageComplete, {{"pkid", contextText(wzPackageId)},
                                                {"plst", contextStatus(hrStatus)},
                                                {"pkst", static_cast<int32_t>(state)},
                                                {"rqst", static_cast<int32_t>(requested)},
                                                {"exec", static_cast<int32_t>(execute)},
                                                {"rlbk", static_cast<int32_t>(rollback)}});
    UpdateInstallStatus(hrStatus);
}

void BootstrapperApplication::OnPlanComplete(HRESULT hrStatus) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnPlanComplete", "hrStatus=%s", describeError(hrStatus));
    mergeContext(operationPlanComplete, {{"plst", contextStatus(hrStatus)}});
    UpdateInstallStatus(hrStatus);
    sendAppMessage(WM_BA_PLAN_COMPLETE, static_cast<WPARAM>(hrStatus));
}

}  // namespace pdx
