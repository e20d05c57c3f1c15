#include "telemetry/rules/TelemetryBatch.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

using nlohmann::json;

TelemetryQueueItem ordinary(int number) { return {number, false}; }
TelemetryQueueItem urgent(int number) { return {number, true}; }

TEST(TelemetryBatch, TakesAndHoldsBackByTheGate) {
    const struct {
        const char* what;
        json pending;
        std::vector<TelemetryQueueItem> items;
        bool enabled;
        json batch;
        json pendingAfter;
    } cases[] = {
        {"nothing", json::array(), {}, true, json::array(), json::array()},
        {"nothing, shut", json::array(), {}, false, json::array(), json::array()},
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
        EXPECT_TRUE(pending.is_array()) << row.what;
    }
}

}  // namespace
}  // namespace pdx
