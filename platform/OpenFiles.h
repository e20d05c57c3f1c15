// Files and folders by their handles: where an open one lies, and deleting it.
#pragma once

#include <windows.h>

#include <string>

#include "platform/Handles.h"

namespace pdx {

/// ERROR_REPARSE_POINT_ENCOUNTERED, which not every version of the platform's headers has.
inline constexpr DWORD linkEncountered = 4395;
/// For every open with elevated rights: whoever listens at a pipe that a link leads to may not act for this process.
inline constexpr DWORD noImpersonation = SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION;
inline constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Whether an open failed because nothing is there.
inline bool isMissing(DWORD error) { return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND; }

/// Opens what is there: a file, a folder, or a link itself; links above it are followed, so that the caller compares
/// where the entry lies (finalPathOf). None on failure, with the last error.
FileHandle openEntry(const std::wstring& path, DWORD access, DWORD share);
/// The same with the rights that deleteByHandle needs, shared with everybody.
FileHandle openToDelete(const std::wstring& path);

/// Where an open file or folder lies. The form is VOLUME_NAME_DOS ("\\?\C:\Games") or VOLUME_NAME_NT
/// ("\Device\HarddiskVolume1\Games"), which volumes without a drive letter have too. Empty on failure, with the last
/// error. Wine gives none of more than 260 characters.
std::wstring finalPathOf(HANDLE file, DWORD form = VOLUME_NAME_DOS);

/// Deletes a file under this one of its names, an empty folder or a link itself, read-only or not. Others who hold it
/// open keep what they hold: Windows 10 frees the name at once, older systems and other file systems once they let go,
/// and until then the folder that it lies in cannot be deleted. False on failure, with the last error.
bool deleteByHandle(HANDLE entry);

}  // namespace pdx
