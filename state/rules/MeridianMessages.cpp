#include "state/rules/MeridianMessages.h"

#include <nlohmann/json.hpp>

namespace pdx {

nlohmann::json meridianMessage(const std::string& id, const std::string& destination, const std::string& page,
                               const std::string& status, const std::string& trackingTag) {
    const nlohmann::json nothing = nlohmann::json::array();
    return {{"msg_id", id},
            {"destination_name", destination},
            {"status", status},
            {"pgid", page},
            {"type", "in_service"},
            {"service", "sable"},
            {"track",
             {{"trackingtag", trackingTag},
              {"environment", ""},
              {"target_games_in_collection", nothing},
              {"target_subs", ""},
              {"target_min_hours_played", nothing},
              {"target_traffic_rules", ""}}}};
}

}  // namespace pdx
