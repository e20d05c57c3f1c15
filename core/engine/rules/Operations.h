// The numbers by which an error report names the steps of a run. They are the engine's callbacks, and the steps of a
// repair's clean-up that can fail.
#pragma once

#include <cstdint>
#include <iterator>

namespace pdx {

enum class Operation : int32_t {
    none = 0,
    startup = 1,
    shutdown = 2,
    systemShutdown = 3,
    detectBegin = 4,
    detectForwardCompatibleBundle = 5,
    detectUpdateBegin = 6,
    detectUpdate = 7,
    detectUpdateComplete = 8,
    detectRelatedBundle = 9,
    detectPackageBegin = 10,
    detectCompatiblePackage = 11,
    detectRelatedMsiPackage = 12,
    detectTargetMsiPackage = 13,
    detectMsiFeature = 14,
    detectPackageComplete = 15,
    detectComplete = 16,
    planBegin = 17,
    planRelatedBundle = 18,
    planPackageBegin = 19,
    planCompatiblePackage = 20,
    planTargetMsiPackage = 21,
    planMsiFeature = 22,
    planPackageComplete = 23,
    planComplete = 24,
    applyBegin = 25,
    applyPhaseCount = 26,
    elevate = 27,
    registerBegin = 28,
    registerComplete = 29,
    cacheBegin = 30,
    cachePackageBegin = 31,
    cacheAcquireBegin = 32,
    resolveSource = 33,
    cacheAcquireComplete = 34,
    cacheVerifyBegin = 35,
    cacheVerifyComplete = 36,
    cachePackageComplete = 37,
    cacheComplete = 38,
    executeBegin = 39,
    executePackageBegin = 40,
    executePatchTarget = 41,
    executePackageComplete = 42,
    executeComplete = 43,
    unregisterBegin = 44,
    unregisterComplete = 45,
    applyComplete = 46,
    launchApprovedExeBegin = 47,
    launchApprovedExeComplete = 48,
    repairStopService = 49,
    repairDeleteService = 50,
    repairDeleteFolder = 51,
};

/// What a callback does with the context of the callbacks before it.
enum class ContextRule {
    replace,  ///< starts a new one, as each Begin does
    merge,    ///< a new value replaces an old one of the same key
};

struct OperationRow {
    Operation operation;
    const char* callback;  ///< as its log line names it
    ContextRule rule;
};

/// The callbacks that have a number, by that number.
inline constexpr OperationRow operationRows[] = {
    {Operation::none, "", ContextRule::merge},
    {Operation::startup, "BootstrapperApplication::OnStartup", ContextRule::replace},
    {Operation::shutdown, "BootstrapperApplication::OnShutdown", ContextRule::merge},
    {Operation::systemShutdown, "BootstrapperApplication::OnSystemShutdown", ContextRule::merge},
    {Operation::detectBegin, "BootstrapperApplication::OnDetectBegin", ContextRule::replace},
    {Operation::detectForwardCompatibleBundle, "BootstrapperApplication::OnDetectForwardCompatibleBundle",
     ContextRule::merge},
    {Operation::detectUpdateBegin, "BootstrapperApplication::OnDetectUpdateBegin", ContextRule::replace},
    {Operation::detectUpdate, "BootstrapperApplication::OnDetectUpdate", ContextRule::merge},
    {Operation::detectUpdateComplete, "BootstrapperApplication::OnDetectUpdateComplete", ContextRule::merge},
    {Operation::detectRelatedBundle, "BootstrapperApplication::OnDetectRelatedBundle", ContextRule::merge},
    {Operation::detectPackageBegin, "BootstrapperApplication::OnDetectPackageBegin", ContextRule::replace},
    {Operation::detectCompatiblePackage, "BootstrapperApplication::OnDetectCompatiblePackage", ContextRule::merge},
    {Operation::detectRelatedMsiPackage, "BootstrapperApplication::OnDetectRelatedMsiPackage", ContextRule::merge},
    {Operation::detectTargetMsiPackage, "BootstrapperApplication::OnDetectTargetMsiPackage", ContextRule::merge},
    {Operation::detectMsiFeature, "BootstrapperApplication::OnDetectMsiFeature", ContextRule::merge},
    {Operation::detectPackageComplete, "BootstrapperApplication::OnDetectPackageComplete", ContextRule::merge},
    {Operation::detectComplete, "BootstrapperApplication::OnDetectComplete", ContextRule::merge},
    {Operation::planBegin, "BootstrapperApplication::OnPlanBegin", ContextRule::replace},
    {Operation::planRelatedBundle, "BootstrapperApplication::OnPlanRelatedBundle", ContextRule::merge},
    {Operation::planPackageBegin, "BootstrapperApplication::OnPlanPackageBegin", ContextRule::replace},
    {Operation::planCompatiblePackage, "BootstrapperApplication::OnPlanCompatiblePackage", ContextRule::merge},
    {Operation::planTargetMsiPackage, "BootstrapperApplication::OnPlanTargetMsiPackage", ContextRule::merge},
    {Operation::planMsiFeature, "BootstrapperApplication::OnPlanMsiFeature", ContextRule::merge},
    {Operation::planPackageComplete, "BootstrapperApplication::OnPlanPackageComplete", ContextRule::merge},
    {Operation::planComplete, "BootstrapperApplication::OnPlanComplete", ContextRule::merge},
    {Operation::applyBegin, "BootstrapperApplication::OnApplyBegin", ContextRule::replace},
    {Operation::applyPhaseCount, "BootstrapperApplication::OnApplyPhaseCount", ContextRule::merge},
    {Operation::elevate, "BootstrapperApplication::OnElevate", ContextRule::replace},
    {Operation::registerBegin, "BootstrapperApplication::OnRegisterBegin", ContextRule::replace},
    {Operation::registerComplete, "BootstrapperApplication::OnRegisterComplete", ContextRule::merge},
    {Operation::cacheBegin, "BootstrapperApplication::OnCacheBegin", ContextRule::replace},
    {Operation::cachePackageBegin, "BootstrapperApplication::OnCachePackageBegin", ContextRule::replace},
    {Operation::cacheAcquireBegin, "BootstrapperApplication::OnCacheAcquireBegin", ContextRule::replace},
    {Operation::resolveSource, "BootstrapperApplication::OnResolveSource", ContextRule::merge},
    {Operation::cacheAcquireComplete, "BootstrapperApplication::OnCacheAcquireComplete", ContextRule::merge},
    {Operation::cacheVerifyBegin, "BootstrapperApplication::OnCacheVerifyBegin", ContextRule::replace},
    {Operation::cacheVerifyComplete, "BootstrapperApplication::OnCacheVerifyComplete", ContextRule::merge},
    {Operation::cachePackageComplete, "BootstrapperApplication::OnCachePackageComplete", ContextRule::merge},
    {Operation::cacheComplete, "BootstrapperApplication::OnCacheComplete", ContextRule::merge},
    {Operation::executeBegin, "BootstrapperApplication::OnExecuteBegin", ContextRule::replace},
    {Operation::executePackageBegin, "BootstrapperApplication::OnExecutePackageBegin", ContextRule::replace},
    {Operation::executePatchTarget, "BootstrapperApplication::OnExecutePatchTarget", ContextRule::merge},
    {Operation::executePackageComplete, "BootstrapperApplication::OnExecutePackageComplete", ContextRule::merge},
    {Operation::executeComplete, "BootstrapperApplication::OnExecuteComplete", ContextRule::merge},
    {Operation::unregisterBegin, "BootstrapperApplication::OnUnregisterBegin", ContextRule::replace},
    {Operation::unregisterComplete, "BootstrapperApplication::OnUnregisterComplete", ContextRule::merge},
    {Operation::applyComplete, "BootstrapperApplication::OnApplyComplete", ContextRule::merge},
    {Operation::launchApprovedExeBegin, "BootstrapperApplication::OnLaunchApprovedExeBegin", ContextRule::replace},
    {Operation::launchApprovedExeComplete, "BootstrapperApplication::OnLaunchApprovedExeComplete", ContextRule::merge},
};
static_assert([] {
    for (size_t i = 0; i < std::size(operationRows); ++i)
        if (operationRows[i].operation != static_cast<Operation>(i)) return false;
    return std::size(operationRows) == 49;
}());

constexpr const OperationRow& rowOf(Operation operation) { return operationRows[static_cast<size_t>(operation)]; }

}  // namespace pdx
