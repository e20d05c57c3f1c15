// What the two services are sent, byte for byte.
#include <gtest/gtest.h>

#include "telemetry/rules/BriskEvent.h"
#include "telemetry/rules/TallyEvent.h"

namespace pdx {
namespace {

using nlohmann::json;

TelemetryEvent event(std::string name, json params = {}) { return {briskSender, std::move(name), std::move(params)}; }

const BriskIdentity machine = {
    .architecture = "AMD64",
    .country = "US",
    .environment = "production",
    .installerType = "",
    .language = "en",
    .machineHash = "0123456789abcdef0123456789abcdef01234567",
    .os = "Win 10",
    .session = "0f8fad5b-d9cb-469f-a165-70867728950e",
};

TEST(BriskEvent, IsWrittenByteForByte) {
    const std::tuple<json, bool, std::string> cases[] = {
        {json(), false, ""},
        {{{"zeta", 1}, {"alpha", "a\"\xC3\xA9"}}, false, "\"param\":{\"alpha\":\"a\\\"\xC3\xA9\",\"zeta\":1},"},
        {json(), true, R"("param":{"is_development":1},)"},
        {{{"is_development", "no"}, {"a", 2}}, true, R"("param":{"a":2,"is_development":"no"},)"},
        {json::array({1}), false, ""},
    };
    for (const auto& [attributes, development, written] : cases)
        EXPECT_EQ(briskEvent(event("inst..strt", attributes), "now", development, briskHeader(machine)).dump(),
                  R"({"app":"kestrel-installer","arch":"AMD64","build":"opt","cntry":"US","envt":"production","g":"",)"
                  R"("ityp":"","lang":"en","m":"inst","machash":"0123456789abcdef0123456789abcdef01234567",)"
                  R"("os":"Win 10",)" +
                      written +
                      R"("plat":"pc","s":"strt","session":"0f8fad5b-d9cb-469f-a165-70867728950e","ts":"now",)"
                      R"("vers":"12.37.0.5294"})");
}

TEST(BriskEvent, IsEmptyForABadTaxonomy) {
    const json header = briskHeader(machine);
    for (const char* name :
         {"", ".", "..", "inst", "inst.sess", "inst.sess.", "inst.sess.strt.", "inst.sess.strt.more"})
        EXPECT_EQ(briskEvent(event(name, {{"a", 1}}), "now", true, header).dump(), "{}") << name;
}

TEST(BriskEvent, TellsTheLanguageOfALocale) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"en-US", L"en"}, {L"zh-Hant-TW", L"zh"}, {L"fil", L"fil"}, {L"", L""}, {L"-US", L""}};
    for (const auto& [locale, language] : cases) EXPECT_EQ(briskLanguage(locale), language);
}

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
    };
    for (const auto& [what, params, written] : cases)
        EXPECT_EQ(tallyEvent({tallySender, "installer", params}, 7, "2024-02-29T23:59:58Z", tallyItem()).dump(),
                  written)
            << what;
}

TEST(TallyPost, NamesTheLocaleItsOwnWay) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"en-US", L"en_US"}, {L"zh-Hant-TW", L"zh_Hant-TW"}, {L"fil", L"fil"}, {L"", L""}};
    for (const auto& [locale, text] : cases) EXPECT_EQ(tallyLocale(locale), text);
}

}  // namespace
}  // namespace pdx
