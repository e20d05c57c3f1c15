// The files that run with elevated rights, locked while they are started. Programs without such rights can write to
// their folder. Such a program could replace a file, add a library, or put a link in the path. Its own code would then
// run elevated. The locks last as long as their handles, and end with this process, which another program of the same
// user can end. They cover the executable and "version.dll"; the engine keeps its program from loading other libraries
// of that folder.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Handles.h"

namespace pdx {

/// Copies this library's "version.dll" into the executable's folder, because the elevated process loads one of that
/// name, and locks the executable and that library (LockElevatedBinaries). Does not replace an existing one: its
/// signature decides. If false, nothing may be started elevated.
bool ensureElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                            const std::wstring& executable);

/// Locks the executable and "version.dll" of the folder (LockFile; others may only read) and checks that they are
/// signed in the maker's name. That does not prove that the maker signed them (isValidPalisadeCertificate). Tries both,
/// and keeps what it has locked, in this order. On a machine that trusts the embedded certificate a signature that
/// fails is only logged. False for an empty executable too, and if the two are in different folders. Logs at INFO.
bool LockElevatedBinaries(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                          const std::wstring& executable);

/// The final path of the executable that was locked last, without links; valid while its handle is open. Empty if none
/// is locked.
std::wstring lockedExecutable(const std::vector<FileHandle>& lockedFiles);

/// Waits until the program that was started elevated has loaded its libraries: until it has a child process or has
/// ended. The child is the copy of itself that the engine's program starts for the work. The handle may be null. False
/// when given up, or after the bound, which is logged at INFO. Such a start takes less than a second, or some seconds
/// if a virus scanner reads the program first: 20 seconds are far above both.
bool awaitElevatedStart(HANDLE copy, const std::function<bool()>& isGivenUp, DWORD boundMilliseconds = 20'000);

/// The folder of the elevated engine, "…\.be", for the library's folder "…\.ba"; empty for any other folder. Both
/// without a final separator.
std::wstring elevatedFolderOf(const std::wstring& libraryFolder);

}  // namespace pdx
