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

/// The rights by which a folder or link can be changed, replaced or moved: writing and appending of data, attributes
/// and extended attributes, deleting it or what it holds, changing its list or owner, and the generic rights that hold
/// one of these.
inline constexpr uint32_t changingRights =
    0x2 | 0x4 | 0x10 | 0x40 | 0x100 | 0x10000 | 0x40000 | 0x80000 | 0x10000000 | 0x40000000;

/// Whether following a link gives nobody a new way to delete its target. An account owns the link or the folder that
/// holds it, or may change one of them. It must belong to the system or its administrators, own the target, or be
/// allowed to delete it, itself or as any user, by a list that denies nothing. Everybody's targets may always be
/// reached.
bool mayFollow(const FileSecurity& link, const FileSecurity& holder, const FileSecurity& target);

}  // namespace pdx
