#include "platform/Files.h"

#include <windows.h>

#include <shlwapi.h>

#include <string_view>

#include "platform/Handles.h"
#include "platform/Log.h"
#include "platform/PathFunctions.h"
#include "platform/VersionInfo.h"

namespace pdx {
namespace {

/// Deletes by the system's function, with the tries; logs what stays.
bool removeEntry(BOOL(WINAPI* remove)(const wchar_t*), const char* kind, const std::wstring& path, int32_t tries,
                 uint32_t delayMilliseconds) {
    DWORD error = ERROR_SUCCESS;
    const auto removed = [&] {
        if (remove(path.c_str())) return true;
        error = GetLastError();
        return false;
    };
    if (retryUntil(removed, tries, delayMilliseconds)) return true;
    PDX_LOG(logInfo, "deleteDirectoryTree", "Failed to remove %s %ls: error=%08x", kind, path, error);
    return false;
}

/// A folder, or the link that stands in its place, held so that nobody can put another in that place meanwhile.
FileHandle holdFolder(const std::wstring& path) {
    return FileHandle(CreateFileW(path.c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

/// Whether what is held is a link, or cannot be told to be none. Asked of the path too: Wine opens what a link of the
/// system below it leads to.
bool isLink(const std::wstring& path, HANDLE folder) {
    FILE_ATTRIBUTE_TAG_INFO held{};
    return !GetFileInformationByHandleEx(folder, FileAttributeTagInfo, &held, sizeof held) ||
           ((held.FileAttributes | GetFileAttributesW(path.c_str())) & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

/// Empties a folder; the first entry that stays ends it.
bool deleteContents(const std::wstring& path, int32_t tries, uint32_t delayMilliseconds) {
    const std::wstring folder = path.back() == L'\\' || path.back() == L'/' ? path : path + L'\\';
    WIN32_FIND_DATAW entry;
    const FindHandle search(FindFirstFileW((folder + L"*.*").c_str(), &entry));
    if (!search) {
        const DWORD error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
    }
    do {
        const std::wstring_view name = entry.cFileName;
        if (name == L"." || name == L"..") continue;
        const std::wstring entryPath = folder + entry.cFileName;
        const bool removed = entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY
                                 ? deleteDirectoryTree(entryPath, tries, delayMilliseconds)
                                 : removeEntry(DeleteFileW, "file", entryPath, tries, delayMilliseconds);
        if (!removed) return false;
    } while (FindNextFileW(search.get(), &entry));
    return true;
}

}  // namespace

bool fileExists(const std::wstring& path) { return PathFileExistsW(path.c_str()); }

bool copyIfMissing(const std::wstring& source, const std::wstring& target) {
    return fileExists(target) || CopyFileW(source.c_str(), target.c_str(), TRUE);
}

std::wstring getFileDescription(const std::wstring& path) { return VersionInfo(path).text(L"FileDescription"); }

bool retryUntil(const std::function<bool()>& function, int32_t tries, uint32_t delayMilliseconds) {
    for (int32_t attempt = 0; attempt < tries; ++attempt) {
        if (function()) return true;
        Sleep(delayMilliseconds);
    }
    return false;
}

bool deleteDirectoryTree(const std::wstring& path, int32_t tries, uint32_t delayMilliseconds) {
    // Without this the empty path would mean the current folder.
    if (path.empty()) return true;
    FileHandle held;
    DWORD error = ERROR_SUCCESS;
    retryUntil(
        [&] {
            held = holdFolder(path);
            error = held ? ERROR_SUCCESS : GetLastError();
            return error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
        },
        tries, delayMilliseconds);
    if (!held) {
        if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return true;
        PDX_LOG(logInfo, "deleteDirectoryTree", "Failed to remove directory %ls: error=%08x", path, error);
        return false;
    }
    if (!isLink(path, held.get()) && !deleteContents(path, tries, delayMilliseconds)) return false;
    // What is held open keeps the folder's name alive.
    held.reset();
    return removeEntry(RemoveDirectoryW, "directory", path, tries, delayMilliseconds);
}

}  // namespace pdx
