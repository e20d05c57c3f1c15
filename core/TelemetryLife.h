// The telemetry manager for the life of one application object.
#pragma once

#include <memory>

#include "telemetry/TelemetryManager.h"

namespace pdx {

/// Makes the manager of a run; null means no telemetry.
using TelemetryFactory = std::shared_ptr<TelemetryManager> (*)();

/// All calls on the engine's thread.
class TelemetryLife {
  public:
    TelemetryLife() = default;
    /// Stops as stop() does, except after handOn(): no worker may run in a library that is about to be unmapped.
    ~TelemetryLife();
    TelemetryLife(const TelemetryLife&) = delete;
    TelemetryLife& operator=(const TelemetryLife&) = delete;

    /// Replaces the manager of the application object that existed before a reload. That manager and earlier ones send
    /// what they have queued; only stop() waits for them.
    void begin(TelemetryFactory make);
    /// Waits until all workers have ended, each after one last post.
    void stop();
    /// Leaves everything running for the application object that a reload makes.
    void handOn();

  private:
    std::shared_ptr<TelemetryManager> manager;
    std::shared_ptr<TelemetryManager> earlier;
};

}  // namespace pdx
