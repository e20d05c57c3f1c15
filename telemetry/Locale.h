// Where and when the installer runs, as the senders need to know it.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace pdx {

/// The name of the user's locale, "en-US"; empty if the system does not tell it.
std::wstring userLocale();
/// The two letters of the user's country, "US"; empty if the system does not tell it.
std::wstring userCountry();
/// The current time in units of 100 nanoseconds since 1601, UTC.
uint64_t currentFileTime();

/// JSON on one line for a log, in which bytes that are no UTF-8 become U+FFFD.
std::string readableLine(const nlohmann::json& value);

}  // namespace pdx
