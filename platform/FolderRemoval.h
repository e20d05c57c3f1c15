// Deleting a folder with all that is in it, by handles, so that no link can lead the way elsewhere.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace pdx {

/// A folder as a path led to it at one moment. What is judged and what is deleted is this one, whatever the path leads
/// to later.
struct FoundFolder {
    bool exists = false;
    bool isOpen = false;     ///< false if it is there and cannot be looked at
    bool isLink = false;     ///< the path itself is a link to the folder
    bool isTrusted = true;   ///< false if the link may be somebody's who has no right to the folder (mayFollow)
    std::wstring path;       ///< opens the folder
    std::wstring finalPath;  ///< in the form below; empty if the system gives none
    DWORD form = VOLUME_NAME_DOS;
    std::wstring volumePath;  ///< its final path in the form VOLUME_NAME_NT; empty if the system gives none
};

/// Follows a path once. A path that leads nowhere gives a folder that does not exist. A link above the last component
/// is followed unasked, but not trusted if the folder it leads to has another name.
FoundFolder findFolder(const std::wstring& path);
/// The folder's final path in the form VOLUME_NAME_NT, links followed; empty on failure.
std::wstring volumePathOf(const std::wstring& path);

/// Whether elevated rights may go where a link leads: if its owner owns what it leads to, or everybody does. A link of
/// the system or its administrators proves nothing: whoever may write to a folder of theirs can make a link of it.
bool mayFollow(PSID linkOwner, PSID targetOwner);

/// Deletes a folder and all that is in it, each file and folder with so many tries. True if it is gone, also if it was
/// never there. A folder that was found by a link is emptied and stays, as does the link. Links inside are removed,
/// what they lead to is left alone. Each entry is deleted by a handle whose final path was compared with the folder's.
/// The first entry that stays ends the walk and is logged at INFO as "Failed to remove file %ls: error=%08x" or
/// "Failed to remove directory %ls: error=%08x"; the error is 0000112b (4395) for an entry that a link led to. What
/// went before stays deleted.
bool deleteDirectoryTree(const FoundFolder& folder, int32_t tries, uint32_t delayMilliseconds);

}  // namespace pdx
