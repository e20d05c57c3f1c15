#include "platform/FolderRemoval.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
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

        void enter(std::wstring_view name) {
            (path += L'\\').append(name);
            if (!finalPath.empty()) (finalPath += L'\\').append(name);
        }
        void leave(size_t nameLength) {
            path.resize(path.size() - nameLength - 1);
            if (!finalPath.empty()) finalPath.resize(finalPath.size() - nameLength - 1);
        }
    };

    static bool logFailure(const char* kind, const Place& place, DWORD error) {
        PDX_LOG(logInfo, "deleteDirectoryTree", "Failed to remove %s %ls: error=%08x", kind,
                place.path.starts_with(finalPathStart) ? place.path.substr(finalPathStart.size()) : place.path, error);
        return false;
    }

    /// Removes all below a place, and with `andItself` the place. Not recursive: a program that may write to the folder
    /// can nest some 16,000 folders, too many for the thread's stack.
    bool remove(Place place, bool andItself) {
        std::vector<Level> levels;
        if (!openLevel(levels, place, 0)) return false;
        while (!levels.empty()) {
            if (!isWithinBounds(place)) return false;
            if (Level& level = levels.back(); !level.folders.empty()) {
                const std::wstring name = std::move(level.folders.back());
                level.folders.pop_back();
                place.enter(name);
                if (!openLevel(levels, place, name.size())) return false;
                continue;
            }
            const size_t nameLength = levels.back().nameLength;
            levels.pop_back();  // closes the folder
            const bool isRoot = levels.empty();
            if ((!isRoot || andItself) && !removeEntry("directory", place)) return false;
            if (!isRoot) place.leave(nameLength);
        }
        return true;
    }

  private:
    /// A folder on the way to the present one.
    struct Level {
        FileHandle folder;  ///< open against renaming, so that its entries keep their expected paths
        size_t nameLength = 0;
        std::vector<std::wstring> folders;  ///< its folders that are still there
    };

    /// Opens a folder and removes its files. Adds a level without content for what is no folder (any more): it is then
    /// removed as one entry.
    bool openLevel(std::vector<Level>& levels, Place& place, size_t nameLength) {
        Level level{{}, nameLength, {}};
        DWORD error = ERROR_SUCCESS;
        retry([&] {
            level.folder =
                openEntry(place.path, FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE);
            error = level.folder ? ERROR_SUCCESS : GetLastError();
            return level.folder || isMissing(error);
        });
        if (!level.folder && !isMissing(error)) return logFailure("directory", place, error);
        if (level.folder) {
            const EntryKind kind = kindOf(level.folder.get(), place);
            if (kind == EntryKind::elsewhere) return logFailure("directory", place, linkEncountered);
            if (kind != EntryKind::folder)
                level.folder.reset();
            else if (!removeFiles(level, place))
                return false;
        }
        levels.push_back(std::move(level));
        return true;
    }

    /// Returns false beyond the bounds, after it has logged that the removal ends.
    bool isWithinBounds(const Place& place) const {
        const std::chrono::milliseconds time = steadyTime() - begin;
        if (entries <= bounds.entries && time < bounds.time) return true;
        PDX_LOG(logInfo, "deleteDirectoryTree", "Gave up after %d entries in %lld ms", entries, time.count());
        return logFailure("directory", place, ERROR_DIR_NOT_EMPTY);
    }

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

    /// Lists the open folder by its handle, removes each file, and collects the folders in `level`. A file whose path
    /// leads elsewhere meanwhile ends the removal (removeEntry).
    bool removeFiles(Level& level, Place& place) {
        while (GetFileInformationByHandleEx(level.folder.get(), FileIdBothDirectoryInfo, buffer.data(), bufferSize)) {
            const auto* at = reinterpret_cast<const std::byte*>(buffer.data());
            for (DWORD next = 1; next != 0; at += next) {
                const auto& entry = *reinterpret_cast<const FILE_ID_BOTH_DIR_INFO*>(at);
                next = entry.NextEntryOffset;
                const std::wstring_view name(entry.FileName, entry.FileNameLength / sizeof(wchar_t));
                if (name == L"." || name == L"..") continue;
                ++entries;
                if (!isWithinBounds(place)) return false;
                if (entry.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                    level.folders.emplace_back(name);
                    continue;
                }
                place.enter(name);
                if (!removeEntry("file", place)) return false;
                place.leave(name.size());
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
            // Only the places are compared, because an entry of any kind may be deleted. A link's target is spared, and
            // a folder with content is refused.
            if (entry && finalPathOf(entry.get(), VOLUME_NAME_NT) != place.finalPath) {
                error = linkEncountered;
                return true;  // no retry
            }
            const bool removed = entry && deleteByHandle(entry.get());
            error = removed ? ERROR_SUCCESS : GetLastError();
            if (!entry && isMissing(error)) error = ERROR_SUCCESS;
            return error == ERROR_SUCCESS;
        };
        return (retry(attempt) && error == ERROR_SUCCESS) || logFailure(kind, place, error);
    }

    static constexpr DWORD bufferSize = 32768;  // bytes

    int32_t tries;
    uint32_t delayMilliseconds;
    RemovalBounds bounds;
    std::vector<uint64_t> buffer =
        std::vector<uint64_t>(bufferSize / sizeof(uint64_t));  ///< for the entries of a folder
    std::chrono::milliseconds begin = steadyTime();
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
    return removal.remove(root, !folder.isLink);
}

}  // namespace pdx
