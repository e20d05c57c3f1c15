// What the system answers about disks and subkeys, and versions, as values.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "platform/rules/DiskFacts.h"
#include "platform/rules/RecordBounds.h"
#include "platform/rules/SubKeyWalk.h"
#include "platform/rules/Version.h"

namespace pdx {
namespace {

TEST(DiskNumberOf, ReturnsTheTextBetweenMarkAndComma) {
    const std::pair<const char*, std::optional<std::string>> rows[] = {
        {"Disk #12, Partition #0", "12"},
        {"Disk #1, Partition #0, more", "1"},
        {"Harddisk, Disk #1", std::nullopt},  // the first comma is before the number
        {"Disk #, Partition #0", ""},
        {"Partition #0, more", std::nullopt},
        {"Disk #3", std::nullopt},
        {"disk #3, partition #0", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [partition, number] : rows) EXPECT_EQ(diskNumberOf(partition), number) << partition;
}

TEST(SubKeyWalk, StopsAtTwoErrorsAndSkipsTheOthers) {
    const std::pair<std::vector<SubKeyAnswer>, std::vector<std::wstring>> rows[] = {
        {{{259, {}}}, {}},
        {{{6, {}}}, {}},
        {{{0, L"a"}, {0, L"b"}, {259, {}}}, {L"a", L"b"}},
        {{{0, L"a"}, {6, {}}, {0, L"b"}}, {L"a"}},
        {{{0, L"a"}, {234, {}}, {0, L"b"}, {259, {}}}, {L"a", L"b"}},
        {{{234, {}}, {5, {}}, {2, {}}, {-1, {}}, {0, L"b"}, {259, {}}}, {L"b"}},
        {{{0, L"stop"}, {0, L"b"}, {259, {}}}, {L"stop"}},
    };
    for (const auto& [answers, expected] : rows) {
        std::vector<std::wstring> seen;
        walkSubKeys([&list = answers](uint32_t index) { return list.at(index); },
                    [&](const std::wstring& name) {
                        seen.push_back(name);
                        return name != L"stop";
                    });
        EXPECT_EQ(seen, expected);
    }
}

TEST(SubKeyWalk, EndsAtTheBoundOfAnEndlessKey) {
    uint32_t names = 0;
    walkSubKeys(
        [](uint32_t) {
            return SubKeyAnswer{0, L"a"};
        },
        [&](const std::wstring&) { return ++names <= mostSubKeys; });
    EXPECT_EQ(names, mostSubKeys);
}

TEST(CountWithin, CountsNothingOutsideTheRecord) {
    const std::array<std::byte, 13> memory{};
    const auto record = std::span(memory).subspan(1, 10);
    const std::tuple<size_t, size_t, size_t> rows[] = {{0, 1, 0}, {1, 3, 3},  {1, 6, 5},
                                                       {8, 2, 1}, {11, 1, 0}, {12, 1, 0}};
    for (const auto& [at, count, within] : rows) EXPECT_EQ(countWithin(record, &memory[at], 2, count), within) << at;
}

TEST(Version, EndsAtTheFirstNonNumber) {
    const std::pair<const char*, std::array<uint16_t, 4>> rows[] = {
        {"12.37.0.5294", {12, 37, 0, 5294}},
        {"12.37", {12, 37, 0, 0}},
        {"12..3", {12, 0, 0, 0}},
        {"12,37.0.1", {12, 0, 0, 0}},
        {"1.2.3.4.5", {1, 2, 3, 4}},
        {"1.2.3.4-beta", {1, 2, 3, 4}},
        {"1.70000.0.0", {1, 4464, 0, 0}},
        {"65535.65536.0.99999999999999999999", {65535, 0, 0, 0xFFFF}},
        {" 1. 2.+3.-1", {1, 2, 3, 65535}},
        {"v1.2.3.4", {0, 0, 0, 0}},
        {"-.1", {0, 0, 0, 0}},
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
    EXPECT_FALSE(isNewerVersion("", ""));
}

}  // namespace
}  // namespace pdx
