// One run: what its parts share, and the steps by which each of them can end it.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

#include "core/InstallerMutex.h"
#include "core/RunContext.h"
#include "core/RunHooks.h"
#include "core/RunTelemetry.h"
#include "core/RunUi.h"
#include "core/RunVariables.h"
#include "platform/Handles.h"

namespace pdx {

/// What the engine is to load the library anew for.
enum class ReloadPurpose {
    repair,
    migration,  ///< the older client is to go although the client is installed already
};

/// The parts of a run hold a reference on it. Any thread, but for what is said at a member.
class Run {
  public:
    /// Engine and command outlive the object, as does the context. isCancelled is asked from any thread.
    Run(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND& command, RunHooks hooks, RunContext& context,
        std::function<bool()> isCancelled);

    /// Makes the engine end the run with that code; see RunControls.
    void quit(DWORD code);
    [[nodiscard]] bool isQuitRequested() const { return quitRequested; }
    /// Ends the run with 1 if the engine refuses the operation of that name: it would call nothing more, and the run
    /// would hang. Logs it, and takes it into the status.
    void quitOnFailure(const char* operation, HRESULT hr);
    /// Asks the engine to end this run and then to load the library anew, in the mode that the reload is for.
    void requestReload(ReloadPurpose purpose);
    /// What OnShutdown returns. The next time it is 0 again.
    int takeShutdownResult() { return shutdownResult.exchange(0); }
    /// Asks the engine to detect. A refusal is the start's result, on an install as after a clean-up: the engine ends
    /// the run with it at once, and its exit code names the failure.
    HRESULT detect();
    /// Whether the user has cancelled. While the window asks for that, waits for the answer.
    bool hasUserCancelled();

    IBootstrapperEngine* const engine;
    const RunHooks hooks;
    RunContext& context;
    const std::function<bool()> isCancelled;
    std::atomic<BOOTSTRAPPER_ACTION> action;
    std::atomic<bool> loggedOut = false;  ///< the Windows session ends
    RunVariables variables;
    RunTelemetry telemetry;
    InstallerMutex mutex;
    /// Held until the object goes. On the engine's thread.
    std::vector<FileHandle> lockedFiles;
    /// The last to be made, and the first to go: its thread uses the others.
    std::unique_ptr<RunUi> ui;

  private:
    std::atomic<bool> quitRequested = false;
    std::atomic<int> shutdownResult = 0;
};

}  // namespace pdx
