// Whether a recorded folder is the client's, so that it may be deleted with all its content.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace pdx {

/// A folder of the system or of a user, not of a program; the same holds for all folders above it.
struct SystemFolder {
    std::wstring path;  ///< empty if the system has none
    size_t depth;       ///< levels below it that belong to no program either
};
inline constexpr size_t allBelow = SIZE_MAX;

/// Whether a path begins at a drive ("D:\Games"), which may be a network drive of this session.
bool isDrivePath(std::wstring_view path);

/// Whether a folder can be the client's: a full path below a drive, without "..", "." or a stream's name, and not a
/// system folder. ("Windows::$INDEX_ALLOCATION" is the folder Windows.) A damaged record must not delete a player's
/// drive. Compares ASCII letters without regard to case. Cannot recognise short names ("PROGRA~1"): check the final
/// path too.
bool isOwnFolder(std::wstring_view folder, std::span<const SystemFolder> systemFolders);
/// The same by final paths in the form VOLUME_NAME_NT ("\Device\HarddiskVolume1\Games"), which volumes without a
/// drive letter have too. False for a network folder.
bool isOwnVolumePath(std::wstring_view path, std::span<const SystemFolder> systemFolders);

/// A folder from an account's registry in full: "%USERPROFILE%\Music" below that account's profile. Other variables are
/// not expanded, because this process has the values of another account.
std::wstring inProfile(std::wstring_view folder, const std::wstring& profile);

}  // namespace pdx
