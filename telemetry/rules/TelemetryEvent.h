// A telemetry event as it is passed to a sender, and as the sender queues it.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace pdx {

/// The numbers of the two senders in TelemetryEvent::sender. An event with another number is dropped.
inline constexpr int32_t briskSender = 0;
inline constexpr int32_t tallySender = 1;

struct TelemetryEvent {
    int32_t sender = briskSender;
    std::string name;
    nlohmann::json params;  ///< the attributes; ignored unless it is an object
    bool urgent = false;    ///< sent even while others are held
    bool reserved = false;  ///< always false; nothing reads it
};

/// An attribute whose text never changes.
struct ConstantText {
    const char* key;
    const char* text;
};

/// An object of such attributes.
template <size_t count>
nlohmann::json objectOf(const ConstantText (&texts)[count]) {
    nlohmann::json object = nlohmann::json::object();
    for (const auto& [key, text] : texts) object[key] = text;
    return object;
}

/// An event as it will be posted. One whose value is null or empty is dropped.
struct TelemetryQueueItem {
    nlohmann::json event;
    bool urgent = false;
};

}  // namespace pdx
