// The events of the Brisk service: flat objects, each with the identity of installer and machine.
#pragma once

#include <string>
#include <string_view>

#include "telemetry/rules/TelemetryEvent.h"

namespace pdx {

/// The identity of installer and machine; all UTF-8.
struct BriskIdentity {
    std::string architecture;   ///< "AMD64"
    std::string country;        ///< "US"
    std::string environment;    ///< "production"
    std::string installerType;  ///< "thin" or "thick"
    std::string language;       ///< "en"
    std::string machineHash;    ///< empty in the product: the sender sets the key later (identifyMachine)
    std::string os;             ///< "Win 10"
    std::string session;
};

/// The keys of every event.
nlohmann::json briskHeader(const BriskIdentity& identity);

/// The event as it is posted. An empty object, to be dropped, unless the name has three tokens, as "inst.sess.strt"; a
/// name that ends in "." has not. In development every event has a mark, which its own attributes can replace.
nlohmann::json briskEvent(const TelemetryEvent& event, std::string time, bool development,
                          const nlohmann::json& header);

/// The language of a locale's name: "en" of "en-US".
std::wstring_view briskLanguage(std::wstring_view locale);

}  // namespace pdx
