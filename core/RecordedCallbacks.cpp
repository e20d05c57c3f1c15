#include "core/RecordedCallbacks.h"

namespace pdx {

int RecordedCallbacks::OnSystemShutdown(DWORD dwEndSession, int nRecommendation) {
    m_context.record(Operation::systemShutdown,
                     {{"dwEndsession", "ends", dwEndSession}, {"nRecommendation", "reco", nRecommendation}});
    return endSessionAnswer(dwEndSession);
}

int RecordedCallbacks::OnDetectBegin(BOOL fInstalled, DWORD cPackages) {
    m_context.record(Operation::detectBegin,
                     {{"fInstalled", "inst", fInstalled != FALSE}, {"cPackages", "npkg", cPackages}});
    return cancelCheck();
}

int RecordedCallbacks::OnDetectForwardCompatibleBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_RELATION_TYPE relationType,
                                                       LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                                       int nRecommendation) {
    m_context.record(Operation::detectForwardCompatibleBundle, {{"wzBundleId", "bund", wzBundleId},
                                                                {"relationType", "relt", relationType},
                                                                {"wzBundleTag", "btag", wzBundleTag},
                                                                {"fPerMachine", "perm", fPerMachine != FALSE},
                                                                {"dw64Version", "vers", Version{dw64Version}},
                                                                {"nRecommendation", "reco", nRecommendation}});
    return cancelCheck(nRecommendation);
}

int RecordedCallbacks::OnDetectUpdate(LPCWSTR wzUpdateLocation, DWORD64 dw64Size, DWORD64 dw64Version, LPCWSTR wzTitle,
                                      LPCWSTR wzSummary, LPCWSTR wzContentType, LPCWSTR wzContent,
                                      int nRecommendation) {
    m_context.record(Operation::detectUpdate, {{"wzUpdateLocation", "locn", wzUpdateLocation},
                                               {"dw64Size", "size", dw64Size},
                                               {"dw64Version", "vers", Version{dw64Version}},
                                               {"wzTitle", "titl", wzTitle},
                                               {"wzSummary", "summ", wzSummary},
                                               {"wzContentType", "type", wzContentType},
                                               {"wzContent", "cont", wzContent},
                                               {"nRecommendation", "reco", nRecommendation}});
    return cancelCheck(nRecommendation);
}

void RecordedCallbacks::OnDetectUpdateComplete(HRESULT hrStatus, LPCWSTR wzUpdateLocation) {
    m_context.record(Operation::detectUpdateComplete,
                     {{"hrStatus", "stat", Status{hrStatus}}, {"wzUpdateLocation", "locn", wzUpdateLocation}});
    m_context.updateStatus(hrStatus);
}

int RecordedCallbacks::OnDetectRelatedBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_RELATION_TYPE relationType,
                                             LPCWSTR wzBundleTag, BOOL fPerMachine, DWORD64 dw64Version,
                                             BOOTSTRAPPER_RELATED_OPERATION operation) {
    m_context.record(Operation::detectRelatedBundle, {{"wzBundleId", "bund", wzBundleId},
                                                      {"relationType", "relt", relationType},
                                                      {"wzBundleTag", "btag", wzBundleTag},
                                                      {"fPerMachine", "perm", fPerMachine != FALSE},
                                                      {"dw64Version", "vers", Version{dw64Version}},
                                                      {"operation", "oper", operation}});
    return cancelCheck();
}

int RecordedCallbacks::OnDetectPackageBegin(LPCWSTR wzPackageId) {
    m_context.record(Operation::detectPackageBegin, {{"wzPackageId", "pkid", wzPackageId}});
    return cancelCheck();
}

int RecordedCallbacks::OnDetectCompatiblePackage(LPCWSTR wzPackageId, LPCWSTR wzCompatiblePackageId) {
    m_context.record(Operation::detectCompatiblePackage,
                     {{"wzPackageId", "pkid", wzPackageId}, {"wzCompatiblePackageId", "cpid", wzCompatiblePackageId}});
    return cancelCheck();
}

int RecordedCallbacks::OnDetectRelatedMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode, BOOL fPerMachine,
                                                 DWORD64 dw64Version, BOOTSTRAPPER_RELATED_OPERATION operation) {
    m_context.record(Operation::detectRelatedMsiPackage, {{"wzPackageId", "pkid", wzPackageId},
                                                          {"wzProductCode", "pcod", wzProductCode},
                                                          {"fPerMachine", "perm", fPerMachine != FALSE},
                                                          {"dw64Version", "vers", Version{dw64Version}},
                                                          {"operation", "oper", operation}});
    return cancelCheck();
}

int RecordedCallbacks::OnDetectTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                                BOOTSTRAPPER_PACKAGE_STATE patchState) {
    m_context.record(Operation::detectTargetMsiPackage, {{"wzPackageId", "pkid", wzPackageId},
                                                         {"wzProductCode", "pcod", wzProductCode},
                                                         {"patchState", "ptch", patchState}});
    return cancelCheck();
}

int RecordedCallbacks::OnDetectMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId, BOOTSTRAPPER_FEATURE_STATE state) {
    m_context.record(
        Operation::detectMsiFeature,
        {{"wzPackageId", "pkid", wzPackageId}, {"wzFeatureId", "ftid", wzFeatureId}, {"state", "ftst", state}});
    return cancelCheck();
}

int RecordedCallbacks::OnPlanRelatedBundle(LPCWSTR wzBundleId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    m_context.record(Operation::planRelatedBundle,
                     {{"wzBundleId", "bund", wzBundleId}, {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

int RecordedCallbacks::OnPlanPackageBegin(LPCWSTR wzPackageId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    m_context.record(Operation::planPackageBegin,
                     {{"wzPackageId", "pkid", wzPackageId}, {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

int RecordedCallbacks::OnPlanCompatiblePackage(LPCWSTR wzPackageId, BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    m_context.record(Operation::planCompatiblePackage,
                     {{"wzPackageId", "pkid", wzPackageId}, {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

int RecordedCallbacks::OnPlanTargetMsiPackage(LPCWSTR wzPackageId, LPCWSTR wzProductCode,
                                              BOOTSTRAPPER_REQUEST_STATE* pRequestedState) {
    m_context.record(Operation::planTargetMsiPackage, {{"wzPackageId", "pkid", wzPackageId},
                                                       {"wzProductCode", "pcod", wzProductCode},
                                                       {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

int RecordedCallbacks::OnPlanMsiFeature(LPCWSTR wzPackageId, LPCWSTR wzFeatureId,
                                        BOOTSTRAPPER_FEATURE_STATE* pRequestedState) {
    m_context.record(Operation::planMsiFeature, {{"wzPackageId", "pkid", wzPackageId},
                                                 {"wzFeatureId", "ftid", wzFeatureId},
                                                 {"pRequestedState", "rqst", pRequestedState}});
    return cancelCheck();
}

void RecordedCallbacks::OnPlanPackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus, BOOTSTRAPPER_PACKAGE_STATE state,
                                              BOOTSTRAPPER_REQUEST_STATE requested, BOOTSTRAPPER_ACTION_STATE execute,
                                              BOOTSTRAPPER_ACTION_STATE rollback) {
    m_context.record(Operation::planPackageComplete, {{"wzPackageId", "pkid", wzPackageId},
                                                      {"hrStatus", "plst", Status{hrStatus}},
                                                      {"state", "pkst", state},
                                                      {"requested", "rqst", requested},
                                                      {"execute", "exec", execute},
                                                      {"rollback", "rlbk", rollback}});
    m_context.updateStatus(hrStatus);
}

int RecordedCallbacks::OnApplyBegin() {
    m_context.record(Operation::applyBegin, {});
    return beginApplying();
}

void RecordedCallbacks::OnApplyPhaseCount(DWORD dwPhaseCount) {
    m_context.record(Operation::applyPhaseCount, {{"dwPhaseCount", "nphs", dwPhaseCount}});
}

int RecordedCallbacks::OnProgress(DWORD dwProgressPercentage, DWORD dwOverallPercentage) {
    m_context.merge({{"cpct", dwProgressPercentage}, {"opct", dwOverallPercentage}});
    return noteProgress(dwProgressPercentage, dwOverallPercentage);
}

int RecordedCallbacks::OnRegisterBegin() {
    m_context.record(Operation::registerBegin, {});
    return cancelCheck();
}

void RecordedCallbacks::OnRegisterComplete(HRESULT hrStatus) {
    m_context.record(Operation::registerComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    m_context.updateStatus(hrStatus);
}

int RecordedCallbacks::OnCacheVerifyBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId) {
    m_context.record(Operation::cacheVerifyBegin, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                                   {"wzPayloadId", "plid", wzPayloadId}});
    return cancelCheck();
}

int RecordedCallbacks::OnCachePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus, int nRecommendation) {
    m_context.record(Operation::cachePackageComplete, {{"wzPackageId", "pkid", wzPackageId},
                                                       {"hrStatus", "stat", Status{hrStatus}},
                                                       {"nRecommendation", "reco", nRecommendation}});
    m_context.updateStatus(hrStatus);
    return cancelCheck(nRecommendation);
}

void RecordedCallbacks::OnCacheComplete(HRESULT hrStatus) {
    m_context.record(Operation::cacheComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    m_context.updateStatus(hrStatus);
}

int RecordedCallbacks::OnExecutePatchTarget(LPCWSTR wzPackageId, LPCWSTR wzTargetProductCode) {
    m_context.record(Operation::executePatchTarget,
                     {{"wzPackageId", "pkid", wzPackageId}, {"wzTargetProductCode", "pcod", wzTargetProductCode}});
    return cancelCheck();
}

int RecordedCallbacks::OnExecuteFilesInUse(LPCWSTR wzPackageId, DWORD cFiles, LPCWSTR* rgwzFiles) {
    const Fact facts[] = {{"wzPackageId", nullptr, wzPackageId},
                          {"cFiles", nullptr, cFiles},
                          {"rgwzFiles", "fuse", TextList{cFiles, rgwzFiles}}};
    RunContext::trace("BootstrapperApplication::OnExecuteFilesInUse", facts);
    m_context.merge(contextOf(facts));
    return cancelCheck();
}

void RecordedCallbacks::OnUnregisterBegin() { m_context.record(Operation::unregisterBegin, {}); }

void RecordedCallbacks::OnUnregisterComplete(HRESULT hrStatus) {
    m_context.record(Operation::unregisterComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    m_context.updateStatus(hrStatus);
}

int RecordedCallbacks::OnLaunchApprovedExeBegin() {
    m_context.record(Operation::launchApprovedExeBegin, {});
    return cancelCheck();
}

void RecordedCallbacks::OnLaunchApprovedExeComplete(HRESULT hrStatus, DWORD dwProcessId) {
    m_context.record(Operation::launchApprovedExeComplete,
                     {{"hrStatus", "stat", Status{hrStatus}}, {"dwProcessId", "pid", dwProcessId}});
}

}  // namespace pdx
