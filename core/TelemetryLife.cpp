#include "core/TelemetryLife.h"

namespace pdx {

TelemetryLife::~TelemetryLife() {
    stop();
    if (manager && g_telemetry.get() == manager) g_telemetry.clear();
}

void TelemetryLife::begin(TelemetryFactory make) {
    earlier = g_telemetry.get();
    if (earlier) earlier->requestStop();
    if (make) manager = make();
    if (manager) manager->keepEarlier(earlier);
    g_telemetry.set(manager);  // null too: a run without telemetry must not send through the earlier manager
    if (manager) manager->start();
}

void TelemetryLife::stop() {
    if (manager) manager->requestStop();
    for (auto each = earlier; each; each = each->earlier()) each->stop();
    if (manager) manager->stop();
}

void TelemetryLife::handOn() {
    if (!manager) g_telemetry.set(earlier);
    manager.reset();
    earlier.reset();
}

}  // namespace pdx
