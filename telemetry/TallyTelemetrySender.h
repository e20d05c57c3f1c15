// Telemetry to the analytics service, whose posts wrap numbered events in an envelope.
#pragma once

#include "telemetry/TelemetrySender.h"

namespace pdx {

/// The current time as the service takes it: UTC in seconds with a "Z" behind them.
std::string tallyTimestamp();

/// Numbers its events from 1; a failed post leaves a gap. Who sends is found out with the first post of the process,
/// whichever sender it goes through, and stays as it was then; telemetry.tally.log makes each event a log line.
class TallyTelemetrySender : public TelemetrySender {
  public:
    ~TallyTelemetrySender() override { stop(); }

    [[nodiscard]] std::string timestamp() const override;
    TelemetryQueueItem prepareEvent(const TelemetryEvent& event) override;
    void send(nlohmann::json batch) override;

  private:
    std::atomic<int64_t> eventCounter{0};
};

/// Forgets what was found out for the process.
void releaseTallyEnvelope();

}  // namespace pdx
