#include "state/rules/MeridianMessages.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(MeridianMessages, HaveTheShapeThatTheServiceExpects) {
    EXPECT_EQ(meridianMessage("id", "there", "page", statusClick, "group").dump(),
              R"({"destination_name":"there","msg_id":"id","pgid":"page","service":"sable","status":"click","track":{)"
              R"("environment":"","target_games_in_collection":[],"target_min_hours_played":[],"target_subs":"",)"
              R"("target_traffic_rules":"","trackingtag":"group"},"type":"in_service"})");
}

}  // namespace
}  // namespace pdx
