// What the services get from both back ends.
#include <gmock/gmock.h>

#include <sstream>

#include "config/Settings.h"
#include "telemetry/Locale.h"
#include "telemetry/rules/TallyEvent.h"
#include "telemetry/TelemetryManager.h"
#include "tests/platform/TestHost.h"

namespace pdx {
namespace {

using nlohmann::json;

class WireTest : public TestHostTest {
  protected:
    ~WireTest() override {
        releaseTelemetry();
        g_config.clear();
    }

    /// A manager whose services lie under a path of the test host.
    static std::shared_ptr<TelemetryManager> begin(const std::string& path, const std::string& answer = {}) {
        std::istringstream settings("[telemetry]\nbrisk.url = '" + testHost() + path + "/brisk/telm" + answer +
                                    "'\ntally.url = '" + testHost() + path + "/tallyEvents" + answer + "'\n");
        g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));
        releaseTelemetry();
        const auto manager = std::make_shared<TelemetryManager>("a-session", [] { return std::string(40, 'a'); });
        manager->start();
        g_telemetry.set(manager);
        return manager;
    }
};

TEST_F(WireTest, EachServiceGetsItsOwnForm) {
    begin("/wire/form");
    sendTelemetry(tallySender, "installer", {{"status", "begin"}}, false);
    sendTelemetry(briskSender, "inst.sess.strt", {{"a", "\xC3\xA9"}}, false);
    sendTelemetry(2, "inst.sess.strt", {}, true);
    g_telemetry.get()->setSendingEnabled(true);
    // The manager goes, and with it come the last posts.
    releaseTelemetry();

    const json brisk = requestsTo("/wire/form/brisk/telm", 1);
    ASSERT_EQ(brisk.size(), 1u);
    EXPECT_EQ(brisk[0]["method"], "POST");
    ASSERT_EQ(brisk[0]["body"].size(), 1u);
    EXPECT_EQ(brisk[0]["body"][0]["session"], "a-session");
    EXPECT_EQ(brisk[0]["body"][0]["param"], (json{{"a", "\xC3\xA9"}}));
    const json tally = requestsTo("/wire/form/tallyEvents", 1);
    ASSERT_EQ(tally.size(), 1u);
    EXPECT_EQ(tally[0]["method"], "POST");
    const json& body = tally[0]["body"];
    EXPECT_EQ(body["sid"], "a-session");
    EXPECT_EQ(body["loc"], toUtf8(tallyLocale(userLocale())));
    ASSERT_EQ(body["contexts"][0]["events"].size(), 1u);
    EXPECT_EQ(body["contexts"][0]["events"][0]["core"]["s"], 1);

    const std::tuple<const json&, const char*, const char*> cases[] = {
        {brisk[0]["headers"], "Content-Type", "application/json"},
        {brisk[0]["headers"], "x-bastion-client-version", "12.37.0.5294"},
        {brisk[0]["headers"], "OsVersion", "pc"},
        {brisk[0]["headers"], "x-bastion-client-platform", "pc"},
        {tally[0]["headers"], "Content-Type", "application/json"},
        {tally[0]["headers"], "x-palisade-taxv", "2.0"},
    };
    for (const auto& [headers, name, value] : cases) EXPECT_EQ(headers.value(name, ""), value) << name;
}

TEST_F(WireTest, GoesOnAfterPostsThatFail) {
    for (const char* answer :
         {"?status=500", "?cut=reset", "?cut=close", "?raw=garbage", "?size=100000&cut=close+half-way"}) {
        const auto manager = begin("/wire/fail", answer);
        manager->setSendingEnabled(true);
        const size_t before = requestsTo("/wire/fail", 0).size();
        sendTelemetry(briskSender, "a.b.c", {}, false);
        sendTelemetry(tallySender, "first", {}, false);
        // Both have arrived, and then come the next ones, over connections that may be broken.
        ASSERT_GE(requestsTo("/wire/fail", before + 2).size(), before + 2) << answer;
        sendTelemetry(briskSender, "a.b.d", {}, false);
        sendTelemetry(tallySender, "second", {}, false);
        manager->stop();
        EXPECT_GE(requestsTo("/wire/fail", before + 4).size(), before + 4) << answer;
    }
}

}  // namespace
}  // namespace pdx
