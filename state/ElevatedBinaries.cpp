#include "state/ElevatedBinaries.h"

#include <array>

#include "config/Settings.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/OpenFiles.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "state/FileLocks.h"
#include "state/rules/FinalPath.h"
#include "state/SignatureTrust.h"

namespace pdx {
namespace {

constexpr const wchar_t* plantedLibrary = L"version.dll";

bool lockSignedFile(std::vector<FileHandle>& lockedFiles, const std::wstring& path) {
    const std::wstring finalPrefix = GetFinalPath(getSessionTempPath());
    const HANDLE file = finalPrefix.empty()
                            ? INVALID_HANDLE_VALUE
                            : LockFile(lockedFiles, path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, finalPrefix);
    // Where the locked file lies: a link above the temporary folder may lead elsewhere by now.
    const std::wstring locked = file == INVALID_HANDLE_VALUE ? std::wstring() : finalPathOf(file);
    if (locked.empty()) {
        PDX_LOG(logInfo, "LockElevatedBinaries", "Failed to lock %ls", path);
        return false;
    }
    if (isValidPalisadeCertificate(locked.substr(finalPathStart.size()))) return true;
    if (!g_configurable) return false;
    PDX_LOG(logInfo, "LockElevatedBinaries", "Overriding signature verification failure for %ls", path);
    return true;
}

}  // namespace

bool ensureElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                            const std::wstring& executable) {
    // Without a folder there is no place to put anything in.
    return (folder.empty() || copyIfMissing(getModuleFilePath(plantedLibrary), appendPath(folder, plantedLibrary))) &&
           LockElevatedBinaries(lockedFiles, folder, executable);
}

bool LockElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                          const std::wstring& executable) {
    if (executable.empty()) {
        PDX_LOG(logInfo, "LockElevatedBinaries", "Failed to determine elevated bootstrapper path");
        return false;
    }
    bool locked = true;
    for (const std::wstring& name : {executable, std::wstring(plantedLibrary)})
        locked &= lockSignedFile(lockedFiles, appendPath(folder, name));
    return locked;
}

std::wstring elevatedFolderOf(const std::wstring& libraryFolder) {
    constexpr std::wstring_view own = L"\\.ba";
    return libraryFolder.ends_with(own) ? libraryFolder.substr(0, libraryFolder.size() - own.size()) + L"\\.be"
                                        : std::wstring();
}

}  // namespace pdx
