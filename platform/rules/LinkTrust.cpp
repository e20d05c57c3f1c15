#include "platform/rules/LinkTrust.h"

#include <algorithm>

namespace pdx {
namespace {

/// The system, its administrators, and TrustedInstaller, to which Windows' own folders belong.
constexpr std::wstring_view administrators[] = {L"S-1-5-18", L"S-1-5-32-544",
                                                L"S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464"};

/// The groups to which the accounts of all users belong: everybody, and all that have signed in.
bool holdsEveryUser(std::wstring_view account) { return account == everybody || account == L"S-1-5-11"; }

/// Whether the list has an entry for the owner's rights, which then replaces the owner's right to change the list.
bool limitsItsOwner(const FileSecurity& target) {
    return std::ranges::any_of(target.entries, [](const auto& entry) { return entry.account == L"S-1-3-4"; });
}

bool grantsDeleting(const FileSecurity& target, std::wstring_view account) {
    constexpr uint32_t deleting = 0x10000 | 0x10000000;  // DELETE, GENERIC_ALL
    return std::ranges::none_of(target.entries,
                                [](const auto& entry) { return entry.denies || entry.account.empty(); }) &&
           std::ranges::any_of(target.entries, [&](const auto& entry) {
               return (entry.account == account || holdsEveryUser(entry.account)) && !entry.forChildrenOnly &&
                      (entry.rights & deleting) != 0;
           });
}

}  // namespace

bool mayFollow(const FileSecurity& link, const FileSecurity& holder, const FileSecurity& target) {
    if (target.owner.empty()) return false;
    if (target.owner == everybody) return !link.owner.empty();
    const auto mayDelete = [&](std::wstring_view account) {
        return !account.empty() &&
               (std::ranges::find(administrators, account) != std::end(administrators) ||
                (account == target.owner && !limitsItsOwner(target)) || grantsDeleting(target, account));
    };
    const auto onlyTheyMayChange = [&](const FileSecurity& place) {
        return mayDelete(place.owner) && std::ranges::all_of(place.entries, [&](const AccessEntry& entry) {
                   return entry.denies || entry.forChildrenOnly || (entry.rights & changingRights) == 0 ||
                          mayDelete(entry.account);
               });
    };
    return onlyTheyMayChange(link) && onlyTheyMayChange(holder);
}

}  // namespace pdx
