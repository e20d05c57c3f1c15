#include "state/ElevatedBinaries.h"

#include "config/Settings.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/IoBound.h"
#include "platform/Log.h"
#include "platform/OpenFiles.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/Text.h"
#include "state/FileLocks.h"
#include "state/rules/FinalPath.h"
#include "state/SignatureTrust.h"

namespace pdx {
namespace {

constexpr const wchar_t* libraryFile = L"version.dll";
constexpr DWORD startCheckMilliseconds = 100;

bool lockSignedFile(std::vector<FileHandle>& lockedFiles, const std::wstring& path) {
    const std::wstring finalPrefix = GetFinalPath(getSessionTempPath());
    const HANDLE file = finalPrefix.empty()
                            ? INVALID_HANDLE_VALUE
                            : LockFile(lockedFiles, path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, finalPrefix);
    // The locked file's own path: a link above the temporary folder may have changed.
    const std::wstring locked =
        file == INVALID_HANDLE_VALUE ? std::wstring() : withoutFinalPathStart(finalPathOf(file));
    if (locked.empty()) {
        PDX_LOG(logInfo, "LockElevatedBinaries", "Failed to lock %ls", path);
        return false;
    }
    if (isValidPalisadeCertificate(locked)) return true;
    if (!g_configurable) return false;
    PDX_LOG(logInfo, "LockElevatedBinaries", "Overriding signature verification failure for %ls", path);
    return true;
}

bool lieInOneFolder(const FileHandle& one, const FileHandle& other) {
    const std::wstring folder = removeFileSpec(finalPathOf(one.get()));
    return !folder.empty() && equalsIgnoreCase(folder, removeFileSpec(finalPathOf(other.get())));
}

/// When a process was started; 0 if that cannot be asked.
uint64_t startOf(HANDLE process) {
    FILETIME start{}, other{};
    return GetProcessTimes(process, &start, &other, &other, &other) ? fileTimeOf(start) : 0;
}

/// Whether a process runs that this one has started. No program can make itself the child of one with more rights. An
/// orphan whose parent had the same id before is older.
bool hasChild(HANDLE process) {
    const DWORD id = GetProcessId(process);
    ProcessSnapshot snapshot;
    for (PROCESSENTRY32W entry; id != 0 && snapshot.next(entry);) {
        if (entry.th32ParentProcessID != id) continue;
        const Handle child(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, entry.th32ProcessID));
        if (child && startOf(child.get()) >= startOf(process)) return true;
    }
    return false;
}

}  // namespace

bool ensureElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                            const std::wstring& executable) {
    const IoBound bound;
    // Without a folder there is nothing to copy to.
    return (folder.empty() || copyIfMissing(getModuleFilePath(libraryFile), appendPath(folder, libraryFile))) &&
           LockElevatedBinaries(lockedFiles, folder, executable);
}

bool LockElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                          const std::wstring& executable) {
    if (executable.empty()) {
        PDX_LOG(logInfo, "LockElevatedBinaries", "Failed to determine elevated bootstrapper path");
        return false;
    }
    bool locked = true;
    for (const std::wstring& name : {executable, std::wstring(libraryFile)})
        locked &= lockSignedFile(lockedFiles, appendPath(folder, name));
    if (!locked) return false;
    // A link above the temporary folder may have been changed between the two.
    if (lieInOneFolder(*(lockedFiles.end() - 2), lockedFiles.back())) return true;
    PDX_LOG(logInfo, "LockElevatedBinaries", "The locked files lie in different folders");
    return false;
}

std::wstring lockedExecutable(const std::vector<FileHandle>& lockedFiles) {
    return lockedFiles.size() < 2 ? std::wstring() : withoutFinalPathStart(finalPathOf((lockedFiles.end() - 2)->get()));
}

bool awaitElevatedStart(HANDLE copy, const std::function<bool()>& isGivenUp, DWORD boundMilliseconds) {
    if (!copy) return true;
    const ULONGLONG begin = GetTickCount64();
    // Polled, because no event signals the end of the start.
    while (WaitForSingleObject(copy, startCheckMilliseconds) == WAIT_TIMEOUT) {
        if (hasChild(copy)) return true;
        if (isGivenUp()) return false;
        if (GetTickCount64() - begin < boundMilliseconds) continue;
        PDX_LOG(logInfo, "awaitElevatedStart", "The elevated copy has not ended its start in %u ms", boundMilliseconds);
        return false;
    }
    return true;
}

std::wstring elevatedFolderOf(const std::wstring& libraryFolder) {
    constexpr std::wstring_view own = L"\\.ba";
    return libraryFolder.ends_with(own) ? libraryFolder.substr(0, libraryFolder.size() - own.size()) + L"\\.be"
                                        : std::wstring();
}

}  // namespace pdx
