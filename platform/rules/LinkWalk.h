// Where a path leads if each link on its way is asked for and followed one by one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pdx {

/// Where a link leads.
struct LinkTarget {
    std::wstring path;
    bool isRelative = false;  ///< to the folder that holds the link
};

/// Reads the data of a reparse point (FSCTL_GET_REPARSE_POINT, REPARSE_DATA_BUFFER) of a junction, a volume mount point
/// or a symbolic link. None for another tag, and for data that is too short for what it describes.
std::optional<LinkTarget> linkTargetOf(std::span<const std::byte> reparseData);

/// What lies at a path whose last component was not followed.
struct PathEntry {
    bool isLink = false;
    bool mayFollow = false;        ///< of a link: whether elevated rights may go to targetFinalPath
    std::wstring targetFinalPath;  ///< of a link: where it led when that was asked
    LinkTarget target;             ///< of a link; the empty path if it cannot be read
    std::wstring finalPath;        ///< in the form VOLUME_NAME_NT; empty if the system gives none
};

enum class WalkResult {
    arrived,
    badPath,       ///< the path, or what a link leads to, does not begin with a drive or a volume
    refusedLink,   ///< a link that elevated rights may not follow, or that led elsewhere when that was asked
    tooManyLinks,  ///< more than mostLinks, as in a circle
};

struct WalkedPath {
    WalkResult result = WalkResult::badPath;
    std::wstring path;        ///< without a link, "\\?\D:\Games\Palisade"; where the walk ended if it did not arrive
    std::wstring finalPath;   ///< that the path then has to have; empty on a volume that gives none
    bool endsInLink = false;  ///< the last component of the path that was given is a link
};

/// The system's own bound for the reparse points of one path.
inline constexpr int32_t mostLinks = 63;

/// Follows a full path ("D:\Games\Palisade") component by component. `look` is asked for each of them, the root of the
/// drive first, always by a path that begins with "\\?\" and has no link before its last component. What is not there
/// counts as a folder. The result is no proof by itself: a component can be exchanged during the walk, and so the final
/// path of what the path opens has to be compared with it.
WalkedPath walkLinks(std::wstring_view fullPath, const std::function<PathEntry(const std::wstring& path)>& look);

}  // namespace pdx
