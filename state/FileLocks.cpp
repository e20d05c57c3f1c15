#include "state/FileLocks.h"

#include <optional>
#include <utility>

#include "platform/Errors.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/rules/Numbers.h"
#include "state/rules/FinalPath.h"

namespace pdx {
namespace {

constexpr int32_t lockTries = 25;
constexpr uint32_t lockDelayMilliseconds = 40;
/// ERROR_REPARSE_POINT_ENCOUNTERED, which not every version of the platform's headers has.
constexpr DWORD linkEncountered = 4395;

std::wstring finalPathOfHandle(HANDLE file) {
    std::wstring path(pathCapacity, L'\0');
    for (int32_t call = 0; call < 2; ++call) {
        // The length without the end mark if it fits, otherwise the size that it takes with it.
        const DWORD length = GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0);
        const bool fits = length < path.size();
        path.resize(length);
        if (fits) return path;
    }
    return {};
}

/// No error if the file is open, is no link and lies at the expected place.
std::optional<DWORD> openChecked(FileHandle& file, const std::wstring& path, DWORD access, DWORD share,
                                 DWORD disposition, const std::wstring& expected) {
    if (disposition == CREATE_NEW) DeleteFileW(path.c_str());
    file.reset(CreateFileW(path.c_str(), access, share, nullptr, disposition,
                           FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!file) return GetLastError();
    FILE_ATTRIBUTE_TAG_INFO attributes{};
    if (!GetFileInformationByHandleEx(file.get(), FileAttributeTagInfo, &attributes, sizeof attributes))
        return GetLastError();
    if (attributes.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) return linkEncountered;
    const std::wstring finalPath = finalPathOfHandle(file.get());
    if (finalPath.empty()) return ERROR_PATH_NOT_FOUND;
    if (!equalsIgnoreCase(finalPath, expected)) return ERROR_SUCCESS;
    return std::nullopt;
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
    const FileHandle file(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                                      nullptr));
    std::wstring finalPath = file ? finalPathOfHandle(file.get()) : std::wstring();
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
