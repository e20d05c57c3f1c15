#include "harness/programs/engine/EngineRun.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <utility>

#include "platform/product/ClientPackage.h"
#include "platform/rules/ProgramErrors.h"
#include "platform/Thread.h"

namespace pdx {

namespace {

constexpr int noAction = 0;
constexpr const wchar_t* package = clientPackageId;
constexpr const wchar_t* address = L"https://downloads.example/PalisadeApp.msi";
constexpr const wchar_t* localSource = L"C:\\source\\PalisadeApp.msi";
constexpr DWORD64 payloadSize = 1000;
constexpr int actionStart = 0x08000000;

/// Ends the process when a run takes too long: a callback that never returns can't be left in any other way. No
/// std::thread: the first join of one that is ending makes an event for the life of the process, which a census counts.
class Watchdog {
  public:
    Watchdog(DWORD runBound, std::function<std::string()> describeRun)
        : bound(runBound), describe(std::move(describeRun)), over(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
        thread.start(watch, this);
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog() {
        SetEvent(over.get());
        thread.join();
    }

  private:
    static unsigned __stdcall watch(void* watchdog) {
        const auto& self = *static_cast<Watchdog*>(watchdog);
        if (WaitForSingleObject(self.over.get(), self.bound) != WAIT_TIMEOUT) return 0;
        std::fprintf(stderr, "the run has not ended after %lu ms; still in:%s\n", self.bound, self.describe().c_str());
        std::fflush(stderr);
        TerminateProcess(GetCurrentProcess(), 3);
        return 0;
    }

    DWORD bound;
    std::function<std::string()> describe;
    Handle over;
    Thread thread;
};

}  // namespace

const CallbackCall* RunOutcome::find(std::string_view callback) const {
    const auto found = std::ranges::find(calls, callback, &CallbackCall::callback);
    return found == calls.end() ? nullptr : &*found;
}

EngineRun::EngineRun(SmallEngine& engineUsed, IBootstrapperApplication& applicationRun, EngineScript runScript,
                     CallbackHook callbackHook)
    : engine(engineUsed), application(applicationRun), script(std::move(runScript)), hook(std::move(callbackHook)) {}

// The calls of the callbacks, recorded and reported.

HRESULT EngineRun::interpret(int answer) {
    if (answer == IDCANCEL || answer == IDABORT) return hresultFromWin32(userExitCode);
    constexpr int refused = -1;
    return answer == refused ? HRESULT_FROM_WIN32(ERROR_INSTALL_FAILURE) : S_OK;
}

size_t EngineRun::entered(const char* callback) {
    if (hook) hook({.callback = callback, .returned = false, .result = 0});
    const std::lock_guard guard(callsLock);
    outcome.calls.push_back({.callback = callback});
    return outcome.calls.size() - 1;
}

void EngineRun::returned(size_t index, int result) {
    CallbackCall call;
    {
        const std::lock_guard guard(callsLock);
        outcome.calls[index].returned = true;
        outcome.calls[index].result = result;
        call = outcome.calls[index];
    }
    if (hook) hook({.callback = call.callback, .returned = true, .result = result});
}

std::string EngineRun::openCallbacks() {
    const std::lock_guard guard(callsLock);
    std::string text;
    for (const auto& call : outcome.calls)
        if (!call.returned) text += ' ' + call.callback;
    return text;
}

// The engine's own loop.

RunOutcome EngineRun::run() {
    {
        const Watchdog watchdog(script.hangBound, [this] { return openCallbacks(); });
        outcome.startup = ask<&App::OnStartup>("OnStartup");
        if (SUCCEEDED(outcome.startup)) {
            serve();
        } else {
            outcome.exitCode = static_cast<DWORD>(outcome.startup);
        }
        outcome.shutdown = ask<&App::OnShutdown>("OnShutdown");
    }
    return std::move(outcome);
}

void EngineRun::serve() {
    for (;;) {
        const auto request = engine.takeRequest();
        if (!request) {
            if (quit) {
                outcome.exitCode = *quit;
                return;
            }
            if (!waitForRequest()) {
                const auto last = outcome.calls.empty() ? std::string("nothing") : outcome.calls.back().callback;
                outcome.failure = "nobody called Quit: nothing was asked of the engine for " +
                                  std::to_string(script.idleBound) + " ms; the last callback was " + last;
                return;
            }
            continue;
        }
        switch (request->kind) {
            case EngineRequest::Kind::detect:
                detect();
                break;
            case EngineRequest::Kind::plan:
                plan(static_cast<BOOTSTRAPPER_ACTION>(request->argument));
                break;
            case EngineRequest::Kind::apply:
                apply();
                break;
            case EngineRequest::Kind::quit:
                quit = request->argument;
                break;
        }
    }
}

/// Serves this thread's windows meanwhile, as the engine's loop does.
bool EngineRun::waitForRequest() {
    const HANDLE event = engine.requestEvent();
    const ULONGLONG deadline = GetTickCount64() + script.idleBound;
    for (;;) {
        const ULONGLONG now = GetTickCount64();
        if (now >= deadline) return false;
        const DWORD woken = MsgWaitForMultipleObjectsEx(1, &event, static_cast<DWORD>(deadline - now), QS_ALLINPUT,
                                                        MWMO_INPUTAVAILABLE);
        if (woken == WAIT_OBJECT_0) return true;
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

// Detect and plan.

void EngineRun::detect() {
    const bool present = script.package == BOOTSTRAPPER_PACKAGE_STATE_PRESENT;
    HRESULT hr = check<&App::OnDetectBegin>("OnDetectBegin", BOOL{present}, DWORD{1});
    if (SUCCEEDED(hr)) hr = check<&App::OnDetectPackageBegin>("OnDetectPackageBegin", package);
    detected = SUCCEEDED(hr);
    if (detected) ask<&App::OnDetectPackageComplete>("OnDetectPackageComplete", package, hr, script.package);
    ask<&App::OnDetectComplete>("OnDetectComplete", hr);
}

void EngineRun::plan(BOOTSTRAPPER_ACTION wanted) {
    action = BOOTSTRAPPER_ACTION_STATE_NONE;
    HRESULT hr = check<&App::OnPlanBegin>("OnPlanBegin", DWORD{1});
    planned = SUCCEEDED(hr);
    if (planned) hr = planPackage(wanted);
    ask<&App::OnPlanComplete>("OnPlanComplete", hr);
}

HRESULT EngineRun::planPackage(BOOTSTRAPPER_ACTION wanted) {
    const bool removes = wanted == BOOTSTRAPPER_ACTION_UNINSTALL;
    auto requested = removes ? BOOTSTRAPPER_REQUEST_STATE_ABSENT : BOOTSTRAPPER_REQUEST_STATE_PRESENT;
    HRESULT hr = check<&App::OnPlanPackageBegin>("OnPlanPackageBegin", package, &requested);
    // A package without a detection, which was cancelled before it, has no state to plan from.
    if (SUCCEEDED(hr) && !detected) hr = E_INVALIDARG;
    const bool present = script.package == BOOTSTRAPPER_PACKAGE_STATE_PRESENT;
    auto back = BOOTSTRAPPER_ACTION_STATE_NONE;
    if (SUCCEEDED(hr) && present == removes) {
        action = removes ? BOOTSTRAPPER_ACTION_STATE_UNINSTALL : BOOTSTRAPPER_ACTION_STATE_INSTALL;
        back = removes ? BOOTSTRAPPER_ACTION_STATE_INSTALL : BOOTSTRAPPER_ACTION_STATE_UNINSTALL;
    }
    ask<&App::OnPlanPackageComplete>("OnPlanPackageComplete", package, hr, script.package, requested, action, back);
    return hr;
}

// Apply.

void EngineRun::apply() {
    const HRESULT hr = applyPlan();
    outcome.apply = hr;
    ask<&App::OnApplyComplete>("OnApplyComplete", hr, BOOTSTRAPPER_APPLY_RESTART_NONE);
}

HRESULT EngineRun::applyPlan() {
    ask<&App::OnApplyPhaseCount>("OnApplyPhaseCount", DWORD{2});
    HRESULT hr = check<&App::OnApplyBegin>("OnApplyBegin");
    if (FAILED(hr) || !planned) return hr;
    if (hr = check<&App::OnElevate>("OnElevate"); FAILED(hr)) return hr;
    hr = check<&App::OnRegisterBegin>("OnRegisterBegin");
    ask<&App::OnRegisterComplete>("OnRegisterComplete", hr);
    if (FAILED(hr)) return hr;
    hr = cacheAndExecute();
    ask<&App::OnUnregisterBegin>("OnUnregisterBegin");
    ask<&App::OnUnregisterComplete>("OnUnregisterComplete", S_OK);
    return hr;
}

HRESULT EngineRun::cacheAndExecute() {
    if (action == BOOTSTRAPPER_ACTION_STATE_NONE) return S_OK;
    cacheResult = S_OK;
    Thread cacheThread;
    // An uninstall has nothing to cache, and the callbacks are not called.
    if (action == BOOTSTRAPPER_ACTION_STATE_INSTALL && !cacheThread.start(cache, this)) return E_FAIL;
    HRESULT hr = S_OK;
    if (!script.parallelCache) cacheThread.join();
    if (SUCCEEDED(cacheResult) || script.parallelCache) {
        hr = check<&App::OnExecuteBegin>("OnExecuteBegin", DWORD{1});
        cacheThread.join();
        if (SUCCEEDED(hr)) hr = cacheResult;
        if (SUCCEEDED(hr)) hr = execute();
        ask<&App::OnExecuteComplete>("OnExecuteComplete", hr);
    }
    return FAILED(hr) ? hr : cacheResult.load();
}

// The cache thread.

unsigned __stdcall EngineRun::cache(void* run) {
    auto& self = *static_cast<EngineRun*>(run);
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    HRESULT hr = self.check<&App::OnCacheBegin>("OnCacheBegin");
    if (SUCCEEDED(hr)) hr = self.cachePackage();
    self.cacheResult = hr;
    self.ask<&App::OnCacheComplete>("OnCacheComplete", hr);
    CoUninitialize();
    return 0;
}

HRESULT EngineRun::cachePackage() {
    HRESULT hr = check<&App::OnCachePackageBegin>("OnCachePackageBegin", package, DWORD{1}, payloadSize);
    if (SUCCEEDED(hr)) hr = acquire();
    if (SUCCEEDED(hr)) hr = check<&App::OnCacheVerifyBegin>("OnCacheVerifyBegin", package, package);
    if (SUCCEEDED(hr)) ask<&App::OnCacheVerifyComplete>("OnCacheVerifyComplete", package, package, hr, noAction);
    if (SUCCEEDED(hr)) hr = check<&App::OnProgress>("OnProgress", DWORD{50}, DWORD{50});
    ask<&App::OnCachePackageComplete>("OnCachePackageComplete", package, hr, noAction);
    return hr;
}

HRESULT EngineRun::acquire() {
    const auto operation = script.downloads ? BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD : BOOTSTRAPPER_CACHE_OPERATION_COPY;
    if (script.downloads) {
        const int answer = ask<&App::OnResolveSource>("OnResolveSource", package, package, localSource, address);
        if (FAILED(interpret(answer))) return interpret(answer);
        if (answer != resultDownload) return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    }
    HRESULT hr = check<&App::OnCacheAcquireBegin>("OnCacheAcquireBegin", package, package, operation,
                                                  script.downloads ? address : localSource);
    if (FAILED(hr)) return hr;
    hr = transfer();
    ask<&App::OnCacheAcquireComplete>("OnCacheAcquireComplete", package, package, hr, noAction);
    return hr;
}

HRESULT EngineRun::transfer() {
    for (const DWORD percent : {0, 50, 100}) {
        const HRESULT hr = check<&App::OnCacheAcquireProgress>("OnCacheAcquireProgress", package, package,
                                                               payloadSize * percent / 100, payloadSize, percent);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

// Execution, and the rollback, which can't be cancelled: answers do not count there.

HRESULT EngineRun::execute() {
    const HRESULT hr = executePackage();
    if (SUCCEEDED(hr)) return hr;
    ask<&App::OnExecutePackageBegin>("OnExecutePackageBegin", package, FALSE);
    ask<&App::OnProgress>("OnProgress", DWORD{0}, DWORD{0});
    ask<&App::OnExecutePackageComplete>("OnExecutePackageComplete", package, S_OK, BOOTSTRAPPER_APPLY_RESTART_NONE,
                                        noAction);
    return hr;
}

HRESULT EngineRun::executePackage() {
    for (;;) {
        HRESULT hr = check<&App::OnExecutePackageBegin>("OnExecutePackageBegin", package, TRUE);
        if (SUCCEEDED(hr)) hr = check<&App::OnExecuteProgress>("OnExecuteProgress", package, DWORD{50}, DWORD{75});
        for (const auto& text : script.actions)
            if (SUCCEEDED(hr))
                hr = check<&App::OnExecuteMsiMessage>("OnExecuteMsiMessage", package, actionStart, UINT{0},
                                                      text.c_str(), DWORD{0}, static_cast<LPCWSTR*>(nullptr), noAction);
        if (SUCCEEDED(hr)) hr = script.execute;
        if (SUCCEEDED(hr)) hr = check<&App::OnProgress>("OnProgress", DWORD{100}, DWORD{100});
        const int answer = ask<&App::OnExecutePackageComplete>("OnExecutePackageComplete", package, hr,
                                                               BOOTSTRAPPER_APPLY_RESTART_NONE, noAction);
        if (SUCCEEDED(hr) || answer != IDRETRY) return hr;
    }
}

}  // namespace pdx
