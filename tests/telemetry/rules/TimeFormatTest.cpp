#include "telemetry/rules/TimeFormat.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(TimeFormat, WritesUtcForBothServices) {
    // Units of 100 nanoseconds since 1601, as the calendar of another library counts them.
    const struct {
        uint64_t time;
        const char* brisk;
        const char* tally;
    } cases[] = {
        {133537247980070000, "2024-02-29T23:59:58.007", "2024-02-29T23:59:58Z"},
        {133537247980079999, "2024-02-29T23:59:58.007", "2024-02-29T23:59:58Z"},
        {116444736000000000, "1970-01-01T00:00:00.000", "1970-01-01T00:00:00Z"},
        {125963424000000000, "2000-03-01T00:00:00.000", "2000-03-01T00:00:00Z"},
        {157520159999990000, "2100-02-28T23:59:59.999", "2100-02-28T23:59:59Z"},
        {157520160000000000, "2100-03-01T00:00:00.000", "2100-03-01T00:00:00Z"},
        {441796895999990000, "3000-12-31T23:59:59.999", "3000-12-31T23:59:59Z"},
        // What the calendar does not have.
        {441796896000000000, "", ""},
        {116444735999999999, "", ""},
        {0, "", ""},
        {UINT64_MAX, "", ""},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(briskTime(row.time), row.brisk) << row.time;
        EXPECT_EQ(tallyTime(row.time), row.tally) << row.time;
    }
}

TEST(TimeFormat, OffersThePartsByName) {
    EXPECT_EQ(formatTime(133537247980070000, "{year}/{month:02}/{day} {hour}h{min}m{sec}s{ms} {tm:%a %j}"),
              "2024/02/29 23h59m58s7 Thu 060");
}

}  // namespace
}  // namespace pdx
