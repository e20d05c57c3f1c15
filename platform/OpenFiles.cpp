#include "platform/OpenFiles.h"

#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

/// Deletes with POSIX semantics, as Windows 10 does by name: the name is free at once, although others may hold the
/// file. Older systems and other file systems refuse it. Not every version of the platform's headers has the constants.
bool deleteAtOnce(HANDLE entry) {
    constexpr auto dispositionEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
    constexpr DWORD deletes = 0x01;
    constexpr DWORD posixSemantics = 0x02;
    constexpr DWORD ignoresReadOnly = 0x10;
    DWORD flags = deletes | posixSemantics | ignoresReadOnly;
    return SetFileInformationByHandle(entry, dispositionEx, &flags, sizeof flags);
}

bool deletePlainly(HANDLE entry) {
    FILE_DISPOSITION_INFO disposition{TRUE};
    return SetFileInformationByHandle(entry, FileDispositionInfo, &disposition, sizeof disposition);
}

bool setAttributes(HANDLE entry, DWORD attributes) {
    FILE_BASIC_INFO basic{};  // a time of 0 is not changed
    basic.FileAttributes = attributes ? attributes : FILE_ATTRIBUTE_NORMAL;
    return SetFileInformationByHandle(entry, FileBasicInfo, &basic, sizeof basic);
}

}  // namespace

FileHandle openEntry(const std::wstring& path, DWORD access, DWORD share) {
    return FileHandle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT | noImpersonation,
                                  nullptr));
}

FileHandle openToDelete(const std::wstring& path) {
    FileHandle entry = openEntry(path, DELETE | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES, shareAll);
    // The folder may grant the right to delete; only the entry grants the right to change attributes.
    if (!entry && GetLastError() == ERROR_ACCESS_DENIED)
        entry = openEntry(path, DELETE | FILE_READ_ATTRIBUTES, shareAll);
    return entry;
}

std::wstring finalPathOf(HANDLE file, DWORD form) {
    wchar_t buffer[pathCapacity];
    // The length without the end mark if the path fits, otherwise the size with it.
    const DWORD length = GetFinalPathNameByHandleW(file, buffer, pathCapacity, form);
    if (length < pathCapacity) return {buffer, length};
    std::wstring path(length, L'\0');
    path.resize(GetFinalPathNameByHandleW(file, path.data(), length, form));
    return path.size() < length ? path : std::wstring();
}

bool deleteByHandle(HANDLE entry) {
    if (deleteAtOnce(entry) || deletePlainly(entry)) return true;
    DWORD error = GetLastError();
    bool deleted = false;
    FILE_BASIC_INFO basic{};
    if (GetFileInformationByHandleEx(entry, FileBasicInfo, &basic, sizeof basic) &&
        (basic.FileAttributes & FILE_ATTRIBUTE_READONLY) &&
        setAttributes(entry, basic.FileAttributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY))) {
        deleted = deletePlainly(entry);
        error = GetLastError();
        // All names of a file share its attributes, and another user may own another name.
        setAttributes(entry, basic.FileAttributes);
    }
    SetLastError(error);
    return deleted;
}

}  // namespace pdx
