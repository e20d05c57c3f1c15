// Resolves a path by checking and following each link.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/rules/LinkTrust.h"

namespace pdx {

/// The target of a link.
struct LinkTarget {
    std::wstring path;
    bool isRelative = false;  ///< to the folder that holds the link
};

/// Reads the data of a reparse point (FSCTL_GET_REPARSE_POINT, REPARSE_DATA_BUFFER) of a junction, a volume mount point
/// or a symbolic link. Nothing for another tag, and for data shorter than its fields say.
std::optional<LinkTarget> linkTargetOf(std::span<const std::byte> reparseData);

/// The entry at a path, with a link at its end not followed.
struct PathEntry {
    bool isMissing = false;
    bool isLink = false;
    bool isMappedDrive = false;         ///< of a link: a drive that is mapped to a folder, which needs no trust
    LinkTarget target = {};             ///< of a link; the empty path if it cannot be read
    std::wstring finalPath = {};        ///< in the form VOLUME_NAME_NT; empty if there is none
    std::wstring holderFinalPath = {};  ///< of a link: the final path of the folder that holds it
    FileSecurity security = {};
    FileSecurity holderSecurity = {};  ///< of a link
};

enum class WalkResult {
    arrived,
    missing,      ///< a component does not exist
    badPath,      ///< the path, or a link's target, does not begin with a drive or a volume
    refusedLink,  ///< a link that may not be followed, or a component that was exchanged during the walk
    tooLong,      ///< more than mostLinks, as in a cycle, or more than mostComponents
};

struct WalkedPath {
    WalkResult result = WalkResult::badPath;
    std::wstring path;        ///< without links, "\\?\D:\Games\Palisade"; where the walk ended if it did not arrive
    std::wstring finalPath;   ///< the final path that the path must have; empty on a volume without them
    bool endsInLink = false;  ///< the given path's last component is a link
};

/// The system's limit for the reparse points of one path.
inline constexpr int32_t mostLinks = 63;
/// Of a path and of all links on it. The targets that an account gives its links could have thousands.
inline constexpr int32_t mostComponents = 512;

using LookAtPath = std::function<PathEntry(const std::wstring& path)>;
using LinkJudge = std::function<bool(const FileSecurity& link, const FileSecurity& holder, const FileSecurity& target)>;

/// Follows a full path ("D:\Games\Palisade") component by component. Calls `look` for each of them, first for the
/// drive's root, and again for the target of each link. So no path is opened through a link that this walk has not
/// followed itself. A link is judged when its target is reached; a mapped drive is not judged. The resulting path
/// begins with "\\?\" and has no link. It is no proof, because a component can change during the walk. So the caller
/// must compare finalPath with that of the opened folder.
WalkedPath walkLinks(std::wstring_view fullPath, const LookAtPath& look, const LinkJudge& judge = mayFollow);

}  // namespace pdx
