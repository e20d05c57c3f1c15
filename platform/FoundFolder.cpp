#include "platform/FoundFolder.h"

#include <aclapi.h>
#include <sddl.h>
#include <winioctl.h>

#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Log.h"
#include "platform/OpenFiles.h"
#include "platform/rules/AccessGrants.h"
#include "platform/rules/EntryKind.h"
#include "platform/rules/LinkWalk.h"
#include "platform/rules/Numbers.h"
#include "platform/Text.h"

namespace pdx {
namespace {

std::wstring withoutEndSeparators(std::wstring path) {
    path.resize(path.find_last_not_of(L"\\/") + 1);
    return path;
}

/// The path as opening it would interpret it: in full, without blanks and dots at the end.
std::wstring fullPathOf(const std::wstring& path) {
    wchar_t full[pathCapacity];
    const DWORD length = GetFullPathNameW(path.c_str(), pathCapacity, full, nullptr);
    return length < pathCapacity ? std::wstring(full, length) : std::wstring();
}

/// Opens with the right to read the owner, or without it if that is refused.
FileHandle openToAsk(const std::wstring& path, DWORD flags) {
    for (const DWORD access : {DWORD{READ_CONTROL}, DWORD{0}}) {
        FileHandle file(CreateFileW(path.c_str(), access, shareAll, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS | flags | noImpersonation, nullptr));
        if (file || GetLastError() != ERROR_ACCESS_DENIED) return file;
    }
    return {};
}

/// The owner of an open file; null if the system does not name one.
class Owner {
  public:
    explicit Owner(HANDLE file) {
        PSECURITY_DESCRIPTOR given = nullptr;
        if (GetSecurityInfo(file, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr, nullptr,
                            &given) == ERROR_SUCCESS)
            descriptor.reset(given);
        else
            owner = nullptr;
    }
    [[nodiscard]] PSID get() const { return owner; }

  private:
    PSID owner = nullptr;  ///< points into the descriptor
    UniqueHandle<LocalMemoryTraits<void>> descriptor;
};

bool isAdministrators(PSID account) {
    if (!account) return false;
    if (IsWellKnownSid(account, WinBuiltinAdministratorsSid) || IsWellKnownSid(account, WinLocalSystemSid)) return true;
    // TrustedInstaller, to which Windows' own folders belong.
    UniqueHandle<LocalMemoryTraits<void>> installer;
    return ConvertStringSidToSidW(L"S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464", installer.put()) &&
           EqualSid(account, installer.get());
}

/// Whether an open file belongs to the administrators, and nobody else can change it.
bool isHeldByAdministrators(HANDLE file) {
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR given = nullptr;
    if (GetSecurityInfo(file, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner, nullptr,
                        &list, nullptr, &given) != ERROR_SUCCESS)
        return false;
    const UniqueHandle<LocalMemoryTraits<void>> descriptor(given);
    // Without a list everybody has every right.
    if (!list || !isAdministrators(owner)) return false;
    std::vector<AccessGrant> grants;
    for (DWORD index = 0; index < list->AceCount; ++index) {
        void* entry = nullptr;
        if (!GetAce(list, index, &entry)) return false;
        const auto& header = *static_cast<const ACE_HEADER*>(entry);
        if (header.AceType == ACCESS_DENIED_ACE_TYPE) continue;
        auto& allowed = *static_cast<ACCESS_ALLOWED_ACE*>(entry);
        // Of another type the account is elsewhere, and counts as anybody.
        grants.push_back({header.AceType == ACCESS_ALLOWED_ACE_TYPE && isAdministrators(&allowed.SidStart),
                          (header.AceFlags & INHERIT_ONLY_ACE) != 0, allowed.Mask});
    }
    return isHeldByAdministrators(grants);
}

/// Whether the path is a link of the system below Wine. Wine opens its target and gives it no reparse tag; on Windows
/// every link has one.
bool isLinkBelowWine(const std::wstring& path) {
    WIN32_FIND_DATAW entry;
    const FindHandle search(FindFirstFileW(path.c_str(), &entry));
    return search && (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) && entry.dwReserved0 == 0;
}

/// Whether an open entry is a link by its reparse tag.
bool isTaggedLink(HANDLE entry) {
    FILE_ATTRIBUTE_TAG_INFO held{};
    return GetFileInformationByHandleEx(entry, FileAttributeTagInfo, &held, sizeof held) &&
           (held.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) && isLinkTag(held.ReparseTag);
}

LinkTarget targetOf(HANDLE link) {
    std::array<std::byte, MAXIMUM_REPARSE_DATA_BUFFER_SIZE> data;
    DWORD size = 0;
    if (!DeviceIoControl(link, FSCTL_GET_REPARSE_POINT, nullptr, 0, data.data(), data.size(), &size, nullptr))
        return {};
    return linkTargetOf(std::span(data).first(size)).value_or(LinkTarget());
}

/// The folder that a drive is mapped to ("\??\C:\Games"); empty for the drive of a volume, and for any other path.
std::wstring folderOfDrive(const std::wstring& path) {
    constexpr size_t start = 4;  // "\\?\"
    if (path.size() != start + 3) return {};
    wchar_t device[pathCapacity];
    if (QueryDosDeviceW(path.substr(start, 2).c_str(), device, pathCapacity) == 0) return {};
    return std::wstring_view(device).starts_with(L"\\??\\") ? device : L"";
}

/// Whether a link is a mount point that the mount manager knows. Only administrators can make one. Owners cannot decide
/// here: the system owns the volume's root, so mayFollow would refuse every one.
bool isVolumeMount(const std::wstring& path, const LinkTarget& target) {
    std::wstring volume = target.path;  // "\??\Volume{0B5A…}\", for the function "\\?\Volume{0B5A…}\"
    if (!volume.starts_with(L"\\??\\Volume{") || !volume.ends_with(L"}\\")) return false;
    volume[1] = L'\\';
    wchar_t places[pathCapacity];
    DWORD length = 0;
    if (!GetVolumePathNamesForVolumeNameW(volume.c_str(), places, pathCapacity, &length)) return false;
    for (std::wstring_view place = places; !place.empty(); place = place.data() + place.size() + 1)
        if (equalsIgnoreCase(L"\\\\?\\" + std::wstring(place), path + L'\\')) return true;
    return false;
}

/// The entry at a path, for walkLinks.
PathEntry lookAt(const std::wstring& path) {
    PathEntry found;
    const FileHandle entry = openToAsk(path, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!entry) return found;
    found.finalPath = finalPathOf(entry.get(), VOLUME_NAME_NT);
    // Opened once: owner and final path must be of the same target.
    const FileHandle target = openToAsk(path, 0);
    if (target) found.targetFinalPath = finalPathOf(target.get(), VOLUME_NAME_NT);
    found.target.path = folderOfDrive(path);
    if (!found.target.path.empty()) {
        // A name of this session, not a link in a file system with an owner.
        found.isLink = found.mayFollow = true;
    } else if (isLinkBelowWine(path)) {
        found.isLink = true;
        found.target.path = finalPathOf(entry.get());
        // Wine names no owner of the link; the owner of its folder is used.
        const FileHandle holder = openToAsk(path.substr(0, path.rfind(L'\\') + 1), 0);
        found.mayFollow = holder && target && mayFollow(Owner(holder.get()).get(), Owner(target.get()).get());
    } else if (isTaggedLink(entry.get())) {
        found.isLink = true;
        found.target = targetOf(entry.get());
        // The holding folder too: whoever may change that can put another link of the administrators there.
        const FileHandle holder = openToAsk(path.substr(0, path.rfind(L'\\') + 1), 0);
        found.mayFollow = isVolumeMount(path, found.target) ||
                          (isHeldByAdministrators(entry.get()) && isHeldByAdministrators(holder.get())) ||
                          (target && mayFollow(Owner(entry.get()).get(), Owner(target.get()).get()));
    }
    return found;
}

}  // namespace

bool mayFollow(PSID linkOwner, PSID targetOwner) {
    if (!linkOwner || !targetOwner) return false;
    if (IsWellKnownSid(targetOwner, WinWorldSid)) return true;
    return !isAdministrators(linkOwner) && EqualSid(linkOwner, targetOwner);
}

FoundFolder findFolder(const std::wstring& path) {
    FoundFolder found;
    found.path = withoutEndSeparators(path);
    WalkedPath walked = walkLinks(fullPathOf(found.path), lookAt);
    const FileHandle target = openToAsk(found.path, 0);
    found.exists = target || !isMissing(GetLastError());
    found.isOpen = static_cast<bool>(target);
    if (!target) return found;

    found.isLink = walked.endsInLink;
    found.volumePath = finalPathOf(target.get(), VOLUME_NAME_NT);
    found.isTrusted =
        walked.result == WalkResult::arrived && (found.volumePath.empty() || found.volumePath == walked.finalPath);
    if (found.isTrusted)
        found.path = std::move(walked.path);
    else
        PDX_LOG(logInfo, "findFolder", "Not followed with elevated rights: %ls", walked.path);
    return found;
}

std::wstring volumePathOf(const std::wstring& path) {
    const FileHandle target = path.empty() ? FileHandle() : openToAsk(path, 0);
    return target ? finalPathOf(target.get(), VOLUME_NAME_NT) : std::wstring();
}

}  // namespace pdx
