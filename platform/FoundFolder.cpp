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

/// Opens an entry with the right to read its access list, or without it if that is refused.
FileHandle openToAsk(const std::wstring& path) {
    FileHandle entry = openEntry(path, READ_CONTROL, shareAll);
    if (!entry && GetLastError() == ERROR_ACCESS_DENIED) entry = openEntry(path, 0, shareAll);
    return entry;
}

std::wstring accountText(PSID account) {
    UniqueHandle<LocalMemoryTraits<wchar_t>> text;
    return account && ConvertSidToStringSidW(account, text.put()) ? text.get() : L"";
}

/// Without an owner if the system does not name one.
FileSecurity securityOf(HANDLE file) {
    FileSecurity security;
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR given = nullptr;
    if (GetSecurityInfo(file, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner, nullptr,
                        &list, nullptr, &given) != ERROR_SUCCESS)
        return security;
    const UniqueHandle<LocalMemoryTraits<void>> descriptor(given);
    // Without a list everybody has every right.
    if (!list) security.entries.push_back({std::wstring(everybody), false, false, GENERIC_ALL});
    for (DWORD index = 0; list && index < list->AceCount; ++index) {
        void* entry = nullptr;
        if (!GetAce(list, index, &entry)) return {};
        const auto& header = *static_cast<const ACE_HEADER*>(entry);
        const bool denies = header.AceType == ACCESS_DENIED_ACE_TYPE;
        auto& allowed = *static_cast<ACCESS_ALLOWED_ACE*>(entry);  // one that denies has the same form
        // In another type the account has another place.
        const bool isKnown = denies || header.AceType == ACCESS_ALLOWED_ACE_TYPE;
        security.entries.push_back({isKnown ? accountText(&allowed.SidStart) : std::wstring(), denies,
                                    (header.AceFlags & INHERIT_ONLY_ACE) != 0, allowed.Mask});
    }
    security.owner = accountText(owner);
    return security;
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

/// The entry at a path, for walkLinks. Opens no target of a link, except for a link of the system below Wine.
PathEntry lookAt(const std::wstring& path) {
    PathEntry found;
    const FileHandle entry = openToAsk(path);
    if (!entry) {
        found.isMissing = isMissing(GetLastError());
        return found;
    }
    found.target.path = folderOfDrive(path);
    found.isMappedDrive = !found.target.path.empty();
    found.isLink = found.isMappedDrive;
    if (found.isLink) return found;
    found.finalPath = finalPathOf(entry.get(), VOLUME_NAME_NT);
    found.security = securityOf(entry.get());
    const bool isBelowWine = isLinkBelowWine(path);
    found.isLink = isBelowWine || isTaggedLink(entry.get());
    if (!found.isLink) return found;
    const size_t end = path.rfind(L'\\') + 1;
    const FileHandle holder = openToAsk(path.substr(0, end));
    if (holder) {
        found.holderFinalPath = finalPathOf(holder.get(), VOLUME_NAME_NT);
        found.holderSecurity = securityOf(holder.get());
    }
    if (isBelowWine) {
        // The opened entry is the target: Wine gives neither final path nor owner of the link.
        found.target.path = finalPathOf(entry.get());
        found.finalPath = withoutEndSeparators(found.holderFinalPath) + L'\\' + path.substr(end);
        found.security = found.holderSecurity;
    } else {
        found.target = targetOf(entry.get());
    }
    return found;
}

}  // namespace

FoundFolder findFolder(const std::wstring& path) {
    FoundFolder found;
    found.path = withoutEndSeparators(path);
    if (found.path.empty()) return found;
    WalkedPath walked = walkLinks(fullPathOf(found.path), lookAt);
    found.exists = walked.result != WalkResult::missing;
    if (walked.result == WalkResult::arrived) {
        const FileHandle folder = openToAsk(walked.path);
        found.exists = folder || !isMissing(GetLastError());
        found.isOpen = static_cast<bool>(folder);
        if (!folder) return found;
        found.volumePath = finalPathOf(folder.get(), VOLUME_NAME_NT);
        found.isTrusted = found.volumePath.empty() || found.volumePath == walked.finalPath;
    }
    if (!found.exists) return found;
    found.isLink = walked.endsInLink;
    if (found.isTrusted)
        found.path = std::move(walked.path);
    else
        PDX_LOG(logInfo, "findFolder", "Not followed with elevated rights: %ls", walked.path);
    return found;
}

std::wstring volumePathOf(const std::wstring& path) {
    const auto all = [](const FileSecurity&, const FileSecurity&, const FileSecurity&) { return true; };
    const WalkedPath walked = walkLinks(fullPathOf(path), lookAt, all);
    return walked.result == WalkResult::arrived ? walked.finalPath : std::wstring();
}

}  // namespace pdx
