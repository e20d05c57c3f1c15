#include "telemetry/rules/TallyEvent.h"

#include <utility>

#include "platform/product/InstallerVersion.h"

namespace pdx {
namespace {

constexpr ConstantText itemTexts[] = {
    {"item_id", "Bastion.OFR.50.0001234"},
    {"item_id_type", "offer_id"},
};
constexpr ConstantText envelopeTexts[] = {
    {"entity_type", "player"},
    {"et", "client_desktop"},
    {"plat", "pc"},
    {"rel", "prod"},
    {"subl", "unknown"},
    {"subs", "unknown"},
    {"taxv", tallyTaxonomyVersion},
    {"tid", "kestrel_tundra"},
    {"tidt", "service"},
    {"v", installerVersion},
};
constexpr const char* sessionIdType = "uid";

}  // namespace

nlohmann::json tallyItem() { return objectOf(itemTexts); }

nlohmann::json tallyEvent(const TelemetryEvent& event, int64_t number, std::string time, const nlohmann::json& item) {
    nlohmann::json result = nlohmann::json::object();
    result["core"] = {{"en", event.name}, {"ts_event", std::move(time)}, {"s", number}};
    result.update(item);
    if (event.params.is_object()) result.update(event.params);
    return result;
}

nlohmann::json tallyEnvelope(const std::string& session, const std::string& locale) {
    nlohmann::json envelope = objectOf(envelopeTexts);
    envelope["loc"] = locale;
    envelope["sid"] = session;
    return envelope;
}

nlohmann::json tallyPost(nlohmann::json batch, const std::string& session, const nlohmann::json& envelope,
                         std::string time) {
    nlohmann::json context = nlohmann::json::object();
    context["c_delta"] = false;
    context["events"] = std::move(batch);
    context["pid"] = session;
    context["pidt"] = sessionIdType;
    nlohmann::json post = nlohmann::json::object();
    post["contexts"] = nlohmann::json::array();
    post["contexts"].push_back(std::move(context));
    post.update(envelope);
    post["ts_post"] = std::move(time);
    return post;
}

std::wstring tallyLocale(std::wstring_view locale) {
    std::wstring text(locale);
    if (const size_t dash = text.find(L'-'); dash != std::wstring::npos) text[dash] = L'_';
    return text;
}

}  // namespace pdx
