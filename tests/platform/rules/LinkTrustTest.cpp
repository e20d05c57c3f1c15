#include "platform/rules/LinkTrust.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

constexpr wchar_t system[] = L"S-1-5-18";
constexpr wchar_t administrators[] = L"S-1-5-32-544";
constexpr wchar_t users[] = L"S-1-5-11";
constexpr wchar_t everyone[] = L"S-1-1-0";
constexpr wchar_t ann[] = L"S-1-5-21-1-2-3-1001";
constexpr wchar_t bob[] = L"S-1-5-21-1-2-3-1002";
constexpr uint32_t reads = 0x1200A9;
constexpr uint32_t modifies = 0x1301BF;

FileSecurity withList(const wchar_t* owner, AccessEntry entry) {
    return {owner, {{administrators, false, false, 0x1F01FF}, {L"S-1-3-0", false, true, 0x10000000}, std::move(entry)}};
}
FileSecurity readOnlyOf(const wchar_t* owner) { return withList(owner, {users, false, false, reads}); }
/// As a folder of a second drive is by default.
FileSecurity sharedOf(const wchar_t* owner) { return withList(owner, {users, false, false, modifies}); }

TEST(MayFollow, OnlyALinkThatGivesNobodyANewWayToDelete) {
    const FileSecurity denied = {ann, {{bob, true, false, 0x10000}, {users, false, false, modifies}}};
    const FileSecurity unknown = {ann, {{L"", false, false, reads}, {users, false, false, modifies}}};
    const struct {
        const char* what;
        FileSecurity link, holder, target;
        bool follows;
    } rows[] = {
        {"in Program Files", readOnlyOf(administrators), readOnlyOf(system), readOnlyOf(bob), true},
        {"of the administrators, in a folder that users change", readOnlyOf(administrators), sharedOf(administrators),
         readOnlyOf(administrators), false},
        {"of the administrators, changed by users", sharedOf(administrators), readOnlyOf(administrators),
         readOnlyOf(administrators), false},
        {"to what its owner owns", readOnlyOf(ann), readOnlyOf(ann), readOnlyOf(ann), true},
        {"in another's folder", readOnlyOf(ann), readOnlyOf(bob), readOnlyOf(ann), false},
        {"from drive to drive", sharedOf(ann), sharedOf(administrators), sharedOf(bob), true},
        {"made by another with a moved folder", sharedOf(ann), sharedOf(bob), readOnlyOf(ann), false},
        {"to what denies somebody", sharedOf(ann), sharedOf(ann), denied, false},
        {"to what has an entry of an unknown type", sharedOf(ann), sharedOf(ann), unknown, false},
        {"with an entry of an unknown type", {ann, {{L"", false, false, modifies}}}, {ann, {}}, sharedOf(ann), false},
        {"to what others may only make children in",
         sharedOf(ann),
         sharedOf(ann),
         {ann, {{users, false, true, modifies}}},
         false},
        {"to a file system without owners", sharedOf(bob), sharedOf(bob), {everyone, {}}, true},
        {"open to everybody", {ann, {{everyone, false, false, 0x10000000}}}, {ann, {}}, readOnlyOf(ann), false},
        {"without an owner", {L"", {}}, {ann, {}}, {everyone, {}}, false},
        {"of a holder without an owner", {ann, {}}, {L"", {}}, {ann, {}}, false},
        {"to what limits its owner's rights", readOnlyOf(ann), readOnlyOf(ann),
         withList(ann, {L"S-1-3-4", false, false, reads}), false},
        {"to a target without an owner", {ann, {}}, {ann, {}}, {L"", {}}, false},
    };
    for (const auto& row : rows) EXPECT_EQ(mayFollow(row.link, row.holder, row.target), row.follows) << row.what;
    for (uint32_t bit = 1; bit != 0; bit <<= 1) {
        const FileSecurity changed = withList(administrators, {users, false, false, reads | bit});
        EXPECT_EQ(mayFollow(changed, changed, readOnlyOf(bob)), (bit & 0x500D0156) == 0) << std::hex << bit;
    }
}

}  // namespace
}  // namespace pdx
