// Resolves a path by checking and following each link.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

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
    bool isLink = false;
    bool mayFollow = false;        ///< of a link: may be followed with elevated rights to targetFinalPath
    std::wstring targetFinalPath;  ///< of a link: the target for which mayFollow was decided
    LinkTarget target;             ///< of a link; the empty path if it cannot be read
    std::wstring finalPath;        ///< in the form VOLUME_NAME_NT; empty if there is none
};

enum class WalkResult {
    arrived,
    badPath,       ///< the path, or a link's target, does not begin with a drive or a volume
    refusedLink,   ///< a link that may not be followed with elevated rights, or that has changed since the check
    tooManyLinks,  ///< more than mostLinks, as in a cycle
};

struct WalkedPath {
    WalkResult result = WalkResult::badPath;
    std::wstring path;        ///< without links, "\\?\D:\Games\Palisade"; where the walk ended if it did not arrive
    std::wstring finalPath;   ///< the final path that the path must have; empty on a volume without them
    bool endsInLink = false;  ///< the given path's last component is a link
};

/// The system's limit for the reparse points of one path.
inline constexpr int32_t mostLinks = 63;

/// Follows a full path ("D:\Games\Palisade") component by component. Calls `look` for each of them, first for the
/// drive's root. The path begins with "\\?\" and has no link before its last component. A missing entry counts as a
/// folder. The result is no proof: a component can change during the walk, so the caller must compare finalPath with
/// the final path of the opened folder.
WalkedPath walkLinks(std::wstring_view fullPath, const std::function<PathEntry(const std::wstring& path)>& look);

}  // namespace pdx
