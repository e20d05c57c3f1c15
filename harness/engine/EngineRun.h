// A run of a bootstrapper application with the small engine: what the machine and the bundle are like, and the slots
// called in the engine's order.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "harness/engine/SmallEngine.h"
#include "platform/rules/ClientPackage.h"
#include "platform/rules/ProgramErrors.h"

namespace pdx {

/// What the engine makes of a callback that answers IDCANCEL.
inline constexpr auto userExit = hresultFromWin32(userExitCode);

struct ScriptedMessage {
    int type = 0;  ///< INSTALLMESSAGE_*, with or without style bits
    std::wstring text = {};
    UINT flags = 0;
    std::vector<std::wstring> data = {};
    int recommendation = 0;
};

struct ScriptedError {
    BOOTSTRAPPER_ERROR_TYPE type;
    DWORD code;
    std::wstring text = {};
    DWORD flags = MB_ICONERROR;
    std::vector<std::wstring> data = {};
    int recommendation = 0;
};

struct ScriptedFilesInUse {
    std::vector<std::wstring> files;
};

struct ScriptedProgress {
    DWORD percent;
};

/// What happens while a package executes. An answer of IDCANCEL ends the package with 0x80070642.
using ExecuteEvent = std::variant<ScriptedProgress, ScriptedMessage, ScriptedError, ScriptedFilesInUse>;

/// One result an attempt; an attempt beyond the list succeeds.
using Attempts = std::vector<HRESULT>;

/// Where a payload comes from: the bundle's own container, which is nothing to acquire; a file beside the bundle, which
/// is copied; or an address, because that file is missing, if OnResolveSource answers IDDOWNLOAD.
enum class PayloadSource { attached, local, download };

struct ScriptedPayload {
    std::wstring id;
    PayloadSource source = PayloadSource::local;
    DWORD64 size = 1000;
    Attempts acquire = {};
    Attempts verify = {};
    std::vector<ScriptedError> errors = {};  ///< raised before each attempt that fails
};

struct ScriptedPackage {
    std::wstring id = clientPackageId;
    BOOTSTRAPPER_PACKAGE_STATE state = BOOTSTRAPPER_PACKAGE_STATE_ABSENT;
    bool vital = true;
    HRESULT detect = S_OK;
    HRESULT plan = S_OK;
    std::vector<std::wstring> features = {};
    std::vector<ScriptedPayload> payloads = {{.id = clientPackageId}};
    std::vector<ExecuteEvent> events = {ScriptedProgress{0}, ScriptedProgress{50}, ScriptedProgress{100}};
    Attempts execute = {};
    BOOTSTRAPPER_APPLY_RESTART restart = BOOTSTRAPPER_APPLY_RESTART_NONE;
};

struct ScriptedRelatedBundle {
    std::wstring id;
    BOOTSTRAPPER_RELATION_TYPE relation = BOOTSTRAPPER_RELATION_UPGRADE;
    DWORD64 version = 0;
    BOOTSTRAPPER_RELATED_OPERATION operation = BOOTSTRAPPER_RELATED_OPERATION_NONE;
};

struct EngineScript {
    bool installed = false;
    std::wstring bundleId = L"{00000000-0000-0000-0000-000000000001}";
    std::wstring updateLocation = {};  ///< empty: OnDetectUpdateBegin is not called
    std::vector<ScriptedRelatedBundle> relatedBundles = {};
    std::vector<ScriptedPackage> packages = {ScriptedPackage()};
    HRESULT detect = S_OK;  ///< given to OnDetectComplete
    HRESULT plan = S_OK;    ///< given to OnPlanComplete
    Attempts elevate = {};  ///< a failure raises an error of type 0; IDRETRY asks again
    HRESULT registration = S_OK;
    std::vector<ScriptedError> applyErrors = {};  ///< raised behind OnApplyBegin
    /// Execution starts while the cache thread works, and waits for each package; otherwise it waits for the whole.
    bool parallelCache = false;
    /// A run that asks the engine for nothing in this time has failed (milliseconds).
    DWORD idleBound = 30000;
    /// A run that has not ended in this time hangs in a slot: it is told on stderr and the process ended with code 3.
    DWORD hangBound = 120000;
};

/// A slot that is about to be called or has returned, told on the thread that calls it: the engine's, the cache thread
/// or the one of systemShutdown.
struct SlotEvent {
    std::string_view slot;
    std::wstring_view package;  ///< package or container id, empty where the slot has none
    bool returned;
    int result;  ///< 0 before the return and for a slot without a result
};
using SlotHook = std::function<void(const SlotEvent&)>;

struct SlotCall {
    std::string slot;
    std::wstring package;
    DWORD threadId;
    bool returned = false;
    int result = 0;
};

struct RunOutcome {
    HRESULT startup = S_OK;
    int shutdown = 0;
    /// The one of the last Quit, or the result of a failed OnStartup.
    DWORD exitCode = 0;
    std::optional<HRESULT> apply;  ///< what OnApplyComplete was given last
    std::string failure;           ///< why the run counts as failed although it ended; empty if it does not
    std::vector<SlotCall> slots;   ///< in the order in which they were entered

    /// "OnDetectBegin", "OnDetectPackageBegin PalisadeApp.msi" and so on, without the progress slots.
    [[nodiscard]] std::vector<std::string> order() const;
    [[nodiscard]] const SlotCall* find(std::string_view slot) const;
};

/// One run. Detect, Plan, Apply and Quit are performed one after the other on the thread that called run(), whichever
/// thread asked for them. As with the real engine a Quit takes effect when nothing else is asked for: a detection
/// under way goes on, and a Plan made in it still leads to a whole install.
class EngineRun {
  public:
    EngineRun(SmallEngine& engineUsed, IBootstrapperApplication& applicationRun, EngineScript runScript = {},
              SlotHook slotHook = {});

    /// From OnStartup to OnShutdown. The application's last Release is the caller's.
    RunOutcome run();

    /// Asks OnSystemShutdown on a thread of its own and waits for the answer; may be called in a hook or on any thread
    /// while run() is under way. The recommendation is IDOK for a critical end of the session, else IDCANCEL.
    int systemShutdown(DWORD endSession);

  private:
    struct PlannedPackage {
        const ScriptedPackage* package;
        BOOTSTRAPPER_ACTION_STATE execute;
        BOOTSTRAPPER_ACTION_STATE rollback;
        Handle cached;
        bool cacheFailed = false;
        [[nodiscard]] bool isCached() const { return execute != BOOTSTRAPPER_ACTION_STATE_UNINSTALL; }
    };

    using App = IBootstrapperApplication;

    /// Calls the slot, noted and told to the hook under its name.
    template <auto slot, typename... Arguments>
    auto ask(const char* name, const std::wstring& package, Arguments... arguments) {
        const size_t index = entered(name, package);
        if constexpr (std::is_void_v<decltype((application.*slot)(arguments...))>) {
            (application.*slot)(arguments...);
            returned(index, 0);
        } else {
            const auto result = (application.*slot)(arguments...);
            returned(index, result);
            return result;
        }
    }
    /// The same for a slot whose answer can end the phase: what the engine makes of it.
    template <auto slot, typename... Arguments>
    HRESULT check(const char* name, const std::wstring& package, Arguments... arguments) {
        return interpret(ask<slot>(name, package, arguments...));
    }
    static HRESULT interpret(int answer);
    size_t entered(const char* slot, const std::wstring& package);
    void returned(size_t index, int result);
    void serve();
    bool waitForRequest();
    [[nodiscard]] std::string openSlots();

    void detect();
    HRESULT detectMachine();
    HRESULT detectUpdate();
    HRESULT detectPackage(const ScriptedPackage& package);
    void plan(BOOTSTRAPPER_ACTION action);
    HRESULT planPackages(BOOTSTRAPPER_ACTION action);
    HRESULT planPackage(const ScriptedPackage& package, BOOTSTRAPPER_ACTION action);
    void apply();
    HRESULT applyPlan(BOOTSTRAPPER_APPLY_RESTART& restart);
    HRESULT elevate();
    HRESULT cacheAndExecute(BOOTSTRAPPER_APPLY_RESTART& restart);
    void cache();
    HRESULT cachePackages();
    HRESULT cachePackage(PlannedPackage& planned);
    HRESULT cachePayload(const ScriptedPackage& package, const ScriptedPayload& payload);
    HRESULT acquire(const ScriptedPackage& package, const ScriptedPayload& payload, size_t& attempt);
    HRESULT transfer(const ScriptedPackage& package, const ScriptedPayload& payload, HRESULT result);
    HRESULT cacheProgress(const ScriptedPackage& package, const ScriptedPayload& payload, DWORD percent);
    HRESULT execute(BOOTSTRAPPER_APPLY_RESTART& restart);
    HRESULT executePackage(const ScriptedPackage& package, BOOTSTRAPPER_APPLY_RESTART& restart);
    HRESULT executeEvents(const ScriptedPackage& package);
    void rollBack(const PlannedPackage& planned);
    HRESULT raise(const ScriptedError& error, const std::wstring& package, int* answer = nullptr);
    [[nodiscard]] DWORD packagesToCache() const;
    HRESULT overallProgress();

    SmallEngine& engine;
    IBootstrapperApplication& application;
    const EngineScript script;
    const SlotHook hook;
    ScriptedPackage updatePackage;
    std::vector<PlannedPackage> planned;
    std::set<std::wstring> detected;
    bool planBegun = false;
    bool elevated = false;
    std::optional<DWORD> quit;
    std::atomic<HRESULT> cacheResult = S_OK;
    std::atomic<int> packagesCached = 0;
    /// Below the number that came through while packages that failed are rolled back.
    std::atomic<int> packagesExecuted = 0;
    RunOutcome outcome;
    Lock slotLock;
};

}  // namespace pdx
