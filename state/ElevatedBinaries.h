// The files that run with elevated rights, held against replacement. They lie in a folder that programs without such
// rights can write to: who swaps one of them, plants a library beside it or puts a link in its path would run elevated.
#pragma once

#include <string>
#include <vector>

#include "platform/Handles.h"

namespace pdx {

/// Puts this library's own "version.dll" beside the executable, for the elevated process loads one of that name, and
/// locks both. An existing one is not replaced: its signature decides. Whether that worked; otherwise nothing may be
/// started elevated.
bool ensureElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                            const std::wstring& executable);

/// Locks the executable and "version.dll" of the folder (LockFile, for others may read only) and checks that they are
/// signed in the maker's name (isValidPalisadeCertificate, which does not prove that the maker signed them). All are
/// tried whatever happened to one; what is locked stays locked. On a machine that trusts the embedded certificate a
/// signature that fails is only logged. False for an empty executable too. Logs at INFO.
bool LockElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                          const std::wstring& executable);

/// The folder of the elevated engine, "…\.be", beside the folder "…\.ba" that the library lies in; empty if it lies
/// elsewhere. Both without a final separator.
std::wstring elevatedFolderOf(const std::wstring& libraryFolder);

}  // namespace pdx
