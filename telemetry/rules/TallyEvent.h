// The events of the Tally service. The envelope of a post, not the event, identifies the sender.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "telemetry/rules/TelemetryEvent.h"

namespace pdx {

/// The version of the service's taxonomy, which a post names in its envelope and in a header.
inline constexpr const char* tallyTaxonomyVersion = "2.0";

/// The keys of every event besides its core.
nlohmann::json tallyItem();

/// The event as it is posted. An attribute replaces another key of the same name, even "core". Numbers count from 1.
nlohmann::json tallyEvent(const TelemetryEvent& event, int64_t number, std::string time, const nlohmann::json& item);

/// The keys of the envelope that are the same for every post of a process. Both texts are UTF-8.
nlohmann::json tallyEnvelope(const std::string& session, const std::string& locale);

/// The body of a post of a batch of events.
nlohmann::json tallyPost(nlohmann::json batch, const std::string& session, const nlohmann::json& envelope,
                         std::string time);

/// A locale's name in the service's format: "en_US"; only the first "-" changes, as in "zh_Hant-TW".
std::wstring tallyLocale(std::wstring_view locale);

}  // namespace pdx
