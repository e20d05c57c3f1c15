#include "telemetry/rules/TelemetryBatch.h"

#include <utility>

namespace pdx {

nlohmann::json takeBatch(nlohmann::json& pending, std::vector<TelemetryQueueItem> items, bool sendingEnabled) {
    nlohmann::json batch = nlohmann::json::array();
    if (sendingEnabled) std::swap(batch, pending);
    for (TelemetryQueueItem& item : items) {
        const bool goes = sendingEnabled || item.urgent;
        (goes ? batch : pending).push_back(std::move(item.event));
    }
    return batch;
}

}  // namespace pdx
