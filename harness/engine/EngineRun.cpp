#include "harness/engine/EngineRun.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <ranges>
#include <thread>
#include <type_traits>
#include <utility>

#include "platform/Text.h"

namespace pdx {

namespace {

constexpr int noAction = 0;
constexpr DWORD criticalEnd = 0x40000000;

/// Plan takes any action; one that is none fails while it is planned.
bool isPlannable(BOOTSTRAPPER_ACTION action) {
    return action >= BOOTSTRAPPER_ACTION_LAYOUT && action <= BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED;
}

BOOTSTRAPPER_REQUEST_STATE defaultRequest(BOOTSTRAPPER_ACTION action, bool present) {
    if (action == BOOTSTRAPPER_ACTION_UNINSTALL) return BOOTSTRAPPER_REQUEST_STATE_ABSENT;
    if (action == BOOTSTRAPPER_ACTION_REPAIR && present) return BOOTSTRAPPER_REQUEST_STATE_REPAIR;
    return BOOTSTRAPPER_REQUEST_STATE_PRESENT;
}

BOOTSTRAPPER_ACTION_STATE executeState(BOOTSTRAPPER_REQUEST_STATE requested, bool present) {
    switch (requested) {
        case BOOTSTRAPPER_REQUEST_STATE_FORCE_ABSENT:
        case BOOTSTRAPPER_REQUEST_STATE_ABSENT:
            return present ? BOOTSTRAPPER_ACTION_STATE_UNINSTALL : BOOTSTRAPPER_ACTION_STATE_NONE;
        case BOOTSTRAPPER_REQUEST_STATE_PRESENT:
            return present ? BOOTSTRAPPER_ACTION_STATE_NONE : BOOTSTRAPPER_ACTION_STATE_INSTALL;
        case BOOTSTRAPPER_REQUEST_STATE_REPAIR:
            return present ? BOOTSTRAPPER_ACTION_STATE_REPAIR : BOOTSTRAPPER_ACTION_STATE_INSTALL;
        default:
            return BOOTSTRAPPER_ACTION_STATE_NONE;
    }
}

BOOTSTRAPPER_ACTION_STATE rollbackState(BOOTSTRAPPER_ACTION_STATE execute) {
    switch (execute) {
        case BOOTSTRAPPER_ACTION_STATE_INSTALL:
            return BOOTSTRAPPER_ACTION_STATE_UNINSTALL;
        case BOOTSTRAPPER_ACTION_STATE_UNINSTALL:
            return BOOTSTRAPPER_ACTION_STATE_INSTALL;
        default:
            return BOOTSTRAPPER_ACTION_STATE_NONE;
    }
}

/// Ends the process when a run takes too long: a slot that never returns can't be left in any other way.
class Watchdog {
  public:
    Watchdog(DWORD bound, std::function<std::string()> describe)
        : over(CreateEventW(nullptr, TRUE, FALSE, nullptr)), thread([this, bound, describe = std::move(describe)] {
              if (WaitForSingleObject(over.get(), bound) != WAIT_TIMEOUT) return;
              std::fprintf(stderr, "the run has not ended after %lu ms; still in:%s\n", bound, describe().c_str());
              std::fflush(stderr);
              TerminateProcess(GetCurrentProcess(), 3);
          }) {}
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog() {
        SetEvent(over.get());
        thread.join();
    }

  private:
    Handle over;
    std::thread thread;
};

}  // namespace

std::vector<std::string> RunOutcome::order() const {
    std::vector<std::string> lines;
    for (const auto& call : slots) {
        if (call.slot.ends_with("Progress")) continue;
        lines.push_back(call.package.empty() ? call.slot : call.slot + ' ' + toUtf8(call.package));
    }
    return lines;
}

const SlotCall* RunOutcome::find(std::string_view slot) const {
    const auto found = std::ranges::find(slots, slot, &SlotCall::slot);
    return found == slots.end() ? nullptr : &*found;
}

EngineRun::EngineRun(SmallEngine& engineUsed, IBootstrapperApplication& applicationRun, EngineScript runScript,
                     SlotHook slotHook)
    : engine(engineUsed), application(applicationRun), script(std::move(runScript)), hook(std::move(slotHook)) {
    updatePackage.id = script.bundleId;
    updatePackage.payloads = {{.id = script.bundleId, .source = PayloadSource::download}};
    engine.answers.packageCount = static_cast<DWORD>(script.packages.size());
}

// The calls of the slots, noted and told.

HRESULT EngineRun::interpret(int answer) {
    if (answer == IDCANCEL || answer == IDABORT) return userExit;
    constexpr int refused = -1;
    return answer == refused ? HRESULT_FROM_WIN32(ERROR_INSTALL_FAILURE) : S_OK;
}

size_t EngineRun::entered(const char* slot, const std::wstring& package) {
    if (hook) hook({.slot = slot, .package = package, .returned = false, .result = 0});
    const std::lock_guard guard(slotLock);
    outcome.slots.push_back({.slot = slot, .package = package, .threadId = GetCurrentThreadId()});
    return outcome.slots.size() - 1;
}

void EngineRun::returned(size_t index, int result) {
    SlotCall call;
    {
        const std::lock_guard guard(slotLock);
        outcome.slots[index].returned = true;
        outcome.slots[index].result = result;
        call = outcome.slots[index];
    }
    if (hook) hook({.slot = call.slot, .package = call.package, .returned = true, .result = result});
}

std::string EngineRun::openSlots() {
    const std::lock_guard guard(slotLock);
    std::string text;
    for (const auto& call : outcome.slots) {
        if (!call.returned) text += ' ' + call.slot + ' ' + toUtf8(call.package);
    }
    return text;
}

int EngineRun::systemShutdown(DWORD endSession) {
    int answer = 0;
    std::thread([&] {
        const int recommendation = endSession & criticalEnd ? IDOK : IDCANCEL;
        answer = ask<&App::OnSystemShutdown>("OnSystemShutdown", {}, endSession, recommendation);
    }).join();
    return answer;
}

// The engine's own loop.

RunOutcome EngineRun::run() {
    {
        const Watchdog watchdog(script.hangBound, [this] { return openSlots(); });
        outcome.startup = ask<&App::OnStartup>("OnStartup", {});
        if (SUCCEEDED(outcome.startup)) {
            serve();
        } else {
            outcome.exitCode = static_cast<DWORD>(outcome.startup);
        }
        outcome.shutdown = ask<&App::OnShutdown>("OnShutdown", {});
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
                const auto last = outcome.slots.empty() ? std::string("nothing") : outcome.slots.back().slot;
                outcome.failure = "nobody called Quit: nothing was asked of the engine for " +
                                  std::to_string(script.idleBound) + " ms; the last slot was " + last;
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

// Detect.

void EngineRun::detect() {
    HRESULT hr = detectMachine();
    if (SUCCEEDED(hr)) hr = script.detect;
    ask<&App::OnDetectComplete>("OnDetectComplete", {}, hr);
}

HRESULT EngineRun::detectMachine() {
    const auto count = static_cast<DWORD>(script.packages.size());
    HRESULT hr = check<&App::OnDetectBegin>("OnDetectBegin", {}, script.installed, count);
    for (const auto& bundle : script.relatedBundles) {
        if (FAILED(hr)) return hr;
        hr = check<&App::OnDetectRelatedBundle>("OnDetectRelatedBundle", {}, bundle.id.c_str(), bundle.relation, L"",
                                                TRUE, bundle.version, bundle.operation);
    }
    if (SUCCEEDED(hr) && !script.updateLocation.empty()) hr = detectUpdate();
    for (const auto& package : script.packages) {
        if (FAILED(hr)) return hr;
        hr = detectPackage(package);
    }
    return hr;
}

HRESULT EngineRun::detectUpdate() {
    const auto* location = script.updateLocation.c_str();
    const HRESULT hr = check<&App::OnDetectUpdateBegin>("OnDetectUpdateBegin", {}, location, noAction);
    ask<&App::OnDetectUpdateComplete>("OnDetectUpdateComplete", {}, hr, nullptr);
    return hr;
}

HRESULT EngineRun::detectPackage(const ScriptedPackage& package) {
    const auto* id = package.id.c_str();
    HRESULT hr = check<&App::OnDetectPackageBegin>("OnDetectPackageBegin", package.id, id);
    if (FAILED(hr)) return hr;
    const auto featureState = package.state == BOOTSTRAPPER_PACKAGE_STATE_PRESENT ? BOOTSTRAPPER_FEATURE_STATE_LOCAL
                                                                                  : BOOTSTRAPPER_FEATURE_STATE_ABSENT;
    for (const auto& feature : package.features) {
        if (FAILED(hr)) break;
        hr = check<&App::OnDetectMsiFeature>("OnDetectMsiFeature", package.id, id, feature.c_str(), featureState);
    }
    if (SUCCEEDED(hr)) hr = package.detect;
    if (SUCCEEDED(hr)) detected.insert(package.id);
    ask<&App::OnDetectPackageComplete>("OnDetectPackageComplete", package.id, id, hr, package.state);
    return hr;
}

// Plan.

void EngineRun::plan(BOOTSTRAPPER_ACTION action) {
    planned.clear();
    HRESULT hr = planPackages(action);
    if (SUCCEEDED(hr)) hr = script.plan;
    ask<&App::OnPlanComplete>("OnPlanComplete", {}, hr);
}

HRESULT EngineRun::planPackages(BOOTSTRAPPER_ACTION action) {
    const auto count = static_cast<DWORD>(script.packages.size());
    HRESULT hr = check<&App::OnPlanBegin>("OnPlanBegin", {}, count);
    planBegun = SUCCEEDED(hr);
    if (!planBegun) return hr;
    if (action == BOOTSTRAPPER_ACTION_UPDATE_REPLACE || action == BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED)
        return engine.updateSet() ? planPackage(updatePackage, action) : S_OK;
    for (const auto& bundle : script.relatedBundles) {
        auto requested = BOOTSTRAPPER_REQUEST_STATE_NONE;
        hr = check<&App::OnPlanRelatedBundle>("OnPlanRelatedBundle", {}, bundle.id.c_str(), &requested);
        if (FAILED(hr)) return hr;
    }
    for (size_t index = 0; SUCCEEDED(hr) && index < script.packages.size(); ++index) {
        // Packages go in the reverse of the order in which they came.
        const bool removes = action == BOOTSTRAPPER_ACTION_UNINSTALL;
        hr = planPackage(script.packages[removes ? script.packages.size() - 1 - index : index], action);
    }
    return hr;
}

HRESULT EngineRun::planPackage(const ScriptedPackage& package, BOOTSTRAPPER_ACTION action) {
    const auto* id = package.id.c_str();
    // A package that detection did not come to, for it failed or was cancelled before, has no state to plan from.
    const bool known = &package == &updatePackage || detected.contains(package.id);
    const auto state = known ? package.state : BOOTSTRAPPER_PACKAGE_STATE_UNKNOWN;
    const bool present = state == BOOTSTRAPPER_PACKAGE_STATE_PRESENT;
    auto requested = defaultRequest(action, present);
    HRESULT hr = isPlannable(action) ? check<&App::OnPlanPackageBegin>("OnPlanPackageBegin", package.id, id, &requested)
                                     : E_INVALIDARG;
    if (SUCCEEDED(hr) && !known) hr = E_INVALIDARG;
    for (const auto& feature : package.features) {
        if (FAILED(hr)) break;
        auto featureState = BOOTSTRAPPER_FEATURE_STATE_UNKNOWN;
        hr = check<&App::OnPlanMsiFeature>("OnPlanMsiFeature", package.id, id, feature.c_str(), &featureState);
    }
    if (SUCCEEDED(hr)) hr = package.plan;
    const auto execute = SUCCEEDED(hr) ? executeState(requested, present) : BOOTSTRAPPER_ACTION_STATE_NONE;
    const auto rollback = rollbackState(execute);
    ask<&App::OnPlanPackageComplete>("OnPlanPackageComplete", package.id, id, hr, state, requested, execute, rollback);
    if (execute != BOOTSTRAPPER_ACTION_STATE_NONE)
        planned.push_back({&package, execute, rollback, Handle(CreateEventW(nullptr, TRUE, FALSE, nullptr))});
    return hr;
}

}  // namespace pdx
