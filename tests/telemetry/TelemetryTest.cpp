// The manager and both back ends, as far as they can be seen without a service.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "config/Settings.h"
#include "telemetry/TelemetryManager.h"
#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

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

/// Begins and ends as a new process does.
class TelemetryTest : public testing::Test {
  protected:
    TelemetryTest() {
        releaseTelemetry();
        hashesMade = 0;
    }
    ~TelemetryTest() override {
        releaseTelemetry();
        g_config.clear();
    }
};

TEST_F(TelemetryTest, FindsTheSendersIdentityOnce) {
    const CapturedLog log;
    configure("[app]\nenvironment = 'staging'\ninstallertype = 'thin'\n");
    const TelemetryEvent start = {briskSender, "inst.sess.strt", {{"a", 1}}};
    BriskTelemetrySender first(countedHash);
    first.start("", TelemetryManager("first", countedHash));
    json event = first.prepareEvent(start).event;
    EXPECT_EQ(hashesMade, 0) << "the sender of an event does not wait for the hash";
    first.identifyMachine(event);
    EXPECT_EQ(event["machash"], hash);

    configure("[app]\nenvironment = 'other'\n[telemetry]\nbrisk.log = true\n");
    BriskTelemetrySender second(countedHash);
    second.start("", TelemetryManager("second", countedHash));
    json later = second.prepareEvent(start).event;
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
    EXPECT_TRUE(brisk.prepareEvent({briskSender, "inst.sess.strt", {{"bad", "\xFF"}}, true}).urgent);
    EXPECT_THAT(brisk.prepareEvent({briskSender, "inst.sess", {}}).event, IsEmpty());
    TallyTelemetrySender tally;
    const json event = tally.prepareEvent({tallySender, "installer", {{"core", "x"}}}).event;
    const std::string function = "2 BriskTelemetrySender::prepareEvent ";
    EXPECT_THAT(log.takeTexts(), ElementsAre(AllOf(StartsWith(function + "[BrIsK]: {\"app\":\"kestrel-installer\","),
                                                   HasSubstr("\"bad\":\"\xEF\xBF\xBD\"")),
                                             function + "Bad taxonomy inst.sess", function + "[BrIsK]: {}",
                                             "2 TallyTelemetrySender::prepareEvent [TALLY]: " + event.dump()));
}

}  // namespace
}  // namespace pdx
