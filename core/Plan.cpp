// The callbacks of planning. No requested state is changed: the plan follows the bundle's own conditions.
#include "core/BootstrapperApplication.h"
#include "state/ProductState.h"

namespace pdx {

int BootstrapperApplication::OnPlanBegin(DWORD cPackages) {
    m_run.record(Operation::planBegin, {{"cPackages", "npkg", cPackages}});
    // The client's background parts see the mark before its files go.
    if (m_action == BOOTSTRAPPER_ACTION_UNINSTALL) setUnavailable();
    return cancelCheck();
}

int BootstrapperApplication::OnPlanRelatedBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    m_run.record(Operation::planRelatedBundle,
                 {{"wzBundleId", "bund", wzBundleId}, {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

int BootstrapperApplication::OnPlanPackageBegin(LPCWSTR wzPackageId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    m_run.record(Operation::planPackageBegin,
                 {{"wzPackageId", "pkid", wzPackageId}, {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

int BootstrapperApplication::OnPlanCompatiblePackage(LPCWSTR wzPackageId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    m_run.record(Operation::planCompatiblePackage,
                 {{"wzPackageId", "pkid", wzPackageId}, {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

int BootstrapperApplication::OnPlanTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                    BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    m_run.record(Operation::planTargetMsiPackage, {{"wzPackageId", "pkid", wzPackageId},
                                                   {"wzProductCode", "pcod", wzProductCode},
                                                   {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

int BootstrapperApplication::OnPlanMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId,
                                              BOOTSTRAPPER_FEATURE_STATE* pRequestedState) {
    m_run.record(Operation::planMsiFeature, {{"wzPackageId", "pkid", wzPackageId},
                                             {"wzFeatureId", "ftid", wzFeatureId},
                                             {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

void BootstrapperApplication::OnPlanPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                    BOOTSTRAPPER_PACKAGE_STATE state,
                                                    BOOTSTRAPPER_REQUEST_STATE requested,
                                                    BOOTSTRAPPER_ACTION_STATE execute,
                                                    BOOTSTRAPPER_ACTION_STATE rollback) {
    m_run.record(Operation::planPackageComplete, {{"wzPackageId", "pkid", wzPackageId},
                                                  {"hrStatus", "plst", Status{hrStatus}},
                                                  {"state", "pkst", state},
                                                  {"requested", "rqst", requested},
                                                  {"execute", "exec", execute},
                                                  {"rollback", "rlbk", rollback}});
    UpdateInstallStatus(hrStatus);
}

void BootstrapperApplication::OnPlanComplete(HRESULT hrStatus) {
    m_run.record(Operation::planComplete, {{"hrStatus", "plst", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
    sendAppMessage(WM_BA_PLAN_COMPLETE, static_cast<WPARAM>(hrStatus));
}

}  // namespace pdx
