#include "telemetry/BriskTelemetrySender.h"

#include <utility>

#include "config/Settings.h"
#include "platform/Clock.h"
#include "platform/Locale.h"
#include "platform/Log.h"
#include "platform/OsIdentity.h"
#include "platform/ProcessValue.h"
#include "platform/product/InstallerVersion.h"
#include "telemetry/rules/BriskEvent.h"
#include "telemetry/rules/TimeFormat.h"

namespace pdx {
namespace {

/// Looked up once for the process.
struct Shared {
    bool log;
    nlohmann::json header;
};
constinit ProcessValue<Shared> shared;
/// Separate from Shared, because it takes a tenth of a second or more.
constinit ProcessValue<std::string> knownHash;

nlohmann::json makeHeader(const std::string& session) {
    BriskIdentity identity;
    identity.architecture = getProcessorArchitecture();
    identity.country = toUtf8(userCountry());
    identity.environment = getConfigString("app.environment", "production");
    identity.installerType = getConfigString("app.installertype");
    identity.language = toUtf8(briskLanguage(userLocale()));
    identity.os = getOsVersion();
    identity.session = session;
    return briskHeader(identity);
}

}  // namespace

std::string briskTimestamp() { return briskTime(currentFileTime()); }

std::string BriskTelemetrySender::timestamp() const { return briskTimestamp(); }

TelemetryQueueItem BriskTelemetrySender::prepareEvent(const TelemetryEvent& event) {
    const auto make = [this] {
        const bool log = getConfigBool("telemetry.brisk.log", false);
        return Shared{log, makeHeader(sessionId)};
    };
    const Shared* const once = event.urgent ? shared.get(make, urgentBound) : &shared.get(make);
    if (!once) return {};
    nlohmann::json prepared = briskEvent(event, timestamp(), g_configurable, once->header);
    if (prepared.empty()) PDX_LOG(logInfo, "BriskTelemetrySender::prepareEvent", "Bad taxonomy %s", event.name);
    if (once->log) {
        identifyMachine(prepared, event.urgent);
        PDX_LOG(logInfo, "BriskTelemetrySender::prepareEvent", "[BrIsK]: %s", readableLine(prepared));
    }
    return {std::move(prepared), event.urgent};
}

void BriskTelemetrySender::identifyMachine(nlohmann::json& event, bool urgent) const {
    if (event.empty()) return;
    const std::string* const hash = urgent ? knownHash.get(machineHash, urgentBound) : &knownHash.get(machineHash);
    if (hash) event["machash"] = *hash;
}

void BriskTelemetrySender::send(nlohmann::json batch) {
    if (batch.empty()) return;
    for (nlohmann::json& event : batch) identifyMachine(event);
    // In both headers on purpose: the service expects it as OsVersion too.
    static constexpr const char* platform = "pc";
    const HttpHeaders headers = {
        {"Content-Type", "application/json"},
        {"x-bastion-client-version", installerVersion},
        {"OsVersion", platform},
        {"x-bastion-client-platform", platform},
    };
    const std::string body = batch.dump();
    http->post(body.data(), body.size(), headers);
    http->readResponse();  // its content decides nothing
}

void releaseBriskIdentity() {
    shared.clear();
    knownHash.clear();
}

}  // namespace pdx
