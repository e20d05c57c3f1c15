#include "platform/FolderRemoval.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/OpenFiles.h"
#include "platform/rules/EntryKind.h"
#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

/// Removes a tree, with the tries for each entry.
class TreeRemoval {
  public:
    TreeRemoval(int32_t triesEach, uint32_t delay, const RemovalBounds& ofAll)
        : tries(triesEach), delayMilliseconds(delay), bounds(ofAll) {}

    /// The path that opens an entry, and the final path that the open entry must have.
    struct Place {
        std::wstring path;
        std::wstring finalPath;  ///< in the form VOLUME_NAME_NT

        [[nodiscard]] Place below(std::wstring_view name) const {
            const auto join = [&](const std::wstring& folder) { return (folder + L'\\').append(name); };
            return {join(path), finalPath.empty() ? std::wstring() : join(finalPath)};
        }
    };

    static bool logFailure(const char* kind, const Place& place, DWORD error) {
        PDX_LOG(logInfo, "deleteDirectoryTree", "Failed to remove %s %ls: error=%08x", kind,
                place.path.starts_with(finalPathStart) ? place.path.substr(finalPathStart.size()) : place.path, error);
        return false;
    }

    bool removeFolder(const Place& place) {
        if (depth >= bounds.levels) return logFailure("directory", place, ERROR_FILENAME_EXCED_RANGE);
        ++depth;
        const bool removed = emptyFolder(place) && removeEntry("directory", place);
        --depth;
        return removed;
    }

    /// Empties a folder. True too if the entry is no folder (any more): it is then removed as one entry.
    bool emptyFolder(const Place& place) {
        FileHandle folder;
        DWORD error = ERROR_SUCCESS;
        // Open against renaming, so that its entries keep their expected paths.
        retry([&] {
            folder =
                openEntry(place.path, FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE);
            error = folder ? ERROR_SUCCESS : GetLastError();
            return folder || isMissing(error);
        });
        if (!folder) return isMissing(error) || logFailure("directory", place, error);
        const EntryKind kind = kindOf(folder.get(), place);
        if (kind == EntryKind::elsewhere) return logFailure("directory", place, linkEncountered);
        return kind != EntryKind::folder || removeEntries(folder.get(), place);
    }

  private:
    /// Retries within the bounds of one entry and of all entries; at least one try.
    bool retry(const std::function<bool()>& attempt) {
        const auto counted = [&] {
            const bool done = attempt();
            if (!done) ++failedTries;
            return done;
        };
        return retryUntil(counted, std::clamp(bounds.failedTries - failedTries, 1, std::max(tries, 1)),
                          delayMilliseconds);
    }

    static EntryKind kindOf(HANDLE entry, const Place& place) {
        FILE_ATTRIBUTE_TAG_INFO held{};
        if (!GetFileInformationByHandleEx(entry, FileAttributeTagInfo, &held, sizeof held)) return EntryKind::elsewhere;
        return judgeEntry(held.FileAttributes, held.ReparseTag, finalPathOf(entry, VOLUME_NAME_NT), place.finalPath);
    }

    /// Removes the entries of the open folder, even if its path leads elsewhere meanwhile.
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
                if (++entries > bounds.entries) {
                    PDX_LOG(logInfo, "deleteDirectoryTree", "Gave up after %d entries", bounds.entries);
                    return logFailure("directory", place, ERROR_DIR_NOT_EMPTY);
                }
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
            if (entry && finalPathOf(entry.get(), VOLUME_NAME_NT) != place.finalPath) {
                error = linkEncountered;
                return true;
            }
            const bool removed = entry && deleteByHandle(entry.get());
            error = removed ? ERROR_SUCCESS : GetLastError();
            if (!entry && isMissing(error)) error = ERROR_SUCCESS;
            return error == ERROR_SUCCESS;
        };
        return (retry(attempt) && error == ERROR_SUCCESS) || logFailure(kind, place, error);
    }

    int32_t tries;
    uint32_t delayMilliseconds;
    RemovalBounds bounds;
    int32_t depth = 0;
    int32_t entries = 0;
    int32_t failedTries = 0;
};

}  // namespace

bool deleteDirectoryTree(const FoundFolder& folder, int32_t tries, uint32_t delayMilliseconds,
                         const RemovalBounds& bounds) {
    if (!folder.exists) return true;
    TreeRemoval removal(tries, delayMilliseconds, bounds);
    const TreeRemoval::Place root{folder.path, folder.volumePath};
    if (!folder.isTrusted) return TreeRemoval::logFailure("directory", root, linkEncountered);
    return folder.isLink ? removal.emptyFolder(root) : removal.removeFolder(root);
}

}  // namespace pdx
