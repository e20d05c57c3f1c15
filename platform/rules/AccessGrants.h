// Who may change what an access list protects.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

namespace pdx {

/// An entry of an access list that allows something.
struct AccessGrant {
    bool toAdministrators = false;  ///< to the system, its administrators or its own installer
    bool forChildrenOnly = false;   ///< inherited by what is made below, and without effect here
    uint32_t rights = 0;
};

/// The rights by which a folder or link can be changed, replaced or moved: writing and appending of data, attributes
/// and extended attributes, deleting it or what it holds, changing its list or owner, and the generic rights that hold
/// one of these.
inline constexpr uint32_t changingRights =
    0x2 | 0x4 | 0x10 | 0x40 | 0x100 | 0x10000 | 0x40000 | 0x80000 | 0x10000000 | 0x40000000;

/// Whether nobody but the system and its administrators can change it. Entries that deny are not regarded.
constexpr bool isHeldByAdministrators(std::span<const AccessGrant> grants) {
    return std::ranges::none_of(grants, [](const AccessGrant& grant) {
        return !grant.toAdministrators && !grant.forChildrenOnly && (grant.rights & changingRights) != 0;
    });
}

}  // namespace pdx
