#include <gtest/gtest.h>

#include <vector>

#include "core/rules/DownloadRetry.h"
#include "core/rules/RetrySupport.h"
#include "platform/rules/EngineTypes.h"

namespace pdx {
namespace {

constexpr int32_t hr(uint32_t bits) { return static_cast<int32_t>(bits); }
constexpr int32_t genericFailure = hr(0x80070643);

TEST(RetrySupport, NeverRetriesAtAMaximumOfZero) {
    RetrySupport retry(0, 1000, [](uint32_t) { FAIL() << "slept"; });
    for (const RetryKind kind : {RetryKind::cache, RetryKind::execute}) {
        retry.start(kind, L"p", L"");
        retry.errorOccurred(L"p", 1303);
        for (const uint32_t status : {0x80070641u, 0x80070652u, 0x80070643u}) {
            EXPECT_TRUE(isRetriable(kind, hr(status), 1303));
            EXPECT_EQ(retry.end(kind, L"p", L"", hr(status)), resultNone);
        }
    }
}

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

TEST(RetrySupport, KnowsWhatIsWorthAnotherTry) {
    for (const uint32_t status : {0x80070642u, 0x80200010u, 0x80070002u, 0x80072ee7u})
        EXPECT_FALSE(isRetriable(RetryKind::cache, hr(status), 0)) << std::hex << status;
    EXPECT_TRUE(isRetriable(RetryKind::cache, hr(0x80072ee2), 0));
    EXPECT_TRUE(isRetriable(RetryKind::execute, hr(0x80070641), 0));
    EXPECT_TRUE(isRetriable(RetryKind::execute, hr(0x80070652), 0));
    EXPECT_FALSE(isRetriable(RetryKind::execute, hr(0x80070005), 1303));
    for (const uint32_t error : {1303, 1304, 1306, 1307, 1309, 1310, 1311, 1312, 1316, 1317,
                                 1321, 1335, 1402, 1406, 1606, 1706, 1719, 1723, 1923, 1931})
        EXPECT_TRUE(isRetriable(RetryKind::execute, genericFailure, error)) << error;
    for (const uint32_t error : {0, 1305, 1313, 1932})
        EXPECT_FALSE(isRetriable(RetryKind::execute, genericFailure, error));
}

TEST(RetrySupport, RemembersTheErrorOfThePackageUnderWay) {
    RetrySupport retry(1, 0, [](uint32_t) {});
    retry.start(RetryKind::execute, L"p", L"");
    retry.errorOccurred(L"other", 1303);
    EXPECT_EQ(retry.end(RetryKind::execute, L"p", L"", genericFailure), resultNone);
    retry.errorOccurred(L"p", 1303);
    EXPECT_EQ(retry.end(RetryKind::execute, L"p", L"", genericFailure), resultRetry);
}

TEST(DownloadRetry, WaitsOneFiveThirtySecondsAndGivesUp) {
    const std::pair<uint32_t, DownloadFailure> rows[] = {
        {0, {1, true, 1}},
        {1, {2, true, 5}},
        {2, {3, true, 30}},
        {3, {0, false, 0}},
    };
    for (const auto& [earlier, result] : rows) {
        const DownloadFailure failure = nextAttempt(earlier);
        EXPECT_EQ(failure.failures, result.failures) << earlier;
        EXPECT_EQ(failure.retry, result.retry) << earlier;
        EXPECT_EQ(failure.waitSeconds, result.waitSeconds) << earlier;
    }
}

TEST(DownloadRetry, KnowsACancel) {
    EXPECT_TRUE(isDownloadCancelled(true, hr(0x80072ee2)));
    EXPECT_TRUE(isDownloadCancelled(false, hr(0x80070642)));
    EXPECT_TRUE(isDownloadCancelled(false, 1602));
    EXPECT_FALSE(isDownloadCancelled(false, hr(0x80072ee2)));
}

/// A clock that only moves when somebody sleeps, plus what a sleep oversleeps.
struct FakeClock {
    std::chrono::milliseconds time{1000};
    std::vector<int64_t> sleeps;
    int64_t oversleep = 0;

    void sleep(std::chrono::milliseconds length) {
        sleeps.push_back(length.count());
        time += length + std::chrono::milliseconds(oversleep);
    }
};

TEST(DownloadRetry, WaitsInStepsOfAQuarterSecond) {
    FakeClock clock;
    waitBeforeRetry(
        1, [&] { return clock.time; }, [&](auto length) { clock.sleep(length); }, [] { return false; });
    EXPECT_EQ(clock.sleeps, (std::vector<int64_t>{250, 250, 250, 250}));
    clock = {};
    clock.oversleep = 70;
    waitBeforeRetry(
        1, [&] { return clock.time; }, [&](auto length) { clock.sleep(length); }, [] { return false; });
    EXPECT_EQ(clock.sleeps, (std::vector<int64_t>{250, 250, 250, 40}));
    clock = {};
    waitBeforeRetry(
        0, [&] { return clock.time; }, [&](auto length) { clock.sleep(length); }, [] { return false; });
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST(DownloadRetry, HearsACancelWithinOneStep) {
    FakeClock clock;
    const auto cancelled = [&] { return clock.sleeps.size() == 3; };
    waitBeforeRetry(
        30, [&] { return clock.time; }, [&](auto length) { clock.sleep(length); }, cancelled);
    EXPECT_EQ(clock.sleeps.size(), 3u);
}

}  // namespace
}  // namespace pdx
