#include "state/UpdateCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using testing::ElementsAre;

TEST(UpdateBucket, IsTheSameOnEveryCallAndLogged) {
    const std::string address = getLocalMacAddress();
    EXPECT_EQ(address.find_first_not_of("0123456789abcdef-"), std::string::npos) << address;
    const CapturedLog log;
    const uint32_t bucket = GetUpdateBucket();
    EXPECT_EQ(bucket, updateBucketOf(address));
    EXPECT_EQ(GetUpdateBucket(), bucket);
    const LogEntry line{logInfo, "GetUpdateBucket", "Using bucket value: " + std::to_string(bucket)};
    EXPECT_THAT(log.take(), ElementsAre(line, line));
}

TEST(RecommendedVersion, IsEmptyAndLoggedWithoutAReply) {
    const CapturedLog log;
    // Nobody listens there.
    EXPECT_EQ(GetRecommendedVersion("https://127.0.0.1:1/autopatch/upgrade/buckets/1"), "");
    const LogEntry refused{logInfo, "GetRecommendedVersion", "Error 12029 has occurred.\n"};
    EXPECT_THAT(log.take(), ElementsAre(refused));
    for (const char* url : {"", "no address", "https://127.0.0.1"}) {
        EXPECT_EQ(GetRecommendedVersion(url), "") << url;
        EXPECT_EQ(log.take().size(), 1u) << url;
    }
}

}  // namespace
}  // namespace pdx
