// The events of the Tally service: an event carries itself alone, and the envelope of a post identifies the sender.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "telemetry/rules/TelemetryEvent.h"

namespace pdx {

/// The keys beside the core of every event.
nlohmann::json tallyItem();

/// The event as it is posted. Its attributes come last: one that bears the name of another key takes its place, "core"
/// among them. Numbers count from 1.
nlohmann::json tallyEvent(const TelemetryEvent& event, int64_t number, std::string time, const nlohmann::json& item);

/// The keys of the envelope that are the same for every post of a process. Both texts are UTF-8.
nlohmann::json tallyEnvelope(const std::string& session, const std::string& locale);

/// The body of a post of a batch of events.
nlohmann::json tallyPost(nlohmann::json batch, const std::string& session, const nlohmann::json& envelope,
                         std::string time);

/// A locale's name as the service takes it: "en_US"; "zh_Hant-TW", for it is the first "-" alone that changes.
std::wstring tallyLocale(std::wstring_view locale);

}  // namespace pdx
