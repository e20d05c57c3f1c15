// An event of telemetry as the system sends it, and as a sender keeps it.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace pdx {

/// The numbers of the two senders in TelemetryEvent::sender; every other number is nobody's.
inline constexpr int32_t briskSender = 0;
inline constexpr int32_t tallySender = 1;

struct TelemetryEvent {
    int32_t sender = briskSender;
    std::string name;
    nlohmann::json params;  ///< the attributes; counts only if it is an object
    bool urgent = false;    ///< is sent even while others are held
    bool reserved = false;
};

/// An attribute whose text never changes.
struct ConstantText {
    const char* key;
    const char* text;
};

/// An object of such attributes.
template <size_t Count>
nlohmann::json objectOf(const ConstantText (&texts)[Count]) {
    nlohmann::json object = nlohmann::json::object();
    for (const auto& [key, text] : texts) object[key] = text;
    return object;
}

/// An event as it will be posted. A value that is null or empty is one to drop.
struct TelemetryQueueItem {
    nlohmann::json event;
    bool urgent = false;
};

}  // namespace pdx
