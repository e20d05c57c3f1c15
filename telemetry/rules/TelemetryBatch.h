// The events that a sender posts in one pass over its queue.
#pragma once

#include <vector>

#include "telemetry/rules/TelemetryEvent.h"

namespace pdx {

/// The events to post now, as an array that may be empty. While sending is enabled: all events of pending, then all
/// items. Otherwise: the urgent items only, which may overtake older ones; the others are appended to pending, which is
/// always an array. Both arrays keep the order of arrival.
nlohmann::json takeBatch(nlohmann::json& pending, std::vector<TelemetryQueueItem> items, bool sendingEnabled);

}  // namespace pdx
