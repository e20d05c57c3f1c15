// Finding a folder that shall be deleted with elevated rights, and which links on the way to it may be followed.
#pragma once

#include <windows.h>

#include <string>

namespace pdx {

/// A folder as a path led to it at one moment. Whatever the path leads to later, what lies at the folder's final path
/// is judged and deleted, and nothing elsewhere. A folder that is renamed into its place meanwhile passes for it:
/// whoever has the right to do that could have done it before.
struct FoundFolder {
    bool exists = false;
    bool isOpen = false;      ///< false if it is there and cannot be looked at
    bool isLink = false;      ///< the path itself is a link to the folder
    bool isTrusted = false;   ///< false if it was not reached by folders and links that may be followed (mayFollow)
    std::wstring path;        ///< opens the folder, with no link on the way if it is trusted ("\\?\D:\Games\Palisade")
    std::wstring volumePath;  ///< its final path in the form VOLUME_NAME_NT; empty if the system gives none
};

/// Follows a path once, by each component: every link on the way is asked for (mayFollow), 63 at most, and the final
/// path of what the path then opens has to be the one that this walk gives. Followed unasked are a drive that stands
/// for a folder, which is a name of this session, and the mount points that the mount manager knows, which only
/// administrators make. On a volume that gives no final paths the links alone are asked for. A path that leads
/// nowhere gives a folder that does not exist. A refusal is logged at INFO as "Not followed with elevated rights: %ls",
/// with the link that it is for, if it is for one.
FoundFolder findFolder(const std::wstring& path);
/// The folder's final path in the form VOLUME_NAME_NT, links followed; empty on failure.
std::wstring volumePathOf(const std::wstring& path);

/// Whether elevated rights may go where a link leads: if its owner owns what it leads to, or everybody does. A link of
/// the system or its administrators proves nothing: whoever may write to a folder of theirs can make a link of it. Such a
/// link is followed only where the access lists of link and holding folder let nobody else change them, as in "Program
/// Files", and if it is a volume's mount point (findFolder).
bool mayFollow(PSID linkOwner, PSID targetOwner);

}  // namespace pdx
