#include "core/engine/CallbackGuard.h"

#include <exception>
#include <new>
#include <tuple>
#include <utility>

#include "platform/Log.h"

namespace pdx {
namespace {

using I = IBootstrapperApplication;
using Base = CBalBaseBootstrapperApplication;

// ---- The default answers

constexpr auto nothing = [](Base&, auto...) {};
constexpr auto zero = [](Base&) { return 0; };
constexpr auto failure = [](Base&) { return E_FAIL; };
constexpr auto cancelCheck = [](Base& base, auto...) { return base.cancelCheck(); };
/// The recommendation, always the last argument, under the cancel check.
constexpr auto recommendation = [](Base& base, auto... arguments) {
    return base.cancelCheck(std::get<sizeof...(arguments) - 1>(std::tuple(arguments...)));
};
constexpr auto endSession = [](Base& base, DWORD kind, int) { return base.endSessionAnswer(kind); };
constexpr auto beginApplying = [](Base& base) { return base.beginApplying(); };
constexpr auto progress = [](Base& base, DWORD percent, DWORD overall) { return base.noteProgress(percent, overall); };
constexpr auto error = [](Base& base, BOOTSTRAPPER_ERROR_TYPE type, LPCWSTR package, DWORD code, LPCWSTR, DWORD, DWORD,
                          LPCWSTR*, int advice) { return base.errorAnswer(type, package, code, advice); };
constexpr auto beginAcquire = [](Base& base, LPCWSTR package, LPCWSTR payload, BOOTSTRAPPER_CACHE_OPERATION, LPCWSTR) {
    return base.beginAcquire(package, payload);
};
constexpr auto cacheProgress = [](Base& base, auto...) { return base.cacheProgressAnswer(); };
constexpr auto acquireComplete = [](Base& base, LPCWSTR package, LPCWSTR payload, HRESULT status, int advice) {
    return base.acquireAnswer(package, payload, status, advice);
};
constexpr auto beginPackage = [](Base& base, LPCWSTR package, BOOL forward) {
    return base.beginPackage(package, forward);
};
constexpr auto executeProgress = [](Base& base, LPCWSTR, DWORD percent, DWORD overall) {
    return base.executeProgressAnswer(percent, overall);
};
constexpr auto packageComplete = [](Base& base, LPCWSTR package, HRESULT status, BOOTSTRAPPER_APPLY_RESTART,
                                    int advice) { return base.packageAnswer(package, status, advice); };
/// For the last callback of a phase: its message would have continued the run.
constexpr auto endRun = [](Base& base, auto...) { base.quitAfterCallbackFault(); };
constexpr auto applyComplete = [](Base& base, HRESULT, BOOTSTRAPPER_APPLY_RESTART restart) {
    base.quitAfterCallbackFault();
    return restart == BOOTSTRAPPER_APPLY_RESTART_REQUIRED ? int{resultRestart} : base.cancelCheck();
};

template <auto method, auto answer>
struct Row {};
template <typename... Rows>
struct Table {};

/// In the order of the engine's table, from its fourth entry on: each callback with its default answer.
// clang-format off
using Callbacks = Table<
    Row<&I::OnStartup, failure>,
    Row<&I::OnShutdown, zero>,
    Row<&I::OnSystemShutdown, endSession>,
    Row<&I::OnDetectBegin, cancelCheck>,
    Row<&I::OnDetectForwardCompatibleBundle, recommendation>,
    Row<&I::OnDetectUpdateBegin, recommendation>,
    Row<&I::OnDetectUpdate, recommendation>,
    Row<&I::OnDetectUpdateComplete, nothing>,
    Row<&I::OnDetectRelatedBundle, cancelCheck>,
    Row<&I::OnDetectPackageBegin, cancelCheck>,
    Row<&I::OnDetectCompatiblePackage, cancelCheck>,
    Row<&I::OnDetectRelatedMsiPackage, cancelCheck>,
    Row<&I::OnDetectTargetMsiPackage, cancelCheck>,
    Row<&I::OnDetectMsiFeature, cancelCheck>,
    Row<&I::OnDetectPackageComplete, nothing>,
    Row<&I::OnDetectComplete, endRun>,
    Row<&I::OnPlanBegin, cancelCheck>,
    Row<&I::OnPlanRelatedBundle, cancelCheck>,
    Row<&I::OnPlanPackageBegin, cancelCheck>,
    Row<&I::OnPlanCompatiblePackage, cancelCheck>,
    Row<&I::OnPlanTargetMsiPackage, cancelCheck>,
    Row<&I::OnPlanMsiFeature, cancelCheck>,
    Row<&I::OnPlanPackageComplete, nothing>,
    Row<&I::OnPlanComplete, endRun>,
    Row<&I::OnApplyBegin, beginApplying>,
    Row<&I::OnApplyPhaseCount, nothing>,
    Row<&I::OnElevate, cancelCheck>,
    Row<&I::OnProgress, progress>,
    Row<&I::OnError, error>,
    Row<&I::OnRegisterBegin, cancelCheck>,
    Row<&I::OnRegisterComplete, nothing>,
    Row<&I::OnCacheBegin, cancelCheck>,
    Row<&I::OnCachePackageBegin, cancelCheck>,
    Row<&I::OnCacheAcquireBegin, beginAcquire>,
    Row<&I::OnCacheAcquireProgress, cacheProgress>,
    Row<&I::OnResolveSource, cancelCheck>,
    Row<&I::OnCacheAcquireComplete, acquireComplete>,
    Row<&I::OnCacheVerifyBegin, cancelCheck>,
    Row<&I::OnCacheVerifyComplete, recommendation>,
    Row<&I::OnCachePackageComplete, recommendation>,
    Row<&I::OnCacheComplete, nothing>,
    Row<&I::OnExecuteBegin, cancelCheck>,
    Row<&I::OnExecutePackageBegin, beginPackage>,
    Row<&I::OnExecutePatchTarget, cancelCheck>,
    Row<&I::OnExecuteProgress, executeProgress>,
    Row<&I::OnExecuteMsiMessage, recommendation>,
    Row<&I::OnExecuteFilesInUse, cancelCheck>,
    Row<&I::OnExecutePackageComplete, packageComplete>,
    Row<&I::OnExecuteComplete, nothing>,
    Row<&I::OnUnregisterBegin, nothing>,
    Row<&I::OnUnregisterComplete, nothing>,
    Row<&I::OnApplyComplete, applyComplete>,
    Row<&I::OnLaunchApprovedExeBegin, cancelCheck>,
    Row<&I::OnLaunchApprovedExeComplete, nothing>,
    Row<&I::OnReserved57, cancelCheck>,
    Row<&I::OnReserved58, cancelCheck>,
    Row<&I::OnReserved59, cancelCheck>>;
// clang-format on

// ---- The object that the engine calls

/// Laid out as a COM object: the first word points to the table.
struct Guard {
    const void* table;
    Base* application;
};

/// Logs the exception that is being handled and updates the status; does neither if memory is exhausted.
void keepFault(Base& application, size_t number) try {
    HRESULT status = E_FAIL;
    try {
        throw;
    } catch (const std::bad_alloc&) {
        status = E_OUTOFMEMORY;
        PDX_LOG(logError, "CallbackGuard", "Callback failed: slot=%u; error=out of memory", number);
    } catch (const std::exception& problem) {
        PDX_LOG(logError, "CallbackGuard", "Callback failed: slot=%u; error=%s", number, problem.what());
    } catch (...) {
        PDX_LOG(logError, "CallbackGuard", "Callback failed: slot=%u; error=unknown", number);
    }
    application.takeFault(status);
} catch (...) {
}

template <size_t number, typename Row>
struct Guarded;

/// A guarded callback, called as the engine calls it: the object before the arguments.
template <size_t number, typename Result, typename... Arguments, Result (STDMETHODCALLTYPE I::*method)(Arguments...),
          auto answer>
struct Guarded<number, Row<method, answer>> {
    static Result STDMETHODCALLTYPE call(Guard* guard, Arguments... arguments) {
        try {
            return (guard->application->*method)(arguments...);
        } catch (...) {
            keepFault(*guard->application, number);
        }
        try {
            return answer(*guard->application, arguments...);
        } catch (...) {
            return Result();
        }
    }
};

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

/// Function pointers of different types, in order. Not std::tuple, whose order in memory is not defined.
template <typename... Functions>
struct Pointers {};
template <typename First, typename... Others>
struct Pointers<First, Others...> {
    constexpr explicit Pointers(First f, Others... o) : first(f), others(o...) {}
    First first;
    Pointers<Others...> others;
};
template <typename Last>
struct Pointers<Last> {
    constexpr explicit Pointers(Last l) : last(l) {}
    Last last;
};

template <typename... Functions>
constexpr Pointers<Functions...> inOrder(Functions... functions) {
    return Pointers<Functions...>(functions...);
}

constexpr size_t ofUnknown = 3;  // the entries of IUnknown

template <typename... Rows, size_t... index>
constexpr auto pointersOf(Table<Rows...>, std::index_sequence<index...>) {
    return inOrder(&queryInterface, &addReference, &release, &Guarded<index + ofUnknown, Rows>::call...);
}

template <typename... Rows>
constexpr size_t countOf(Table<Rows...>) {
    return sizeof...(Rows);
}
static_assert(countOf(Callbacks()) == 57, "callbacks 3 to 59");

constexpr auto pointers = pointersOf(Callbacks(), std::make_index_sequence<countOf(Callbacks())>());
static_assert(sizeof pointers == (ofUnknown + countOf(Callbacks())) * sizeof(void*), "nothing between the entries");

}  // namespace

IBootstrapperApplication* guardCallbacks(CBalBaseBootstrapperApplication* application) {
    if (!application) return nullptr;
    return reinterpret_cast<IBootstrapperApplication*>(new Guard{&pointers, application});
}

}  // namespace pdx
