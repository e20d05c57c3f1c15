#include "platform/rules/EntryKind.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(JudgeEntry, ComparesTheFinalPathBeforeAttributesAndTag) {
    constexpr uint32_t directory = 0x10;
    constexpr uint32_t reparsePoint = 0x400;
    constexpr uint32_t junction = 0xA0000003;
    constexpr uint32_t symbolicLink = 0xA000000C;
    constexpr uint32_t cloudFile = 0x9000001A;
    constexpr uint32_t compressed = 0x80000017;
    const wchar_t* const place = L"\\\\?\\C:\\Games\\a";
    using enum EntryKind;
    const struct {
        uint32_t attributes;
        uint32_t tag;
        const wchar_t* finalPath;
        const wchar_t* expected;
        EntryKind kind;
    } rows[] = {
        {0x20, 0, place, place, file},
        {directory | 1, 0, place, place, folder},
        {directory, junction, place, place, folder},  // the tag means nothing without the attribute
        {directory | reparsePoint, junction, place, place, link},
        {reparsePoint, symbolicLink, place, place, link},
        {directory | reparsePoint, 0, place, place, link},
        {directory | reparsePoint, cloudFile, place, place, folder},
        {reparsePoint, compressed, place, place, file},
        {0x20, 0, L"\\\\?\\C:\\Windows\\a", place, elsewhere},
        {directory | reparsePoint, junction, L"\\\\?\\C:\\Windows\\a", place, elsewhere},
        {0x20, 0, L"\\\\?\\C:\\Games\\A", place, elsewhere},
        {0x20, 0, L"", place, elsewhere},
        {0x20, 0, place, L"", elsewhere},
        {0x20, 0, L"", L"", file},
        {directory | reparsePoint, junction, L"", L"", link},
    };
    for (const auto& row : rows)
        EXPECT_EQ(judgeEntry(row.attributes, row.tag, row.finalPath, row.expected), row.kind)
            << row.attributes << ' ' << row.tag << ' ' << row.finalPath;
}

}  // namespace
}  // namespace pdx
