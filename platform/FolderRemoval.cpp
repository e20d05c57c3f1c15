#include "platform/FolderRemoval.h"

#include <aclapi.h>

#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/OpenFiles.h"
#include "platform/rules/EntryKind.h"
#include "platform/rules/Numbers.h"
#include "platform/Text.h"

namespace pdx {
namespace {

bool isMissing(DWORD error) { return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND; }

std::wstring withoutEndSeparators(std::wstring path) {
    path.resize(path.find_last_not_of(L"\\/") + 1);
    return path;
}

std::wstring lastComponent(const std::wstring& path) { return path.substr(path.find_last_of(L"\\/") + 1); }

/// Opens with the right to ask for the owner, or without it where that is refused.
FileHandle openToAsk(const std::wstring& path, DWORD flags) {
    for (const DWORD access : {DWORD{READ_CONTROL}, DWORD{0}}) {
        FileHandle file(CreateFileW(path.c_str(), access, shareAll, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS | flags | noImpersonation, nullptr));
        if (file || GetLastError() != ERROR_ACCESS_DENIED) return file;
    }
    return {};
}

/// Whether the path is a link of the system below Wine, which opens what that leads to and gives it no tag. Windows
/// gives every link one.
bool isLinkBelowWine(const std::wstring& path) {
    WIN32_FIND_DATAW entry;
    const FindHandle search(FindFirstFileW(path.c_str(), &entry));
    return search && (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) && entry.dwReserved0 == 0;
}

/// Whether an open entry is a link by its tag.
bool isTaggedLink(HANDLE entry) {
    FILE_ATTRIBUTE_TAG_INFO held{};
    return GetFileInformationByHandleEx(entry, FileAttributeTagInfo, &held, sizeof held) &&
           (held.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) && isLinkTag(held.ReparseTag);
}

/// Whether a folder has the name that the path gives it, be that its short one. A link above it can lead to a folder of
/// any name, by way of a name that is none of a file system.
bool hasNameOf(const std::wstring& finalPath, const std::wstring& path) {
    wchar_t longPath[pathCapacity];
    const DWORD length = GetLongPathNameW(path.c_str(), longPath, pathCapacity);
    const bool known = length > 0 && length < pathCapacity;
    return equalsIgnoreCase(lastComponent(finalPath), lastComponent(known ? std::wstring(longPath, length) : path));
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
    PSID owner = nullptr;  ///< lies in the descriptor
    UniqueHandle<LocalMemoryTraits<void>> descriptor;
};

/// Takes a tree down, with the tries for each entry.
class TreeRemoval {
  public:
    TreeRemoval(DWORD pathForm, int32_t triesEach, uint32_t delay)
        : form(pathForm), tries(triesEach), delayMilliseconds(delay) {}

    /// The path opens an entry, and its final path is where it then has to lie.
    struct Place {
        std::wstring path;
        std::wstring finalPath;

        [[nodiscard]] Place below(std::wstring_view name) const {
            const auto join = [&](const std::wstring& folder) { return (folder + L'\\').append(name); };
            return {join(path), finalPath.empty() ? std::wstring() : join(finalPath)};
        }
    };

    bool removeFolder(const Place& place) {
        // Each level takes some of the thread's stack, and paths can be made that are 16,000 levels deep.
        constexpr int32_t deepest = 500;
        if (depth >= deepest) return logFailure("directory", place, ERROR_FILENAME_EXCED_RANGE);
        ++depth;
        const bool removed = emptyFolder(place) && removeEntry("directory", place);
        --depth;
        return removed;
    }

    /// Empties a folder. True too if it is none (any more): what stands in its place then goes as a whole.
    bool emptyFolder(const Place& place) {
        FileHandle folder;
        DWORD error = ERROR_SUCCESS;
        // Held against being renamed, so that what is in it keeps its expected path.
        retryUntil(
            [&] {
                folder = openEntry(place.path, FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE);
                error = folder ? ERROR_SUCCESS : GetLastError();
                return folder || isMissing(error);
            },
            tries, delayMilliseconds);
        if (!folder) return isMissing(error) || logFailure("directory", place, error);
        switch (kindOf(folder.get(), place)) {
            case EntryKind::elsewhere:
                return logFailure("directory", place, linkEncountered);
            case EntryKind::folder:
                return removeEntries(folder.get(), place);
            case EntryKind::link:
            case EntryKind::file:
                break;
        }
        return true;
    }

  private:
    [[nodiscard]] EntryKind kindOf(HANDLE entry, const Place& place) const {
        FILE_ATTRIBUTE_TAG_INFO held{};
        if (!GetFileInformationByHandleEx(entry, FileAttributeTagInfo, &held, sizeof held)) return EntryKind::elsewhere;
        return judgeEntry(held.FileAttributes, held.ReparseTag, finalPathOf(entry, form), place.finalPath);
    }

    static bool logFailure(const char* kind, const Place& place, DWORD error) {
        constexpr std::wstring_view start = L"\\\\?\\";
        PDX_LOG(logInfo, "deleteDirectoryTree", "Failed to remove %s %ls: error=%08x", kind,
                place.path.starts_with(start) ? place.path.substr(start.size()) : place.path, error);
        return false;
    }

    /// What the open folder itself lists, wherever its path leads meanwhile.
    bool removeEntries(HANDLE folder, const Place& place) {
        std::vector<uint64_t> buffer(4096);
        const auto size = static_cast<DWORD>(buffer.size() * sizeof buffer[0]);
        while (GetFileInformationByHandleEx(folder, FileIdBothDirectoryInfo, buffer.data(), size)) {
            const auto* at = reinterpret_cast<const std::byte*>(buffer.data());
            for (DWORD next = 1; next != 0; at += next) {
                const auto& entry = *reinterpret_cast<const FILE_ID_BOTH_DIR_INFO*>(at);
                next = entry.NextEntryOffset;
                const std::wstring_view name(entry.FileName, entry.FileNameLength / sizeof(wchar_t));
                if (name == L"." || name == L"..") continue;
                const Place below = place.below(name);
                if (!(entry.FileAttributes & FILE_ATTRIBUTE_DIRECTORY ? removeFolder(below)
                                                                      : removeEntry("file", below)))
                    return false;
            }
        }
        const DWORD error = GetLastError();
        return error == ERROR_NO_MORE_FILES || logFailure("directory", place, error);
    }

    /// Deletes a file, an empty folder or a link.
    bool removeEntry(const char* kind, const Place& place) {
        DWORD error = ERROR_SUCCESS;
        const auto attempt = [&] {
            const FileHandle entry = openToDelete(place.path);
            if (entry && finalPathOf(entry.get(), form) != place.finalPath) {
                error = linkEncountered;
                return true;
            }
            const bool removed = entry && deleteByHandle(entry.get());
            error = removed ? ERROR_SUCCESS : GetLastError();
            if (!entry && isMissing(error)) error = ERROR_SUCCESS;
            return error == ERROR_SUCCESS;
        };
        return (retryUntil(attempt, tries, delayMilliseconds) && error == ERROR_SUCCESS) ||
               logFailure(kind, place, error);
    }

    DWORD form;
    int32_t tries;
    uint32_t delayMilliseconds;
    int32_t depth = 0;
};

}  // namespace

bool mayFollow(PSID linkOwner, PSID targetOwner) {
    if (!linkOwner || !targetOwner) return false;
    if (IsWellKnownSid(targetOwner, WinWorldSid)) return true;
    const bool ofSystem =
        IsWellKnownSid(linkOwner, WinBuiltinAdministratorsSid) || IsWellKnownSid(linkOwner, WinLocalSystemSid);
    return !ofSystem && EqualSid(linkOwner, targetOwner);
}

FoundFolder findFolder(const std::wstring& path) {
    FoundFolder found;
    found.path = withoutEndSeparators(path);
    // In this order: whoever puts a link in the folder's place now gets two final paths that differ, by an entry that
    // is no link.
    const FileHandle entry = openToAsk(found.path, FILE_FLAG_OPEN_REPARSE_POINT);
    const FileHandle target = openToAsk(found.path, 0);
    // The empty path is none, and not the current folder.
    found.exists = !found.path.empty() && (target || !isMissing(GetLastError()));
    found.isOpen = static_cast<bool>(target);
    if (!target) return found;

    found.volumePath = finalPathOf(target.get(), VOLUME_NAME_NT);
    found.finalPath = finalPathOf(target.get());
    if (found.finalPath.empty() && !found.volumePath.empty()) {
        found.form = VOLUME_NAME_NT;
        found.finalPath = found.volumePath;
    }
    const bool isLinkOfWine = isLinkBelowWine(found.path);
    found.isLink = !entry || finalPathOf(entry.get(), found.form) != found.finalPath || isLinkOfWine;
    found.isTrusted = found.isLink ? (isLinkOfWine || (entry && isTaggedLink(entry.get()))) &&
                                         mayFollow(Owner(entry.get()).get(), Owner(target.get()).get())
                                   : found.finalPath.empty() || hasNameOf(found.finalPath, found.path);
    if (!found.finalPath.empty())
        found.path = (found.form == VOLUME_NAME_NT ? L"\\\\?\\GLOBALROOT" : L"") + found.finalPath;
    return found;
}

std::wstring volumePathOf(const std::wstring& path) {
    const FileHandle target = path.empty() ? FileHandle() : openToAsk(path, 0);
    return target ? finalPathOf(target.get(), VOLUME_NAME_NT) : std::wstring();
}

bool deleteDirectoryTree(const FoundFolder& folder, int32_t tries, uint32_t delayMilliseconds) {
    if (!folder.exists) return true;
    TreeRemoval removal(folder.form, tries, delayMilliseconds);
    const TreeRemoval::Place root{folder.path, folder.finalPath};
    return folder.isLink ? removal.emptyFolder(root) : removal.removeFolder(root);
}

}  // namespace pdx
