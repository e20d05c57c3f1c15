#include "telemetry/TallyTelemetrySender.h"

#include <utility>

#include "config/Settings.h"
#include "platform/Clock.h"
#include "platform/Locale.h"
#include "platform/Log.h"
#include "platform/ProcessValue.h"
#include "telemetry/rules/TallyEvent.h"
#include "telemetry/rules/TimeFormat.h"

namespace pdx {
namespace {

/// Looked up once for the process, with its first event.
struct Shared {
    bool log;
    nlohmann::json item;
};
constinit ProcessValue<Shared> shared;
/// Made once for the process, in the first send(), even if that has nothing to post.
constinit ProcessValue<nlohmann::json> sharedEnvelope;

}  // namespace

std::string tallyTimestamp() { return tallyTime(currentFileTime()); }

std::string TallyTelemetrySender::timestamp() const { return tallyTimestamp(); }

TelemetryQueueItem TallyTelemetrySender::prepareEvent(const TelemetryEvent& event) {
    const Shared& once = shared.get([] { return Shared{getConfigBool("telemetry.tally.log", false), tallyItem()}; });
    nlohmann::json prepared = tallyEvent(event, ++eventCounter, timestamp(), once.item);
    if (once.log) PDX_LOG(logInfo, "TallyTelemetrySender::prepareEvent", "[TALLY]: %s", readableLine(prepared));
    return {std::move(prepared), event.urgent};
}

void TallyTelemetrySender::send(nlohmann::json batch) {
    const nlohmann::json& envelope =
        sharedEnvelope.get([this] { return tallyEnvelope(sessionId, toUtf8(tallyLocale(userLocale()))); });
    if (batch.empty()) return;
    const HttpHeaders headers = {
        {"Content-Type", "application/json"},
        {"x-palisade-taxv", tallyTaxonomyVersion},
    };
    const std::string body = tallyPost(std::move(batch), sessionId, envelope, timestamp()).dump();
    http->post(body.data(), body.size(), headers);
}

void releaseTallyIdentity() {
    shared.clear();
    sharedEnvelope.clear();
}

}  // namespace pdx
