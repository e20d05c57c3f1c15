// What the callbacks report of a run to the two telemetry services.
#pragma once

#include <atomic>
#include <span>
#include <string>
#include <string_view>

#include "core/rules/RunEvents.h"
#include "core/RunContext.h"
#include "core/RunVariables.h"
#include "core/TelemetryLife.h"
#include "platform/Engine.h"
#include "state/rules/MeridianMessages.h"

namespace pdx {

/// Each operation sends its occasion's events and waits for nothing, but for start() and stop(). Any thread, once
/// started; the arguments outlive the object.
class RunTelemetry {
  public:
    using Json = nlohmann::json;

    RunTelemetry(const RunVariables& runVariables, const RunContext& runContext,
                 const std::atomic<BOOTSTRAPPER_ACTION>& runAction)
        : variables(runVariables), context(runContext), action(runAction) {}

    // ---- The session

    /// Makes the manager of the run and sends the session's start. A null factory: nothing is sent.
    void start(TelemetryFactory make, bool autopatch, bool elevated);
    void sendSessionStopped() const;
    /// Waits until both senders have ended, each after one last post.
    void stop() { life.stop(); }
    /// Leaves the senders for the object that comes with a reload.
    void handOn() { life.handOn(); }

    // ---- The phases

    void sendDownloadStarted(const DownloadFacts& download) const;
    void sendDownloadFinished(const DownloadFacts& download) const;
    void sendDownloadCancelled(const DownloadFacts& download) const;
    void sendDownloadFailed(const DownloadFacts& download, HRESULT hr, const Json& extra = {}) const;
    void sendExecutionStarted() const;
    void sendExecutionFailed(HRESULT hr) const;
    void sendError(HRESULT hr, const std::string& message) const;
    void sendRunFinished() const;
    /// The word is runCancelWord's. The report's id goes with it unless it is empty.
    void sendRunCancelled(const char* word, const std::string& reportId) const;
    void sendRunFailed(const std::string& reportId) const;

    // ---- What of the move from the older client was shown or pressed (state/rules/MeridianMessages.h)

    void sendMeridianStartClick(const char* id) const;
    void sendMeridianStartImpressions() const;
    void sendBastionOverlayClick(const char* id) const;
    void sendBastionOverlayImpressions() const;
    void sendMeridianCompleted() const;

  private:
    [[nodiscard]] RunKind kind() const;
    /// Sends an error to the Brisk service under a name whose "{group}" is filled in; logs code, text and flag.
    void logBriskError(std::string_view name, const std::string& code, const std::string& message, Operation operation,
                       const Json& errorContext, const Json& extra = {}) const;
    void sendMeridianMessages(std::span<const char* const> ids, const MessagePlace& place, const char* status) const;

    const RunVariables& variables;
    const RunContext& context;
    const std::atomic<BOOTSTRAPPER_ACTION>& action;
    TelemetryLife life;
    std::string startTime;  ///< of the session, in the form of the Brisk service
};

}  // namespace pdx
