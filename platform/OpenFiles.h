// Files and folders by their handles: the final path of an open one, and deleting it.
#pragma once

#include <windows.h>

#include <string>

#include "platform/Handles.h"

namespace pdx {

/// ERROR_REPARSE_POINT_ENCOUNTERED, which not every version of the platform's headers has.
inline constexpr DWORD linkEncountered = 4395;
/// For every open with elevated rights: if a link leads to a pipe, its server cannot impersonate this process.
inline constexpr DWORD noImpersonation = SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION;
inline constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Whether an open failed because the path does not exist.
inline bool isMissing(DWORD error) { return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND; }

/// Opens a file, a folder, or a link itself. Links above the entry are followed, so the caller must compare its final
/// path (finalPathOf). No handle on failure, with the last error.
FileHandle openEntry(const std::wstring& path, DWORD access, DWORD share);
/// The same with the rights that deleteByHandle needs and the share mode shareAll.
FileHandle openToDelete(const std::wstring& path);

/// The final path of an open file or folder. The form is VOLUME_NAME_DOS ("\\?\C:\Games") or VOLUME_NAME_NT
/// ("\Device\HarddiskVolume1\Games"), which volumes without a drive letter have too. Empty on failure, with the last
/// error. Wine gives none of more than 260 characters.
std::wstring finalPathOf(HANDLE file, DWORD form = VOLUME_NAME_DOS);

/// Deletes a name of a file, an empty folder or a link itself, read-only or not. Other handles stay valid. Windows 10
/// frees the name at once. Older systems and other file systems free it when those handles are closed; until then its
/// folder cannot be deleted. False on failure, with the last error.
bool deleteByHandle(HANDLE entry);

}  // namespace pdx
