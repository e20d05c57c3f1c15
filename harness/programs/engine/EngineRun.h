// A run of a bootstrapper application with the small engine: one package, and the callbacks in the engine's order.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "core/engine/Callbacks.h"
#include "harness/programs/engine/SmallEngine.h"

namespace pdx {

/// The machine and the bundle: one package with one payload.
struct EngineScript {
    BOOTSTRAPPER_PACKAGE_STATE package = BOOTSTRAPPER_PACKAGE_STATE_ABSENT;
    /// Where the payload comes from: copied from beside the bundle, or fetched if OnResolveSource answers IDDOWNLOAD.
    bool downloads = false;
    std::vector<std::wstring> actions{};  ///< messages of the package's actions as it executes
    HRESULT execute = S_OK;
    /// Execution starts while the cache thread works, and waits for the package; otherwise it starts after it.
    bool parallelCache = false;
    /// A run that asks the engine for nothing in this time has failed (milliseconds).
    DWORD idleBound = 30000;
    /// A run that has not ended in this time hangs in a callback: reported on stderr, and the process ends with code 3.
    DWORD hangBound = 120000;
};

/// A callback that is about to be called or has returned, on the thread that calls it: the engine's or the cache's.
struct CallbackEvent {
    std::string_view callback;
    bool returned;
    int result;  ///< 0 before the return and for a callback without a result
};
using CallbackHook = std::function<void(const CallbackEvent&)>;

struct CallbackCall {
    std::string callback;
    bool returned = false;
    int result = 0;
};

struct RunOutcome {
    HRESULT startup = S_OK;
    int shutdown = 0;
    /// The one of the last Quit, or the result of a failed OnStartup.
    DWORD exitCode = 0;
    std::optional<HRESULT> apply;     ///< what OnApplyComplete was given last
    std::string failure;              ///< why the run counts as failed although it ended; empty if it does not
    std::vector<CallbackCall> calls;  ///< in the order in which they were entered

    [[nodiscard]] const CallbackCall* find(std::string_view callback) const;
};

/// One run. Detect, Plan, Apply and Quit are performed one after the other on the thread that called run(), whichever
/// thread asked for them. As with the real engine a Quit takes effect when nothing else is asked for: a detection
/// under way goes on, and a Plan made in it still leads to a whole install.
class EngineRun {
  public:
    EngineRun(SmallEngine& engineUsed, IBootstrapperApplication& applicationRun, EngineScript runScript = {},
              CallbackHook callbackHook = {});

    /// From OnStartup to OnShutdown. The application's last Release is the caller's.
    RunOutcome run();

  private:
    using App = IBootstrapperApplication;

    /// Calls the callback, recorded and reported to the hook under its name.
    template <auto callback, typename... Arguments>
    auto ask(const char* name, Arguments... arguments) {
        const size_t index = entered(name);
        if constexpr (std::is_void_v<decltype((application.*callback)(arguments...))>) {
            (application.*callback)(arguments...);
            returned(index, 0);
        } else {
            const auto result = (application.*callback)(arguments...);
            returned(index, result);
            return result;
        }
    }
    /// The same for a callback whose answer can end the phase: the engine's reading of it.
    template <auto callback, typename... Arguments>
    HRESULT check(const char* name, Arguments... arguments) {
        return interpret(ask<callback>(name, arguments...));
    }
    static HRESULT interpret(int answer);
    size_t entered(const char* callback);
    void returned(size_t index, int result);
    void serve();
    bool waitForRequest();
    [[nodiscard]] std::string openCallbacks();

    void detect();
    void plan(BOOTSTRAPPER_ACTION action);
    HRESULT planPackage(BOOTSTRAPPER_ACTION action);
    void apply();
    HRESULT applyPlan();
    HRESULT cacheAndExecute();
    static unsigned __stdcall cache(void* run);
    HRESULT cachePackage();
    HRESULT acquire();
    HRESULT transfer();
    HRESULT execute();
    HRESULT executePackage();

    SmallEngine& engine;
    IBootstrapperApplication& application;
    const EngineScript script;
    const CallbackHook hook;
    bool detected = false;
    bool planned = false;
    BOOTSTRAPPER_ACTION_STATE action = BOOTSTRAPPER_ACTION_STATE_NONE;
    std::optional<DWORD> quit;
    std::atomic<HRESULT> cacheResult = S_OK;
    RunOutcome outcome;
    Lock callsLock;
};

}  // namespace pdx
