// The rules for the places of a dialog's children.
#include <gtest/gtest.h>

#include <optional>

#include "ui/toolkit/rules/DialogLayout.h"
#include "ui/toolkit/rules/PendingPositions.h"

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

TEST(LayoutRecords, AreEmptyForAMalformedResource) {
    EXPECT_TRUE(parseLayoutRecords({}).empty());
    EXPECT_TRUE(parseLayoutRecords(bytesOf({0})).empty()) << "a version and nothing else";
    EXPECT_TRUE(parseLayoutRecords(bytesOf({0}, 1)).empty());
    EXPECT_TRUE(parseLayoutRecords(bytesOf({1, 0, 50, 100, 50})).empty()) << "another version";
    EXPECT_TRUE(parseLayoutRecords(bytesOf({0x0100, 0, 50, 100, 50})).empty()) << "another version's high byte";
    for (const size_t cutOff : {1, 2, 3, 4, 5, 6, 7})
        EXPECT_TRUE(parseLayoutRecords(bytesOf({0, 1, 2, 3, 4, 5, 6, 7, 8}, cutOff)).empty()) << cutOff;
}

constexpr uint32_t newEntry = 0x207;

struct Request {
    std::optional<Box> box;
    uint32_t flags = 0;
    void* insertAfter = nullptr;
};

struct MergeCase {
    const char* name;
    std::vector<Request> requests;
    uint32_t flags;
    Box box;
    bool inserted = false;
};

TEST(PendingPositions, MergeTheRequestsForOneControl) {
    int window = 0;
    const Box first = {1, 2, 30, 40}, second = {5, 6, 70, 80};
    const MergeCase cases[] = {
        {"nothing", {{}}, newEntry, {}},
        {"a rectangle", {{first, 0}}, 0x204, first},
        {"a second rectangle replaces the first", {{first, 0}, {second, 0}}, 0x204, second},
        {"a null rectangle keeps the one before", {{first, 0}, {std::nullopt, positionShow}}, 0x244, first},
        {"an empty rectangle counts", {{first, 0}, {Box{}, 0}}, 0x204, {}},
        {"show", {{std::nullopt, 0x254}}, 0x257, {}},
        {"hide", {{std::nullopt, 0x294}}, 0x297, {}},
        {"show, then hide", {{std::nullopt, 0x254}, {std::nullopt, 0x294}}, 0x297, {}},
        {"hide, then show", {{std::nullopt, 0x294}, {std::nullopt, 0x254}}, 0x257, {}},
        {"shown and placed, as pages do", {{std::nullopt, 0x254}, {first, 0x214}}, 0x254, first},
        {"flags win over the rectangle of the same call", {{first, positionNoSize}}, 0x205, first},
        {"z order", {{std::nullopt, 0, &window}}, 0x003, {}, true},
        {"z order wins over the flags of the same call", {{std::nullopt, 0x214, &window}}, 0x013, {}, true},
        {"a null z order keeps the one before", {{std::nullopt, 0, &window}, {first, 0}}, 0x000, first, true},
    };
    for (const MergeCase& row : cases) {
        PendingPositions positions;
        for (const Request& request : row.requests)
            positions.queue(1001, request.box ? &*request.box : nullptr, request.flags, request.insertAfter);
        ASSERT_EQ(positions.entries().size(), 1u) << row.name;
        const PendingPosition& entry = positions.entries().front();
        EXPECT_EQ(entry.id, 1001) << row.name;
        EXPECT_EQ(entry.flags, row.flags) << row.name;
        EXPECT_EQ((Box{entry.x, entry.y, entry.width, entry.height}), row.box) << row.name;
        EXPECT_EQ(entry.insertAfter, row.inserted ? &window : nullptr) << row.name;
    }
}

}  // namespace
}  // namespace pdx
