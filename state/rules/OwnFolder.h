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

/// Whether a folder can be a client's own: a full path below a drive, with no part that leads elsewhere ("..", "."),
/// and none of the system's folders. A damaged record must not delete a player's drive. Compares ASCII letters without
/// regard to case.
bool isOwnFolder(std::wstring_view folder, std::span<const SystemFolder> systemFolders);
/// The same by final paths in the form VOLUME_NAME_NT ("\Device\HarddiskVolume1\Games"), which volumes without a
/// drive letter have too. A folder of the network is nobody's own.
bool isOwnVolumePath(std::wstring_view path, std::span<const SystemFolder> systemFolders);

}  // namespace pdx
