// The manager and both back ends, as far as they can be seen without a service.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "config/Settings.h"
#include "platform/Paths.h"
#include "telemetry/TelemetryManager.h"
#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const wchar_t* sessionVariable = L"PDX_INSTALLER_SESSION_ID";

constexpr const char* hash = "0123456789abcdef0123456789abcdef01234567";
int hashesMade = 0;
std::string countedHash() {
    ++hashesMade;
    return hash;
}

void configure(const std::string& settings) {
    std::istringstream stream(settings);
    g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(stream)));
}

TelemetryEvent briskEventOf(const char* name, json params = {}) { return {briskSender, name, std::move(params)}; }

/// As in a process that begins anew.
class TelemetryTest : public testing::Test {
  protected:
    TelemetryTest() { begin(); }
    ~TelemetryTest() override {
        begin();
        g_config.clear();
    }

  private:
    static void begin() {
        releaseTelemetry();
        SetEnvironmentVariableW(sessionVariable, nullptr);
        hashesMade = 0;
    }
};

TEST_F(TelemetryTest, FindsOutOnceWhoSendsToBrisk) {
    const CapturedLog log;
    configure("[app]\nenvironment = 'staging'\ninstallertype = 'thin'\n");
    BriskTelemetrySender first(countedHash);
    first.start("", TelemetryManager("first", countedHash));
    json event = first.prepareEvent(briskEventOf("inst.sess.strt", {{"a", 1}})).event;
    EXPECT_EQ(hashesMade, 0) << "whoever tells an event does not wait for the hash";
    first.identifyMachine(event);
    EXPECT_EQ(event["machash"], hash);

    configure("[app]\nenvironment = 'other'\n[telemetry]\nbrisk.log = true\n");
    BriskTelemetrySender second(countedHash);
    second.start("", TelemetryManager("second", countedHash));
    json later = second.prepareEvent(briskEventOf("inst.sess.strt", {{"a", 1}})).event;
    second.identifyMachine(later);
    later["ts"] = event["ts"];
    EXPECT_EQ(later, event);
    EXPECT_EQ(hashesMade, 1);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TelemetryTest, DropsBadTaxonomiesAndLogsEventsWhereConfigured) {
    const CapturedLog log;
    configure("[telemetry]\nbrisk.log = true\ntally.log = true\n");
    BriskTelemetrySender brisk(countedHash);
    const TelemetryQueueItem kept = brisk.prepareEvent({briskSender, "inst.sess.strt", {{"bad", "\xFF"}}, true});
    EXPECT_TRUE(kept.urgent);
    const TelemetryQueueItem dropped = brisk.prepareEvent(briskEventOf("inst.sess"));
    EXPECT_THAT(dropped.event, IsEmpty());
    TallyTelemetrySender tally;
    json event = tally.prepareEvent({tallySender, "installer", {{"core", "x"}}}).event;

    std::vector<LogEntry> lines = log.take();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].function, "BriskTelemetrySender::prepareEvent");
    EXPECT_THAT(lines[0].message, testing::StartsWith("[BrIsK]: {\"app\":\"kestrel-installer\","));
    EXPECT_THAT(lines[0].message, testing::HasSubstr("\"bad\":\"\xEF\xBF\xBD\""));
    EXPECT_EQ(lines[1], (LogEntry{logInfo, "BriskTelemetrySender::prepareEvent", "Bad taxonomy inst.sess"}));
    EXPECT_EQ(lines[2], (LogEntry{logInfo, "BriskTelemetrySender::prepareEvent", "[BrIsK]: {}"}));
    EXPECT_EQ(lines[3], (LogEntry{logInfo, "TallyTelemetrySender::prepareEvent", "[TALLY]: " + event.dump()}));
}

}  // namespace
}  // namespace pdx
