// What the two services are sent, byte for byte.
#include <gtest/gtest.h>

#include "platform/product/InstallerVersion.h"
#include "telemetry/rules/BriskEvent.h"
#include "telemetry/rules/TallyEvent.h"

namespace pdx {
namespace {

using nlohmann::json;

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
        EXPECT_EQ(briskEvent({briskSender, "inst..strt", attributes}, "now", development, briskHeader(machine)).dump(),
                  R"({"app":"kestrel-installer","arch":"AMD64","build":"opt","cntry":"US","envt":"production","g":"",)"
                  R"("ityp":"","lang":"en","m":"inst","machash":"0123456789abcdef0123456789abcdef01234567",)"
                  R"("os":"Win 10",)" +
                      written +
                      R"("plat":"pc","s":"strt","session":"0f8fad5b-d9cb-469f-a165-70867728950e","ts":"now",)"
                      R"("vers":")" +
                      installerVersion + R"("})");
}

TEST(BriskEvent, IsEmptyForABadTaxonomy) {
    const json header = briskHeader(machine);
    for (const char* name : {"", "..", "inst", "inst.sess", "inst.sess.", "inst.sess.strt.", "inst.sess.strt.more"})
        EXPECT_EQ(briskEvent({briskSender, name, {{"a", 1}}}, "now", true, header).dump(), "{}") << name;
}

TEST(TallyEvent, IsWrittenByteForByte) {
    const std::string core = R"("core":{"en":"installer","s":7,"ts_event":"2024-02-29T23:59:58Z"})";
    const std::string item = R"("item_id":"Bastion.OFR.50.0001234","item_id_type":"offer_id")";
    const std::pair<json, std::string> cases[] = {
        {json(), "{" + core + "," + item + "}"},
        {{{"status", "begin"}, {"a", 1}}, R"({"a":1,)" + core + "," + item + R"(,"status":"begin"})"},
        {{{"core", 1}}, R"({"core":1,)" + item + "}"},
        {{{"item_id", "x"}}, "{" + core + R"(,"item_id":"x","item_id_type":"offer_id"})"},
        {json::array({1}), "{" + core + "," + item + "}"},
    };
    for (const auto& [params, written] : cases)
        EXPECT_EQ(tallyEvent({tallySender, "installer", params}, 7, "2024-02-29T23:59:58Z", tallyItem()).dump(),
                  written);
}

TEST(Locale, IsWrittenInTheWayOfEachService) {
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> rows[] = {
        {L"en-US", L"en", L"en_US"}, {L"zh-Hant-TW", L"zh", L"zh_Hant-TW"}, {L"fil", L"fil", L"fil"}, {L"", L"", L""}};
    for (const auto& [locale, brisk, tally] : rows) {
        EXPECT_EQ(briskLanguage(locale), brisk);
        EXPECT_EQ(tallyLocale(locale), tally);
    }
}

}  // namespace
}  // namespace pdx
