// The files that run with elevated rights, locked while they are started. They lie in a folder that programs without
// such rights can write to: whoever swaps one of them, puts a library of the name beside it or a link in its path would
// run elevated. The locks last as long as their handles, and at most as long as this process, which another program of
// the same user can end. They cover the executable and "version.dll"; the engine itself keeps its program from loading
// other libraries of that folder.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Handles.h"

namespace pdx {

/// Puts this library's own "version.dll" beside the executable, for the elevated process loads one of that name, and
/// locks both (LockElevatedBinaries). An existing one is not replaced: its signature decides. False if that failed:
/// nothing may be started elevated then.
bool ensureElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                            const std::wstring& executable);

/// Locks the executable and "version.dll" of the folder (LockFile, for others may read only) and checks that they are
/// signed in the maker's name (isValidPalisadeCertificate, which does not prove that the maker signed them). Each is
/// tried whatever the result of the other; what is locked stays locked, in this order. On a machine that trusts the
/// embedded certificate a signature that fails is only logged. False for an empty executable too, and if the two lie in
/// different folders. Logs at INFO.
bool LockElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                          const std::wstring& executable);

/// The path of the executable that was locked last, by its handle: no link leads elsewhere from it, and it stays valid
/// while the handle is open. Empty if none is locked.
std::wstring lockedExecutable(const std::vector<FileHandle>& lockedFiles);

/// Waits until the program that was started elevated has loaded its libraries: until it has a child process, for the
/// engine's program then starts a copy of itself that does the work, or has ended. Its handle may be null. False when
/// given up, or after the bound, which is logged at INFO. Such a start takes less than a second, and some seconds where
/// a virus scanner reads the program first: 20 seconds are far above both.
bool awaitElevatedStart(HANDLE copy, const std::function<bool()>& isGivenUp, DWORD boundMilliseconds = 20'000);

/// The folder of the elevated engine, "…\.be", beside the folder "…\.ba" that the library lies in; empty if it lies
/// elsewhere. Both without a final separator.
std::wstring elevatedFolderOf(const std::wstring& libraryFolder);

}  // namespace pdx
