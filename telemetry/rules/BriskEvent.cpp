#include "telemetry/rules/BriskEvent.h"

#include <array>
#include <optional>
#include <utility>

#include "platform/product/InstallerVersion.h"

namespace pdx {
namespace {

constexpr ConstantText constantTexts[] = {
    {"app", "kestrel-installer"},
    {"build", "opt"},
    {"plat", "pc"},
    {"vers", installerVersion},
};

struct HeaderFact {
    const char* key;
    std::string BriskIdentity::*fact;
};
constexpr HeaderFact facts[] = {
    {"arch", &BriskIdentity::architecture},
    {"cntry", &BriskIdentity::country},
    {"envt", &BriskIdentity::environment},
    {"ityp", &BriskIdentity::installerType},
    {"lang", &BriskIdentity::language},
    {"machash", &BriskIdentity::machineHash},
    {"os", &BriskIdentity::os},
    {"session", &BriskIdentity::session},
};

using Taxonomy = std::array<std::string_view, 3>;

std::optional<Taxonomy> splitTaxonomy(std::string_view name) {
    const size_t first = name.find('.');
    if (first == std::string_view::npos) return std::nullopt;
    const size_t second = name.find('.', first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const Taxonomy tokens{name.substr(0, first), name.substr(first + 1, second - first - 1), name.substr(second + 1)};
    if (tokens[2].empty() || tokens[2].find('.') != std::string_view::npos) return std::nullopt;
    return tokens;
}

}  // namespace

nlohmann::json briskHeader(const BriskIdentity& identity) {
    nlohmann::json header = objectOf(constantTexts);
    for (const auto& [key, fact] : facts) header[key] = identity.*fact;
    return header;
}

nlohmann::json briskEvent(const TelemetryEvent& event, std::string time, bool development,
                          const nlohmann::json& header) {
    nlohmann::json result = nlohmann::json::object();
    const std::optional<Taxonomy> taxonomy = splitTaxonomy(event.name);
    if (!taxonomy) return result;
    nlohmann::json param = nlohmann::json::object();
    if (development) param["is_development"] = 1;
    if (event.params.is_object()) param.update(event.params);
    result["m"] = (*taxonomy)[0];
    result["g"] = (*taxonomy)[1];
    result["s"] = (*taxonomy)[2];
    result["ts"] = std::move(time);
    if (!param.empty()) result["param"] = std::move(param);
    result.update(header);
    return result;
}

std::wstring_view briskLanguage(std::wstring_view locale) { return locale.substr(0, locale.find(L'-')); }

}  // namespace pdx
