#include "state/UpdateCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "tests/platform/CapturedLog.h"
#include "tests/platform/TestHost.h"

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

using RecommendedVersionTest = TestHostTest;

TEST_F(RecommendedVersionTest, IsReadFromWhateverReplyCame) {
    const struct {
        const char* query;
        const char* version;
        size_t lines;  ///< of the log
    } cases[] = {
        {R"(body={"recommended":{"version":"13.0.0.1"}})", "13.0.0.1", 0},
        {R"(status=500&body={"recommended":{"version":"13.0.0.1"}})", "13.0.0.1", 0},
        {"body=", "", 1},
        {"body={}", "", 0},
        {R"(body={"recommended":{}})", "", 0},
        {"body=[]", "", 0},
        {"body=13.0.0.1", "", 0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.query);
        const CapturedLog log;
        EXPECT_EQ(GetRecommendedVersion(testHost() + "/update/reply?" + row.query), row.version);
        const std::vector<LogEntry> lines = log.take();
        ASSERT_EQ(lines.size(), row.lines);
        for (const LogEntry& line : lines)
            EXPECT_TRUE(std::regex_match(line.message, std::regex("Error \\d+ has occurred\\.\n"))) << line;
    }
}

}  // namespace
}  // namespace pdx
