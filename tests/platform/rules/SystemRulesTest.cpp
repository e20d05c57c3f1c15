// What the system answers about disks and subkeys, as values.
#include <gtest/gtest.h>

#include <vector>

#include "platform/rules/DiskFacts.h"
#include "platform/rules/SubKeyWalk.h"

namespace pdx {
namespace {

TEST(DiskNumberOf, TakesWhatStandsBetweenMarkAndComma) {
    const std::pair<const char*, std::optional<std::string>> rows[] = {
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
    for (const auto& [partition, number] : rows) EXPECT_EQ(diskNumberOf(partition), number) << partition;
}

TEST(MediaTypeName, KnowsThreeMedia) {
    const char* const names[] = {"Unspecified", "Unspecified", "Unspecified", "HDD", "SSD", "SCM", "Unspecified"};
    for (int32_t number = 0; number < 7; ++number) EXPECT_STREQ(mediaTypeName(number), names[number]) << number;
    EXPECT_STREQ(mediaTypeName(-1), "Unspecified");
}

TEST(SubKeyWalk, StopsAtTwoErrorsAndPassesOverTheOthers) {
    const struct {
        std::vector<SubKeyAnswer> answers;
        std::vector<std::wstring> seen;
        const char* what;
    } cases[] = {
        {{{259, {}}}, {}, "no subkeys"},
        {{{6, {}}}, {}, "an invalid handle"},
        {{{0, L"a"}, {0, L"b"}, {259, {}}}, {L"a", L"b"}, "two subkeys"},
        {{{0, L"a"}, {6, {}}, {0, L"b"}}, {L"a"}, "a handle closed meanwhile"},
        {{{0, L"a"}, {234, {}}, {0, L"b"}, {259, {}}}, {L"a", L"b"}, "a name that is too long"},
        {{{234, {}}, {5, {}}, {2, {}}, {-1, {}}, {0, L"b"}, {259, {}}}, {L"b"}, "other errors"},
        {{{0, L"stop"}, {0, L"b"}, {259, {}}}, {L"stop"}, "a function that has enough"},
    };
    for (const auto& row : cases) {
        std::vector<std::wstring> seen;
        walkSubKeys([&](uint32_t index) { return row.answers.at(index); },
                    [&](const std::wstring& name) {
                        seen.push_back(name);
                        return name != L"stop";
                    });
        EXPECT_EQ(seen, row.seen) << row.what;
    }
}

}  // namespace
}  // namespace pdx
