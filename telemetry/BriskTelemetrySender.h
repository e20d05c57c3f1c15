// Telemetry to the service of dotted event names, such as "inst.sess.strt".
#pragma once

#include "telemetry/TelemetrySender.h"

namespace pdx {

/// Gives the 40 hexadecimal digits that identify the machine; may be slow.
using MachineHash = std::string (*)();

/// The current time as the service takes it: UTC with milliseconds and no mark of a zone, 23 characters.
std::string briskTimestamp();

/// A post is an array of flat objects. What identifies installer and machine is looked up with the first event of the
/// process and does not change after it. The machine's hash follows with the first post, on the worker, so that no
/// start waits for it. An event whose name has not three tokens logs "Bad taxonomy %s" and is dropped;
/// telemetry.brisk.log makes each event a log line.
class BriskTelemetrySender : public TelemetrySender {
  public:
    explicit BriskTelemetrySender(MachineHash hash) : machineHash(hash) {}
    ~BriskTelemetrySender() override { stop(); }

    [[nodiscard]] std::string timestamp() const override;
    TelemetryQueueItem prepareEvent(const TelemetryEvent& event) override;
    /// Adds the machine's hash to a prepared event: before the post, or before the line where events are logged. For an
    /// urgent one it may be missing from that line.
    void identifyMachine(nlohmann::json& event, bool urgent = false) const;
    void send(nlohmann::json batch) override;

  private:
    MachineHash machineHash;
};

/// Frees what was looked up for the process.
void releaseBriskIdentity();

}  // namespace pdx
