// Which recorded folder may be deleted whole.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace pdx {

/// A folder that is not a program's own, nor is any folder above it.
struct SystemFolder {
    std::wstring path;  ///< empty where the system has none
    size_t depth;       ///< of the folders below it, this many levels are not a program's own either
};
inline constexpr size_t allBelow = SIZE_MAX;

/// Whether a path begins at a drive ("D:\Games"), and so on this machine or on a network drive of this session.
bool isDrivePath(std::wstring_view path);

/// Whether a folder can be a client's own: a full path below a drive, with no part that leads elsewhere ("..", ".") or
/// names a stream ("Windows::$INDEX_ALLOCATION" is the folder of that name), and none of the system's folders. A
/// damaged record must not delete a player's drive. Compares ASCII letters without regard to case. Short names
/// ("PROGRA~1") show in final paths only.
bool isOwnFolder(std::wstring_view folder, std::span<const SystemFolder> systemFolders);
/// The same by final paths in the form VOLUME_NAME_NT ("\Device\HarddiskVolume1\Games"), which volumes without a
/// drive letter have too. A folder of the network is nobody's own.
bool isOwnVolumePath(std::wstring_view path, std::span<const SystemFolder> systemFolders);

/// What an account's registry calls one of its folders, in full: "%USERPROFILE%\Music" below that account's profile.
/// Other variables stay as they are, for theirs are the values of another account.
std::wstring inProfile(std::wstring_view folder, const std::wstring& profile);

}  // namespace pdx
