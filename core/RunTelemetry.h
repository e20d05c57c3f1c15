// Sends the events of a run to the two telemetry services.
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

/// Each operation sends the events of one occasion. Only stop() waits for the network. Any thread after start(); the
/// constructor's arguments outlive the object.
class RunTelemetry {
  public:
    using Json = nlohmann::json;

    RunTelemetry(const RunVariables& runVariables, const RunContext& runContext,
                 const std::atomic<BOOTSTRAPPER_ACTION>& runAction)
        : variables(runVariables), context(runContext), action(runAction) {}

    // ---- The session

    /// Makes the run's manager and sends the session's start. Without a factory nothing is sent.
    void start(TelemetryFactory make, bool autopatch, bool elevated);
    void sendSessionStopped() const;
    /// Waits until both senders have ended, each after one last post.
    void stop() { life.stop(); }
    /// Leaves the senders to the application object that a reload makes.
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
    /// The word is runCancelWord's. A report's id is sent unless it is empty.
    void sendRunCancelled(const char* word, const std::string& reportId) const;
    void sendRunFailed(const std::string& reportId) const;

    // ---- What the migration has shown, and what was pressed (state/rules/MeridianMessages.h)

    void sendMeridianStartClick(const char* id) const;
    void sendMeridianStartImpressions() const;
    void sendBastionOverlayClick(const char* id) const;
    void sendBastionOverlayImpressions() const;
    void sendMeridianCompleted() const;

  private:
    [[nodiscard]] RunKind kind() const;
    /// Sends an error event to the Brisk service, "{group}" in its name replaced (eventName); logs code, text and flag.
    void logBriskError(std::string_view name, HRESULT hr, const std::string& message, Operation operation,
                       const Json& errorContext, const Json& extra = {}) const;
    void sendMeridianMessages(std::span<const char* const> ids, const MessagePlace& place, const char* status) const;

    const RunVariables& variables;
    const RunContext& context;
    const std::atomic<BOOTSTRAPPER_ACTION>& action;
    TelemetryLife life;
    std::string startTime;  ///< of the session, in the form of the Brisk service
};

}  // namespace pdx
