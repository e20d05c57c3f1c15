#include "state/rules/UpdateRules.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <vector>

#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

TEST(UpdateBucket, MatchesTheReferenceGenerator) {
    uint64_t checksum = 0;
    for (uint32_t i = 0; i < 10'000; ++i) {
        const std::string address = fmt::format("02-00-5e-00-{:02x}-{:02x}", i >> 8, i & 0xFF);
        checksum = checksum * 101 + updateBucketOf(address);
    }
    // Worked out by an implementation of the generator that shares nothing with this one.
    EXPECT_EQ(checksum, 0x1E2A94F6024C3318u);
}

TEST(ChooseBucket, RejectsDrawsAboveTheLastWholeMultiple) {
    const std::pair<std::vector<uint32_t>, uint32_t> rows[] = {
        {{0}, 1}, {{4294967199}, 100}, {{4294967200, 4294967295, 41}, 42}};
    for (const auto& [draws, bucket] : rows) {
        size_t taken = 0;
        EXPECT_EQ(chooseBucket([&, &left = draws] { return left.at(taken++); }), bucket);
        EXPECT_EQ(taken, draws.size());
    }
}

TEST(RecommendedVersion, IsEmptyForABadReply) {
    EXPECT_EQ(recommendedVersionOf(R"({"recommended":{"version":"12.38.0.1","x":1},"minimum":{"version":"9"}})"),
              "12.38.0.1");
    const char* const bad[] = {
        "",
        "null",
        R"({"recommended":{}})",
        R"({"recommended":"12.38.0.1"})",
        R"({"recommended":{"version":12}})",
        R"({"Recommended":{"version":"12.38.0.1"}})",
        R"({"recommended":{"version":"12.38.0.1"})",
        R"({"recommended":{"version":"12.38.0.1"}} x)",
        "{\"recommended\":{\"version\":\"\xFF\"}}",
    };
    for (const char* reply : bad) EXPECT_EQ(recommendedVersionOf(reply), "") << reply;
    // The deepest that a reply can be, read and broken off.
    const std::string depth((mostReplyBytes - 50) / 2, '[');
    EXPECT_EQ(recommendedVersionOf(R"({"x":)" + depth + std::string(depth.size(), ']') +
                                   R"(,"recommended":{"version":"1.2.3.4"}})"),
              "1.2.3.4");
    EXPECT_EQ(recommendedVersionOf(depth), "");
}

TEST(UpdateCheck, IsDueForAThinInstallOnly) {
    EXPECT_TRUE(isUpdateCheckDue({}));
    EXPECT_FALSE(isUpdateCheckDue({.action = BOOTSTRAPPER_ACTION_UNINSTALL}));
    EXPECT_FALSE(isUpdateCheckDue({.action = BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED}));
    EXPECT_FALSE(isUpdateCheckDue({.relation = BOOTSTRAPPER_RELATION_UPDATE}));
    EXPECT_TRUE(isUpdateCheckDue({.relation = BOOTSTRAPPER_RELATION_UPGRADE}));
    EXPECT_FALSE(isUpdateCheckDue({.thinInstaller = false}));
    EXPECT_FALSE(isUpdateCheckDue({.skip = true}));
}

TEST(UpdateAddresses, ReplaceTheirPlaceholders) {
    EXPECT_EQ(updatePathOf(7), "/autopatch/upgrade/buckets/7");
    const std::pair<const char*, std::optional<std::string>> rows[] = {
        {"https://a.example/{version}/Setup-{version}.exe", "https://a.example/1.2.3.4/Setup-1.2.3.4.exe"},
        {"https://a.example/%20{version}", "https://a.example/%201.2.3.4"},
        {"https://a.example/{bucket}", std::nullopt},
        {"https://a.example/{", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [addressTemplate, address] : rows)
        EXPECT_EQ(fillVersion(addressTemplate, "1.2.3.4"), address) << addressTemplate;
}

}  // namespace
}  // namespace pdx
