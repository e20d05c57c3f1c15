#include "telemetry/rules/TallyEvent.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

using nlohmann::json;

TelemetryEvent event(json params) { return {tallySender, "installer", std::move(params)}; }

TEST(TallyEvent, IsWrittenByteForByte) {
    const std::string core = R"("core":{"en":"installer","s":7,"ts_event":"2024-02-29T23:59:58Z"})";
    const std::string item = R"("item_id":"Bastion.OFR.50.0001234","item_id_type":"offer_id")";
    const std::tuple<const char*, json, std::string> cases[] = {
        {"no attributes", json(), "{" + core + "," + item + "}"},
        {"attributes beside the core",
         {{"status", "begin"}, {"action", "install"}},
         R"({"action":"install",)" + core + "," + item + R"(,"status":"begin"})"},
        {"the core replaced", {{"core", 1}}, R"({"core":1,)" + item + "}"},
        {"the item replaced", {{"item_id", "x"}}, "{" + core + R"(,"item_id":"x","item_id_type":"offer_id"})"},
        {"attributes that are a list", json::array({1}), "{" + core + "," + item + "}"},
        {"attributes that are a text", "text", "{" + core + "," + item + "}"},
    };
    for (const auto& [what, params, written] : cases)
        EXPECT_EQ(tallyEvent(event(params), 7, "2024-02-29T23:59:58Z", tallyItem()).dump(), written) << what;
}

TEST(TallyPost, IsWrittenByteForByte) {
    const json envelope = tallyEnvelope("a-session", "en_US");
    EXPECT_EQ(tallyPost({{{"b", 1}}, {{"a", 2}}}, "a-session", envelope, "2024-02-29T23:59:58Z").dump(),
              R"({"contexts":[{"c_delta":false,"events":[{"b":1},{"a":2}],"pid":"a-session","pidt":"uid"}],)"
              R"("entity_type":"player","et":"client_desktop","loc":"en_US","plat":"pc","rel":"prod",)"
              R"("sid":"a-session","subl":"unknown","subs":"unknown","taxv":"2.0","tid":"kestrel_tundra",)"
              R"("tidt":"service","ts_post":"2024-02-29T23:59:58Z","v":"12.37.0.5294"})");
}

TEST(TallyPost, NamesTheLocaleItsOwnWay) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"en-US", L"en_US"}, {L"zh-Hant-TW", L"zh_Hant-TW"}, {L"fil", L"fil"}, {L"", L""}};
    for (const auto& [locale, text] : cases) EXPECT_EQ(tallyLocale(locale), text);
}

}  // namespace
}  // namespace pdx
