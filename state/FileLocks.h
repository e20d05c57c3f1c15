// Files kept open so that nobody else writes to, renames or deletes them. Each is proved to lie where its path says.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/Handles.h"

namespace pdx {

/// Opens or creates a file, proves that no component of its path below the trusted folder was a link when it was
/// opened, and puts its handle into the container. finalPrefix is the final path of the trusted folder (GetFinalPath);
/// links above that folder are followed, and with an empty one the whole path is compared. While the container has the
/// handle, others have the access that share allows: with FILE_SHARE_READ they can neither write to, rename nor delete
/// the file. That does not cover a view of the file for writing that somebody mapped before, nor what the path leads to
/// later. With CREATE_NEW what stands there is deleted first, by handle and after its place was proved; a file that is
/// created elsewhere is deleted again. Tries 25 times, with 40 milliseconds after each failed try, each of which is
/// logged at INFO as "Failed to lock file %ls: %s (%08x)" with the system's error: 4395 for a link, 3 if there is no
/// final path, 0 if it differs from the expected one. Success logs "Locked %ls". Returns the handle, which the
/// container owns, or INVALID_HANDLE_VALUE.
HANDLE LockFile(std::vector<FileHandle>& lockedFiles, const std::wstring& path, DWORD access, DWORD share,
                DWORD disposition, const std::wstring& finalPrefix);

/// The final path of a file or folder, beginning with "\\?\"; a link is not followed and gives its own. Empty on
/// failure, which is logged at INFO as "Failed to get final path for %ls; error=%08x", and for an empty path.
std::wstring GetFinalPath(const std::wstring& path);

/// The final path that a path ought to have if no component below the trusted folder is a link; empty if there is none,
/// with "Bad finalPrefix: %ls" or "Never found temp path prefix for %ls" logged at INFO.
std::wstring GetExpectedFinalPath(const std::wstring& finalPrefix, const std::wstring& path);

/// The user's temporary folder with a backslash at its end and without the folder of the terminal session, if it has
/// one; empty on failure.
std::wstring getSessionTempPath();

}  // namespace pdx
