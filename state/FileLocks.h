// Files kept open so that no other program writes to, renames or deletes them. Each is proved to be at its path.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/Handles.h"

namespace pdx {

/// Opens or creates a file and adds its handle to the container. Proves that no component of its path below the trusted
/// folder was a link when it was opened. finalPrefix is the final path of the trusted folder (GetFinalPath); links
/// above that folder are followed. With an empty finalPrefix the whole path is compared.
///
/// While the handle is open, others have the access that share allows: with FILE_SHARE_READ they can neither write to,
/// rename nor delete the file. That does not cover a writable view that was mapped before, nor a later change of links
/// in the path. With CREATE_NEW an existing entry is deleted first, by handle and after its place was proved. A file
/// that was created elsewhere is deleted again.
///
/// Tries 25 times, with 40 milliseconds after each failure. Logs each failure at INFO as "Failed to lock file %ls: %s
/// (%08x)" with the system's error or lockError's. Success logs "Locked %ls". Returns the handle, which the container
/// owns, or INVALID_HANDLE_VALUE.
HANDLE LockFile(std::vector<FileHandle>& lockedFiles, const std::wstring& path, DWORD access, DWORD share,
                DWORD disposition, const std::wstring& finalPrefix);

/// The final path of a file or folder, beginning with "\\?\"; a link is not followed and gives its own. Empty on
/// failure, which is logged at INFO as "Failed to get final path for %ls; error=%08x", and for an empty path.
std::wstring GetFinalPath(const std::wstring& path);

/// The final path that a path has if no component below the trusted folder is a link. If there is none, empty, and logs
/// "Bad finalPrefix: %ls" or "Never found temp path prefix for %ls" at INFO.
std::wstring GetExpectedFinalPath(const std::wstring& finalPrefix, const std::wstring& path);

/// The user's temporary folder with a backslash at its end, without the folder of the terminal session; empty on
/// failure.
std::wstring getSessionTempPath();

}  // namespace pdx
