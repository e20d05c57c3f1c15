#include "state/FileLocks.h"

#include <optional>
#include <utility>

#include "platform/Errors.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/OpenFiles.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/Text.h"
#include "state/rules/FinalPath.h"

namespace pdx {
namespace {

constexpr int32_t lockTries = 25;
constexpr uint32_t lockDelayMilliseconds = 40;

/// Deletes an entry at the path if its final path is the expected one, else returns the error. An entry that cannot be
/// deleted makes the creation fail.
std::optional<DWORD> clearPlace(const std::wstring& path, const std::wstring& expected) {
    const FileHandle earlier = openToDelete(path);
    if (!earlier) return std::nullopt;
    const std::wstring finalPath = finalPathOf(earlier.get());
    const auto error = lockError(0, finalPath, equalsIgnoreCase(finalPath, expected));
    if (!error) deleteByHandle(earlier.get());
    return error;
}

/// Deletes a file that was created at an unexpected place. Its handle has no right to delete, because that right would
/// keep others from opening the file. So the file is opened again and compared.
void deleteCreated(FileHandle created, const std::wstring& path) {
    BY_HANDLE_FILE_INFORMATION made{};
    BY_HANDLE_FILE_INFORMATION found{};
    if (!GetFileInformationByHandle(created.get(), &made)) return;
    created.reset();
    const FileHandle again = openToDelete(path);
    if (again && GetFileInformationByHandle(again.get(), &found) &&
        found.dwVolumeSerialNumber == made.dwVolumeSerialNumber && found.nFileIndexHigh == made.nFileIndexHigh &&
        found.nFileIndexLow == made.nFileIndexLow)
        deleteByHandle(again.get());
}

/// Opens the file; an error if that fails, the file is a link, or its final path is not the expected one.
std::optional<DWORD> openChecked(FileHandle& file, const std::wstring& path, DWORD access, DWORD share,
                                 DWORD disposition, const std::wstring& expected) {
    if (disposition == CREATE_NEW) {
        if (const auto error = clearPlace(path, expected)) return error;
    }
    file.reset(CreateFileW(path.c_str(), access, share, nullptr, disposition,
                           FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT | noImpersonation, nullptr));
    if (!file) return GetLastError();
    FILE_ATTRIBUTE_TAG_INFO attributes{};
    if (!GetFileInformationByHandleEx(file.get(), FileAttributeTagInfo, &attributes, sizeof attributes))
        return GetLastError();
    const std::wstring finalPath = finalPathOf(file.get());
    const auto error = lockError(attributes.FileAttributes, finalPath, equalsIgnoreCase(finalPath, expected));
    if (error && disposition == CREATE_NEW) deleteCreated(std::move(file), finalPath.empty() ? path : finalPath);
    return error;
}

}  // namespace

HANDLE LockFile(std::vector<FileHandle>& lockedFiles, const std::wstring& path, DWORD access, DWORD share,
                DWORD disposition, const std::wstring& finalPrefix) {
    const std::wstring expected = GetExpectedFinalPath(finalPrefix, path);
    if (expected.empty()) {
        PDX_LOG(logInfo, "LockFile", "Failed to determine expected final path for %ls", path);
        return INVALID_HANDLE_VALUE;
    }
    FileHandle file;
    const auto attempt = [&] {
        const std::optional<DWORD> error = openChecked(file, path, access, share, disposition, expected);
        if (!error) return true;
        file.reset();
        PDX_LOG(logInfo, "LockFile", "Failed to lock file %ls: %s (%08x)", path,
                describeError(static_cast<HRESULT>(*error)), *error);
        return false;
    };
    if (!retryUntil(attempt, lockTries, lockDelayMilliseconds)) return INVALID_HANDLE_VALUE;
    PDX_LOG(logInfo, "LockFile", "Locked %ls", path);
    lockedFiles.push_back(std::move(file));
    return lockedFiles.back().get();
}

std::wstring GetFinalPath(const std::wstring& path) {
    if (path.empty()) return {};
    const FileHandle file = openEntry(path, 0, shareAll);
    std::wstring finalPath = file ? finalPathOf(file.get()) : std::wstring();
    if (finalPath.empty()) {
        const DWORD error = GetLastError();
        PDX_LOG(logInfo, "GetFinalPath", "Failed to get final path for %ls; error=%08x", path, error);
    }
    return finalPath;
}

std::wstring GetExpectedFinalPath(const std::wstring& finalPrefix, const std::wstring& path) {
    ExpectedPath expected = expectedFinalPath(finalPrefix, path, {GetFinalPath, appendPath});
    if (expected.problem == ExpectedPathProblem::badPrefix)
        PDX_LOG(logInfo, "GetExpectedFinalPath", "Bad finalPrefix: %ls", finalPrefix);
    if (expected.problem == ExpectedPathProblem::neverFound)
        PDX_LOG(logInfo, "GetExpectedFinalPath", "Never found temp path prefix for %ls", path);
    return std::move(expected.path);
}

std::wstring getSessionTempPath() {
    std::wstring path = getTempPath();
    DWORD session = 0;
    return ProcessIdToSessionId(GetCurrentProcessId(), &session) ? withoutSessionFolder(std::move(path), session)
                                                                 : path;
}

}  // namespace pdx
