#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "core/engine/rules/RetrySupport.h"
#include "core/rules/DownloadRetry.h"
#include "platform/rules/EngineTypes.h"

namespace pdx {
namespace {

constexpr int32_t hr(uint32_t bits) { return static_cast<int32_t>(bits); }
constexpr int32_t genericFailure = hr(0x80070643);

TEST(RetrySupport, CountsTheSamePackageAndPayload) {
    std::vector<uint32_t> sleeps;
    RetrySupport retry(2, 1000, [&](uint32_t milliseconds) { sleeps.push_back(milliseconds); });
    const int32_t timeout = hr(0x80072ee2);
    retry.start(RetryKind::cache, L"p", L"a");
    EXPECT_EQ(retry.end(RetryKind::cache, L"p", L"a", 0), resultNone);
    EXPECT_EQ(retry.end(RetryKind::cache, L"p", L"b", timeout), resultNone);
    EXPECT_EQ(retry.end(RetryKind::cache, L"q", L"a", timeout), resultNone);
    EXPECT_EQ(retry.end(RetryKind::execute, L"p", L"a", timeout), resultNone);
    EXPECT_EQ(retry.end(RetryKind::cache, L"p", L"a", timeout), resultRetry);
    retry.start(RetryKind::cache, L"p", L"a");
    EXPECT_EQ(retry.end(RetryKind::cache, L"p", L"a", timeout), resultRetry);
    retry.start(RetryKind::cache, L"p", L"a");
    EXPECT_EQ(retry.end(RetryKind::cache, L"p", L"a", timeout), resultNone);
    EXPECT_EQ(sleeps, (std::vector<uint32_t>{1000, 1000}));
    retry.start(RetryKind::cache, L"p", L"b");
    EXPECT_EQ(retry.end(RetryKind::cache, L"p", L"b", timeout), resultRetry);
    retry.start(RetryKind::cache, L"", L"");
    EXPECT_EQ(retry.end(RetryKind::cache, L"p", L"b", timeout), resultNone);
    EXPECT_EQ(sleeps.size(), 2u);
}

TEST(RetrySupport, RetriesTransientErrorsOnly) {
    const std::set<uint32_t> passing = {1303, 1304, 1306, 1307, 1309, 1310, 1311, 1312, 1316, 1317,
                                        1321, 1335, 1402, 1406, 1606, 1706, 1719, 1723, 1923, 1931};
    for (uint32_t code = 0; code < 3000; ++code)
        EXPECT_EQ(isRetriable(RetryKind::execute, genericFailure, code), passing.contains(code)) << code;
    for (const uint32_t status : {0x80070641, 0x80070652}) EXPECT_TRUE(isRetriable(RetryKind::execute, hr(status), 0));
    EXPECT_FALSE(isRetriable(RetryKind::execute, hr(0x80070005), 1303));
    for (const uint32_t status : {0x80070642, 0x80200010, 0x80070002, 0x80072ee7})
        EXPECT_FALSE(isRetriable(RetryKind::cache, hr(status), 0)) << status;
    EXPECT_TRUE(isRetriable(RetryKind::cache, hr(0x80072ee2), 0));
}

TEST(RetrySupport, RemembersTheErrorOfThePackageUnderWay) {
    RetrySupport retry(1, 0, [](uint32_t) {});
    retry.start(RetryKind::execute, L"p", L"");
    retry.errorOccurred(L"other", 1303);
    EXPECT_EQ(retry.end(RetryKind::execute, L"p", L"", genericFailure), resultNone);
    retry.errorOccurred(L"p", 1303);
    EXPECT_EQ(retry.end(RetryKind::execute, L"p", L"", genericFailure), resultRetry);
}

TEST(DownloadRetry, WaitsInStepsOfAQuarterSecondUpToTheDeadline) {
    // A clock that moves only in a sleep, and then by 70 milliseconds more.
    std::chrono::milliseconds time{1000};
    std::vector<int64_t> sleeps;
    const auto sleep = [&](std::chrono::milliseconds length) {
        sleeps.push_back(length.count());
        time += length + std::chrono::milliseconds(70);
    };
    waitBeforeRetry(
        1, [&] { return time; }, sleep, [] { return false; });
    EXPECT_EQ(sleeps, (std::vector<int64_t>{250, 250, 250, 40}));
}

}  // namespace
}  // namespace pdx
