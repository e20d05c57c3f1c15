// What the services get when posts fail.
#include <gmock/gmock.h>

#include <sstream>

#include "config/Settings.h"
#include "telemetry/TelemetryManager.h"
#include "tests/platform/TestHost.h"

namespace pdx {
namespace {

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
