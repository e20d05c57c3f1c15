#include "platform/rules/DiskFacts.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(DiskNumberOf, TakesWhatStandsBetweenMarkAndComma) {
    struct Row {
        const char* partition;
        std::optional<std::string> number;
    };
    const Row rows[] = {
        {"Disk #1, Partition #0", "1"},
        {"Disk #12, Partition #0", "12"},
        {"Disk #1, Partition #0, more", "1"},
        {"Harddisk, Disk #1", std::nullopt},  // the first comma stands ahead of the number
        {"Disk #, Partition #0", ""},
        {"Partition #0", std::nullopt},
        {"Partition #0, more", std::nullopt},
        {"Disk #3", std::nullopt},
        {"disk #3, partition #0", std::nullopt},
        {"", std::nullopt},
    };
    for (const Row& row : rows) EXPECT_EQ(diskNumberOf(row.partition), row.number) << row.partition;
}

TEST(MediaTypeName, KnowsThreeMedia) {
    const char* const names[] = {"Unspecified", "Unspecified", "Unspecified", "HDD", "SSD", "SCM", "Unspecified"};
    for (int32_t number = 0; number < 7; ++number) EXPECT_STREQ(mediaTypeName(number), names[number]) << number;
    EXPECT_STREQ(mediaTypeName(-1), "Unspecified");
}

}  // namespace
}  // namespace pdx
