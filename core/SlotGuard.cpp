#include "core/SlotGuard.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>

#include "platform/Log.h"

namespace pdx {
namespace {

using I = IBootstrapperApplication;
using A = BootstrapperApplication;
using B = CBalBaseBootstrapperApplication;
using Entry = void (*)();

/// Laid out as the engine expects an object: its first word leads to the table of slots.
struct Guard {
    const Entry* table;
    BootstrapperApplication* application;
};

void keepFault(BootstrapperApplication& application, Entry slot);

template <auto callback, auto answer>
struct Slot;

/// A callback under guard, called as the engine calls it: the object ahead of the arguments.
template <typename Result, typename... Arguments, Result (STDMETHODCALLTYPE I::*callback)(Arguments...), auto answer>
struct Slot<callback, answer> {
    static Result STDMETHODCALLTYPE call(Guard* guard, Arguments... arguments) {
        try {
            return (guard->application->*callback)(arguments...);
        } catch (...) {
            keepFault(*guard->application, reinterpret_cast<Entry>(&call));
        }
        try {
            return answer(*guard->application, arguments...);
        } catch (...) {
            return Result();
        }
    }
};

template <auto callback, auto answer>
Entry slot() {
    return reinterpret_cast<Entry>(&Slot<callback, answer>::call);
}

HRESULT STDMETHODCALLTYPE queryInterface(Guard* guard, REFIID iid, void** object) {
    const HRESULT hr = guard->application->QueryInterface(iid, object);
    if (SUCCEEDED(hr)) *object = guard;
    return hr;
}

ULONG STDMETHODCALLTYPE addReference(Guard* guard) { return guard->application->AddRef(); }

ULONG STDMETHODCALLTYPE release(Guard* guard) {
    const ULONG references = guard->application->Release();
    if (references == 0) delete guard;
    return references;
}

/// In slot order; each callback with what stands in for its answer.
const Entry slots[] = {
    reinterpret_cast<Entry>(queryInterface),
    reinterpret_cast<Entry>(addReference),
    reinterpret_cast<Entry>(release),
    slot<&I::OnStartup, [](A&) { return E_FAIL; }>(),
    slot<&I::OnShutdown, [](A& a, auto... x) { return a.B::OnShutdown(x...); }>(),
    slot<&I::OnSystemShutdown, [](A& a, auto... x) { return a.B::OnSystemShutdown(x...); }>(),
    slot<&I::OnDetectBegin, [](A& a, auto... x) { return a.B::OnDetectBegin(x...); }>(),
    slot<&I::OnDetectForwardCompatibleBundle,
         [](A& a, auto... x) { return a.B::OnDetectForwardCompatibleBundle(x...); }>(),
    slot<&I::OnDetectUpdateBegin, [](A& a, auto... x) { return a.B::OnDetectUpdateBegin(x...); }>(),
    slot<&I::OnDetectUpdate, [](A& a, auto... x) { return a.B::OnDetectUpdate(x...); }>(),
    slot<&I::OnDetectUpdateComplete, [](A& a, auto... x) { return a.B::OnDetectUpdateComplete(x...); }>(),
    slot<&I::OnDetectRelatedBundle, [](A& a, auto... x) { return a.B::OnDetectRelatedBundle(x...); }>(),
    slot<&I::OnDetectPackageBegin, [](A& a, auto... x) { return a.B::OnDetectPackageBegin(x...); }>(),
    slot<&I::OnDetectCompatiblePackage, [](A& a, auto... x) { return a.B::OnDetectCompatiblePackage(x...); }>(),
    slot<&I::OnDetectRelatedMsiPackage, [](A& a, auto... x) { return a.B::OnDetectRelatedMsiPackage(x...); }>(),
    slot<&I::OnDetectTargetMsiPackage, [](A& a, auto... x) { return a.B::OnDetectTargetMsiPackage(x...); }>(),
    slot<&I::OnDetectMsiFeature, [](A& a, auto... x) { return a.B::OnDetectMsiFeature(x...); }>(),
    slot<&I::OnDetectPackageComplete, [](A& a, auto... x) { return a.B::OnDetectPackageComplete(x...); }>(),
    slot<&I::OnDetectComplete, [](A& a, auto... x) { return a.quit(1), a.B::OnDetectComplete(x...); }>(),
    slot<&I::OnPlanBegin, [](A& a, auto... x) { return a.B::OnPlanBegin(x...); }>(),
    slot<&I::OnPlanRelatedBundle, [](A& a, auto... x) { return a.B::OnPlanRelatedBundle(x...); }>(),
    slot<&I::OnPlanPackageBegin, [](A& a, auto... x) { return a.B::OnPlanPackageBegin(x...); }>(),
    slot<&I::OnPlanCompatiblePackage, [](A& a, auto... x) { return a.B::OnPlanCompatiblePackage(x...); }>(),
    slot<&I::OnPlanTargetMsiPackage, [](A& a, auto... x) { return a.B::OnPlanTargetMsiPackage(x...); }>(),
    slot<&I::OnPlanMsiFeature, [](A& a, auto... x) { return a.B::OnPlanMsiFeature(x...); }>(),
    slot<&I::OnPlanPackageComplete, [](A& a, auto... x) { return a.B::OnPlanPackageComplete(x...); }>(),
    slot<&I::OnPlanComplete, [](A& a, auto... x) { return a.quit(1), a.B::OnPlanComplete(x...); }>(),
    slot<&I::OnApplyBegin, [](A& a, auto... x) { return a.B::OnApplyBegin(x...); }>(),
    slot<&I::OnApplyPhaseCount, [](A& a, auto... x) { return a.B::OnApplyPhaseCount(x...); }>(),
    slot<&I::OnElevate, [](A& a, auto... x) { return a.B::OnElevate(x...); }>(),
    slot<&I::OnProgress, [](A& a, auto... x) { return a.B::OnProgress(x...); }>(),
    slot<&I::OnError, [](A& a, auto... x) { return a.B::OnError(x...); }>(),
    slot<&I::OnRegisterBegin, [](A& a, auto... x) { return a.B::OnRegisterBegin(x...); }>(),
    slot<&I::OnRegisterComplete, [](A& a, auto... x) { return a.B::OnRegisterComplete(x...); }>(),
    slot<&I::OnCacheBegin, [](A& a, auto... x) { return a.B::OnCacheBegin(x...); }>(),
    slot<&I::OnCachePackageBegin, [](A& a, auto... x) { return a.B::OnCachePackageBegin(x...); }>(),
    slot<&I::OnCacheAcquireBegin, [](A& a, auto... x) { return a.B::OnCacheAcquireBegin(x...); }>(),
    slot<&I::OnCacheAcquireProgress, [](A& a, auto... x) { return a.B::OnCacheAcquireProgress(x...); }>(),
    slot<&I::OnResolveSource, [](A& a, auto... x) { return a.B::OnResolveSource(x...); }>(),
    slot<&I::OnCacheAcquireComplete, [](A& a, auto... x) { return a.B::OnCacheAcquireComplete(x...); }>(),
    slot<&I::OnCacheVerifyBegin, [](A& a, auto... x) { return a.B::OnCacheVerifyBegin(x...); }>(),
    slot<&I::OnCacheVerifyComplete, [](A& a, auto... x) { return a.B::OnCacheVerifyComplete(x...); }>(),
    slot<&I::OnCachePackageComplete, [](A& a, auto... x) { return a.B::OnCachePackageComplete(x...); }>(),
    slot<&I::OnCacheComplete, [](A& a, auto... x) { return a.B::OnCacheComplete(x...); }>(),
    slot<&I::OnExecuteBegin, [](A& a, auto... x) { return a.B::OnExecuteBegin(x...); }>(),
    slot<&I::OnExecutePackageBegin, [](A& a, auto... x) { return a.B::OnExecutePackageBegin(x...); }>(),
    slot<&I::OnExecutePatchTarget, [](A& a, auto... x) { return a.B::OnExecutePatchTarget(x...); }>(),
    slot<&I::OnExecuteProgress, [](A& a, auto... x) { return a.B::OnExecuteProgress(x...); }>(),
    slot<&I::OnExecuteMsiMessage, [](A& a, auto... x) { return a.B::OnExecuteMsiMessage(x...); }>(),
    slot<&I::OnExecuteFilesInUse, [](A& a, auto... x) { return a.B::OnExecuteFilesInUse(x...); }>(),
    slot<&I::OnExecutePackageComplete, [](A& a, auto... x) { return a.B::OnExecutePackageComplete(x...); }>(),
    slot<&I::OnExecuteComplete, [](A& a, auto... x) { return a.B::OnExecuteComplete(x...); }>(),
    slot<&I::OnUnregisterBegin, [](A& a, auto... x) { return a.B::OnUnregisterBegin(x...); }>(),
    slot<&I::OnUnregisterComplete, [](A& a, auto... x) { return a.B::OnUnregisterComplete(x...); }>(),
    slot<&I::OnApplyComplete, [](A& a, auto... x) { return a.quit(1), a.B::OnApplyComplete(x...); }>(),
    slot<&I::OnLaunchApprovedExeBegin, [](A& a, auto... x) { return a.B::OnLaunchApprovedExeBegin(x...); }>(),
    slot<&I::OnLaunchApprovedExeComplete, [](A& a, auto... x) { return a.B::OnLaunchApprovedExeComplete(x...); }>(),
    slot<&I::OnReserved57, [](A& a, auto... x) { return a.B::OnReserved57(x...); }>(),
    slot<&I::OnReserved58, [](A& a, auto... x) { return a.B::OnReserved58(x...); }>(),
    slot<&I::OnReserved59, [](A& a, auto... x) { return a.B::OnReserved59(x...); }>(),
};

/// The exception that is being handled, logged and taken as status; a memory that is exhausted leaves even that undone.
void keepFault(BootstrapperApplication& application, Entry slot) try {
    const auto number = static_cast<int32_t>(std::find(std::begin(slots), std::end(slots), slot) - slots);
    HRESULT status = E_FAIL;
    try {
        throw;
    } catch (const std::bad_alloc&) {
        status = E_OUTOFMEMORY;
        PDX_LOG(logError, "SlotGuard", "Callback failed: slot=%d; error=out of memory", number);
    } catch (const std::exception& problem) {
        PDX_LOG(logError, "SlotGuard", "Callback failed: slot=%d; error=%s", number, problem.what());
    } catch (...) {
        PDX_LOG(logError, "SlotGuard", "Callback failed: slot=%d; error=unknown", number);
    }
    application.UpdateInstallStatus(status);
} catch (...) {
}

}  // namespace

IBootstrapperApplication* guardSlots(BootstrapperApplication* application) {
    return application ? reinterpret_cast<IBootstrapperApplication*>(new Guard{slots, application}) : nullptr;
}

}  // namespace pdx
