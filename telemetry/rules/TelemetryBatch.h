// What a sender posts on one pass over its queue.
#pragma once

#include <vector>

#include "telemetry/rules/TelemetryEvent.h"

namespace pdx {

/// The events to post now, as an array that may be empty: while sending is enabled all that was held in pending,
/// then all items; otherwise the urgent items alone, so that these may overtake older ones, and the others join
/// pending. Both arrays keep the order of arrival. pending is an array before and after.
nlohmann::json takeBatch(nlohmann::json& pending, std::vector<TelemetryQueueItem> items, bool sendingEnabled);

}  // namespace pdx
