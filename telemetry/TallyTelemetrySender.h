// Telemetry to the analytics service, whose posts wrap numbered events in an envelope.
#pragma once

#include "telemetry/TelemetrySender.h"

namespace pdx {

/// The current time in the service's format: UTC in seconds with a "Z" at the end.
std::string tallyTimestamp();

/// Numbers its events from 1; a failed post leaves a gap. The envelope is made once for the process, at the worker's
/// first pass over the queue. The setting telemetry.tally.log logs each event.
class TallyTelemetrySender : public TelemetrySender {
  public:
    ~TallyTelemetrySender() override { stop(); }

    [[nodiscard]] std::string timestamp() const override;
    TelemetryQueueItem prepareEvent(const TelemetryEvent& event) override;
    void send(nlohmann::json batch) override;

  private:
    std::atomic<int64_t> eventCounter{0};
};

/// Frees the identity that was looked up for the process.
void releaseTallyIdentity();

}  // namespace pdx
