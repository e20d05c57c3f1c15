// One run: the state that its parts share, and the operations by which each of them can end it.
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

/// Why the engine shall load the library anew.
enum class ReloadPurpose {
    repair,
    migration,  ///< to remove the older client although the client is installed already
};

/// The parts of a run hold a reference to it. Any thread, except where a member's comment names one.
class Run {
  public:
    /// Engine, command and context outlive the object. isCancelled is called on any thread.
    Run(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND& command, RunHooks hooks, RunContext& context,
        std::function<bool()> isCancelled);

    /// Makes the engine end the run with that code; see RunControls.
    void quit(DWORD code);
    [[nodiscard]] bool isQuitRequested() const { return quitRequested; }
    /// Ends the run with 1 if hr is a failure: no callback follows an operation that the engine refused, so the run
    /// would hang. Logs the failure and updates the status.
    void quitOnFailure(const char* operation, HRESULT hr);
    /// Asks the engine to end this run and then to load the library anew, for that purpose.
    void requestReload(ReloadPurpose purpose);
    /// Returns the result for OnShutdown, and resets it to 0.
    int takeShutdownResult() { return shutdownResult.exchange(0); }
    /// Asks the engine to detect. A refusal becomes the start's result: the engine ends the run with it at once, and
    /// its exit code names the failure.
    HRESULT detect();
    /// Whether the user has cancelled. Waits for the answer to an open question.
    bool isCancelledAfterQuestions();

    IBootstrapperEngine* const engine;
    const RunHooks hooks;
    RunContext& context;
    const std::function<bool()> isCancelled;
    std::atomic<BOOTSTRAPPER_ACTION> action;
    std::atomic<bool> loggedOut = false;  ///< the Windows session is ending
    RunVariables variables;
    RunTelemetry telemetry;
    InstallerMutex mutex;
    /// Locked until the object is destroyed. Used on the engine's thread.
    std::vector<FileHandle> lockedFiles;
    /// Declared last, so destroyed first: its thread uses the others.
    std::unique_ptr<RunUi> ui;

  private:
    std::atomic<bool> quitRequested = false;
    std::atomic<int> shutdownResult = 0;
};

}  // namespace pdx
