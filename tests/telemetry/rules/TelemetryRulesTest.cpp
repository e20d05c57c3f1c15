// Drives, batches and times, as values.
#include <gtest/gtest.h>

#include "telemetry/rules/InstallRecord.h"
#include "telemetry/rules/TelemetryBatch.h"
#include "telemetry/rules/TimeFormat.h"

namespace pdx {
namespace {

using nlohmann::json;

TelemetryQueueItem ordinary(int number) { return {number, false}; }
TelemetryQueueItem urgent(int number) { return {number, true}; }

TEST(TelemetryBatch, DelaysOrdinaryEventsUntilSendingIsEnabled) {
    const struct {
        const char* what;
        json pending;
        std::vector<TelemetryQueueItem> items;
        bool enabled;
        json batch, pendingAfter;
    } cases[] = {
        {"nothing", json::array(), {}, true, json::array(), json::array()},
        {"shut holds all", {1}, {ordinary(2), ordinary(3)}, false, json::array(), {1, 2, 3}},
        {"urgent overtakes", {1}, {ordinary(2), urgent(3), ordinary(4), urgent(5)}, false, {3, 5}, {1, 2, 4}},
        {"open sends what was held back first", {1, 2}, {ordinary(3), urgent(4)}, true, {1, 2, 3, 4}, json::array()},
        {"open without held-back ones", json::array(), {urgent(1), ordinary(2)}, true, {1, 2}, json::array()},
        {"opening alone", {1, 2}, {}, true, {1, 2}, json::array()},
    };
    for (const auto& row : cases) {
        json pending = row.pending;
        EXPECT_EQ(takeBatch(pending, row.items, row.enabled), row.batch) << row.what;
        EXPECT_EQ(pending, row.pendingAfter) << row.what;
    }
}

TEST(TimeFormat, WritesUtcForBothServices) {
    // Units of 100 nanoseconds since 1601, as the calendar of another library counts them.
    const std::tuple<uint64_t, const char*, const char*> cases[] = {
        {133537247980070000, "2024-02-29T23:59:58.007", "2024-02-29T23:59:58Z"},
        {133537247980079999, "2024-02-29T23:59:58.007", "2024-02-29T23:59:58Z"},
        {116444736000000000, "1970-01-01T00:00:00.000", "1970-01-01T00:00:00Z"},
        {157520159999990000, "2100-02-28T23:59:59.999", "2100-02-28T23:59:59Z"},
        {157520160000000000, "2100-03-01T00:00:00.000", "2100-03-01T00:00:00Z"},
        {441796895999990000, "3000-12-31T23:59:59.999", "3000-12-31T23:59:59Z"},
        // What the calendar does not have.
        {441796896000000000, "", ""},
        {116444735999999999, "", ""},
        {UINT64_MAX, "", ""},
    };
    for (const auto& [time, brisk, tally] : cases) {
        EXPECT_EQ(briskTime(time), brisk) << time;
        EXPECT_EQ(tallyTime(time), tally) << time;
    }
}

}  // namespace
}  // namespace pdx
