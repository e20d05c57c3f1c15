#include "ui/toolkit/rules/DialogLayout.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

std::vector<std::byte> bytesOf(const std::vector<uint16_t>& words, size_t cutOff = 0) {
    std::vector<std::byte> bytes;
    for (const uint16_t word : words) {
        bytes.push_back(static_cast<std::byte>(word & 0xFF));
        bytes.push_back(static_cast<std::byte>(word >> 8));
    }
    bytes.resize(bytes.size() - cutOff);
    return bytes;
}

TEST(LayoutRecords, StandInTheOrderOfTheResource) {
    const std::vector<LayoutRecord> records = parseLayoutRecords(bytesOf({0, 0, 50, 100, 50, 37, 0x1234, 25, 0}));
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0], (LayoutRecord{.moveX = 0, .moveY = 50, .sizeX = 100, .sizeY = 50}));
    EXPECT_EQ(records[1], (LayoutRecord{.moveX = 37, .moveY = 0x1234, .sizeX = 25, .sizeY = 0}));
}

TEST(LayoutRecords, AreEmptyForAResourceOfAnotherForm) {
    EXPECT_TRUE(parseLayoutRecords({}).empty());
    EXPECT_TRUE(parseLayoutRecords(bytesOf({0})).empty()) << "a version and nothing else";
    EXPECT_TRUE(parseLayoutRecords(bytesOf({0}, 1)).empty());
    EXPECT_TRUE(parseLayoutRecords(bytesOf({1, 0, 50, 100, 50})).empty()) << "another version";
    EXPECT_TRUE(parseLayoutRecords(bytesOf({0x0100, 0, 50, 100, 50})).empty()) << "another version's high byte";
    for (const size_t cutOff : {1, 2, 3, 4, 5, 6, 7})
        EXPECT_TRUE(parseLayoutRecords(bytesOf({0, 1, 2, 3, 4, 5, 6, 7, 8}, cutOff)).empty()) << cutOff;
}

}  // namespace
}  // namespace pdx
