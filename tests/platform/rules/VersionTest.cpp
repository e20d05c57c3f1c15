#include "platform/rules/Version.h"

#include <gtest/gtest.h>

#include <array>

namespace pdx {
namespace {

TEST(Version, ReadsWhatItCan) {
    const std::pair<const char*, std::array<uint16_t, 4>> rows[] = {
        {"12.37.0.5294", {12, 37, 0, 5294}},
        {"12.37", {12, 37, 0, 0}},
        {"12.37.", {12, 37, 0, 0}},
        {"12..3", {12, 0, 0, 0}},
        {"12,37.0.1", {12, 0, 0, 0}},
        {"1.2.3.4.5", {1, 2, 3, 4}},
        {"1.2.3.4-beta", {1, 2, 3, 4}},
        {"1.70000.0.0", {1, 4464, 0, 0}},
        {"65535.65536.0.99999999999999999999", {65535, 0, 0, 0xFFFF}},
        {" 1. 2.+3.-1", {1, 2, 3, 65535}},
        {"v1.2.3.4", {0, 0, 0, 0}},
        {"1 .2", {1, 0, 0, 0}},
        {"-.1", {0, 0, 0, 0}},
        {"abc", {0, 0, 0, 0}},
        {"", {0, 0, 0, 0}},
    };
    for (const auto& [text, parts] : rows) {
        uint64_t expected = 0;
        for (const uint16_t part : parts) expected = expected << 16 | part;
        EXPECT_EQ(parseVersion64(text), expected) << text;
    }
}

TEST(Version, ComparesStrictlyAndWithoutSign) {
    const std::string current = "12.37.0.5294";
    EXPECT_TRUE(isNewerVersion("12.37.0.5295", current));
    EXPECT_TRUE(isNewerVersion("12.38", current));
    EXPECT_TRUE(isNewerVersion("40000.0.0.0", current));
    EXPECT_FALSE(isNewerVersion(current, current));
    EXPECT_FALSE(isNewerVersion("12.36.65535.65535", current));
    EXPECT_FALSE(isNewerVersion("", current));
    EXPECT_FALSE(isNewerVersion("", ""));
}

TEST(Version, IsWrittenAsFourNumbers) {
    EXPECT_EQ(versionText(0x000C0025000014AE), "12.37.0.5294");
    EXPECT_EQ(versionText(UINT64_MAX), "65535.65535.65535.65535");
}

}  // namespace
}  // namespace pdx
