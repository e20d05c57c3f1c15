// Events of the catalogue byte for byte, as far as no run is held against them.
#include "core/rules/RunEvents.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

using Json = nlohmann::json;

constexpr RunKind repairRun = {.uninstall = false, .repair = true};

const DownloadFacts download = {"id", "begin", "https://x/\xC3\xBC", 50, 400};
const InstallTelemetry record = {
    .installTime = "now", .installStatus = "new", .path = "custom", .diskMedia = "SSD,HDD", .driveType = "data"};

struct Row {
    TelemetryEvent event;
    int32_t sender;
    const char* name;
    const char* attributes;
};

const Row rows[] = {
    {downloadStarted(repairRun, download).brisk, briskSender, "inst.dnld.strt",
     R"({"byte":0,"link":"https://x/)"
     "\xC3\xBC"
     R"(","strt":"begin","stst":"repair"})"},
    {downloadCancelled(download, downloadCancelWord(true)).tally, tallySender, "download",
     R"({"download_id":"id","item_platform":"pc","status":"cancel","status_code":"user_offline"})"},
    {downloadCancelled(download, downloadCancelWord(false)).brisk, briskSender, "inst.dnld.canc",
     R"({"cnst":"user_action"})"},
    {installRecorded(record), briskSender, "inst.inst.strt",
     R"({"dskm":"SSD,HDD","dtyp":"data","inst":"new","intm":"now","path":"custom"})"},
    {runFinished(repairRun, "begin", "now").brisk, briskSender, "inst.repr.succ",
     R"({"endt":"now","enst":"success","strt":"begin","stst":"repair"})"},
    {runCancelled({.uninstall = true, .repair = true}, "user_action", {}).brisk, briskSender, "inst.uinst.canc",
     R"({"cnst":"user_action"})"},
    {errorEvent("n", {"80070652", "", Operation::none, {}, nullptr},
                {{"auto_retry", "true"}, {"estr", "e"}, {"ectx", 1}}),
     briskSender, "n",
     R"({"auto_retry":"true","ecod":"80070652","ectx":1,"einv":false,"emsg":"system","eopr":0,"estr":"e",)"
     R"("vc10x86ver":"","vc11x86ver":"","vc12x86ver":"","vc14x64ver":"","vc14x86ver":""})"},
};

TEST(RunEvents, MatchTheCatalogueByteForByte) {
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.name) + " " + row.attributes);
        EXPECT_EQ(row.event.sender, row.sender);
        EXPECT_EQ(row.event.name, row.name);
        EXPECT_EQ(row.event.params.dump(), row.attributes);
        EXPECT_FALSE(row.event.urgent);
    }
}

TEST(RunEvents, ReportNoPercentageOfAnEmptyDownload) {
    const EventPair pair = downloadFinished({}, {}, "now");
    EXPECT_TRUE(pair.tally.params["percent"].is_number_float());
    EXPECT_NE(pair.brisk.params["pct"].get<std::string>().find("nan"), std::string::npos);
}

}  // namespace
}  // namespace pdx
