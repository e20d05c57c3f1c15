// Telemetry to the service of dotted event names, such as "inst.sess.strt".
#pragma once

#include "telemetry/TelemetrySender.h"

namespace pdx {

/// Returns the 40 hexadecimal digits that identify the machine; may be slow.
using MachineHash = std::string (*)();

/// The current time in the service's format: UTC with milliseconds, without a time zone, 23 characters.
std::string briskTimestamp();

/// A post is an array of flat objects. The identity of installer and machine is looked up once, with the first event of
/// the process. The machine's hash is computed with the first post, on the worker, so that no start waits for it. An
/// event whose name has not three tokens is dropped, and logs "Bad taxonomy %s". The setting telemetry.brisk.log logs
/// each event.
class BriskTelemetrySender : public TelemetrySender {
  public:
    explicit BriskTelemetrySender(MachineHash hash) : machineHash(hash) {}
    ~BriskTelemetrySender() override { stop(); }

    [[nodiscard]] std::string timestamp() const override;
    TelemetryQueueItem prepareEvent(const TelemetryEvent& event) override;
    /// Adds the machine's hash to a prepared event: before the post, or before its log line if events are logged. In
    /// the line of an urgent event the hash may be empty.
    void identifyMachine(nlohmann::json& event, bool urgent = false) const;
    void send(nlohmann::json batch) override;

  private:
    MachineHash machineHash;
};

/// Frees the identity that was looked up for the process.
void releaseBriskIdentity();

}  // namespace pdx
