// Telemetry to the analytics service, whose posts wrap numbered events in an envelope.
#pragma once

#include "telemetry/TelemetrySender.h"

namespace pdx {

/// The current time as the service takes it: UTC in seconds with a "Z" at the end.
std::string tallyTimestamp();

/// Numbers its events from 1; a failed post leaves a gap. The sender's identity is looked up with the first post
/// of the process and does not change after it; telemetry.tally.log makes each event a log line.
class TallyTelemetrySender : public TelemetrySender {
  public:
    ~TallyTelemetrySender() override { stop(); }

    [[nodiscard]] std::string timestamp() const override;
    TelemetryQueueItem prepareEvent(const TelemetryEvent& event) override;
    void send(nlohmann::json batch) override;

  private:
    std::atomic<int64_t> eventCounter{0};
};

/// Frees what was looked up for the process.
void releaseTallyEnvelope();

}  // namespace pdx
