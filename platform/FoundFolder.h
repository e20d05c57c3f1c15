// Finds a folder that shall be deleted with elevated rights, and decides which links to it may be followed.
#pragma once

#include <windows.h>

#include <string>

namespace pdx {

/// A folder as a path led to it at one moment. Only the folder's final path is judged and deleted, even if the path
/// leads elsewhere later. A folder that is renamed to that final path meanwhile is accepted: an account with that right
/// could have renamed it before.
struct FoundFolder {
    bool exists = false;
    bool isOpen = false;      ///< could be opened; it is closed again
    bool isLink = false;      ///< the path itself is a link to the folder
    bool isTrusted = false;   ///< reached by folders and by links that may be followed (mayFollow)
    std::wstring path;        ///< opens the folder; without a link if it is trusted ("\\?\D:\Games\Palisade")
    std::wstring volumePath;  ///< its final path in the form VOLUME_NAME_NT; empty if there is none
};

/// Follows a path once, component by component (walkLinks). The final path of the opened folder must be the result of
/// this walk. A drive mapped to a folder is a name of this session and is followed without a judgement. On a volume
/// without final paths only the links are judged. A path that leads nowhere gives a folder that does not exist. A
/// refusal is logged at INFO as "Not followed with elevated rights: %ls", with the refused link, if there is one.
FoundFolder findFolder(const std::wstring& path);
/// The folder's final path in the form VOLUME_NAME_NT, with all links on the way followed. Empty if one leads to no
/// drive or volume, and on any other failure.
std::wstring volumePathOf(const std::wstring& path);

}  // namespace pdx
