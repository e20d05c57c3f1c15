// Whether a link may be followed with elevated rights.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pdx {

/// An entry of an access list.
struct AccessEntry {
    std::wstring account;  ///< its security identifier as text; empty for an entry of an unknown type
    bool denies = false;
    bool forChildrenOnly = false;  ///< inherited by what is made below, and without effect here
    uint32_t rights = 0;
};

/// The owner and the access list of a file, a folder or a link.
struct FileSecurity {
    std::wstring owner;  ///< empty if the system names none
    std::vector<AccessEntry> entries;
};

/// Every account, in a list and as the owner on file systems without owners.
inline constexpr std::wstring_view everybody = L"S-1-1-0";

/// The rights by which a folder or link can be changed, replaced or moved.
inline constexpr uint32_t changingRights =
    0x2 | 0x4 | 0x10 | 0x100 |  // FILE_WRITE_DATA, FILE_APPEND_DATA, FILE_WRITE_EA, FILE_WRITE_ATTRIBUTES
    0x40 | 0x10000 |            // FILE_DELETE_CHILD, DELETE
    0x40000 | 0x80000 |         // WRITE_DAC, WRITE_OWNER
    0x10000000 | 0x40000000;    // GENERIC_ALL, GENERIC_WRITE, which hold others of these

/// Whether following a link gives nobody a new way to delete its target. This concerns every account that owns the link
/// or its folder, or may change one of them. Each must be the system or an administrator, own the target, or be allowed
/// to delete it. The right to delete must be given to the account or to every user, in a list that denies nothing.
/// Ownership does not count where the list limits the rights of owners. A target that everybody owns may be reached by
/// any link with an owner.
bool mayFollow(const FileSecurity& link, const FileSecurity& holder, const FileSecurity& target);

}  // namespace pdx
