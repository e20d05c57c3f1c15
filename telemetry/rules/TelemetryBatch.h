// What a sender posts on one pass over its queue.
#pragma once

#include <vector>

#include "telemetry/rules/TelemetryEvent.h"

namespace pdx {

/// The events to post now, as an array that may be empty. While sending is enabled these are all events of pending,
/// then all items. Otherwise they are the urgent items alone, which may thus overtake older ones; the others join
/// pending. Both arrays keep the order of arrival. pending is an array before and after.
nlohmann::json takeBatch(nlohmann::json& pending, std::vector<TelemetryQueueItem> items, bool sendingEnabled);

}  // namespace pdx
