// Telemetry as long as one application object needs it.
#pragma once

#include <memory>

#include "telemetry/TelemetryManager.h"

namespace pdx {

/// Makes the manager of a run; null for one without telemetry.
using TelemetryFactory = std::shared_ptr<TelemetryManager> (*)();

/// All calls on the engine's thread.
class TelemetryLife {
  public:
    TelemetryLife() = default;
    /// Ends it as stop() does, unless it was handed on: no worker is left in a library that is about to be unmapped.
    ~TelemetryLife();
    TelemetryLife(const TelemetryLife&) = delete;
    TelemetryLife& operator=(const TelemetryLife&) = delete;

    /// Replaces the manager that an object before a reload left. That one, and those before it,
    /// send what they still have, and nobody waits for them before stop().
    void begin(TelemetryFactory make);
    /// Waits until all workers have ended, each after one last post.
    void stop();
    /// Leaves everything running for the object that comes with a reload.
    void handOn();

  private:
    std::shared_ptr<TelemetryManager> manager;
    std::shared_ptr<TelemetryManager> earlier;
};

}  // namespace pdx
