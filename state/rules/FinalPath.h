// The final path that a file must have if its path contains no link, derived without trusting the file.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace pdx {

/// A final path in ordinary form: "C:\Temp\a.log" or "\\server\share\a.log".
std::wstring withoutFinalPathStart(std::wstring_view finalPath);

enum class ExpectedPathProblem {
    none,
    badPrefix,    ///< the prefix is no final path
    neverFound,   ///< no leading part of the path is the prefix
    notJoinable,  ///< a component after the prefix could not be appended
};

struct ExpectedPath {
    std::wstring path;  ///< empty with every problem
    ExpectedPathProblem problem;
};

/// What expectedFinalPath needs of the system.
struct PathSystem {
    /// The final path of an entry, with a link at its end not followed; empty if there is none.
    std::function<std::wstring(const std::wstring& path)> finalPathOf;
    /// A path with one more component; empty on failure.
    std::function<std::wstring(const std::wstring& path, const std::wstring& component)> append;
};

/// The final path that a path has if no component below the trusted folder is a link. finalPrefix is the trusted
/// folder's final path, which begins with "\\?\". The path is followed component by component, split at "\" and "/",
/// until the final path of the walked part is exactly finalPrefix. The other components are appended as they are spelt.
/// With an empty prefix nothing is looked up: the result is "\\?\" and the path.
ExpectedPath expectedFinalPath(const std::wstring& finalPrefix, std::wstring_view path, const PathSystem& system);

/// The system's error for an open file that may not be locked. The error is 4395 (ERROR_REPARSE_POINT_ENCOUNTERED) for
/// a link, 3 (ERROR_PATH_NOT_FOUND) without a final path, and 0 if that is not the expected one. Nothing for a file
/// that may.
std::optional<uint32_t> lockError(uint32_t attributes, std::wstring_view finalPath, bool isExpectedPath);

/// A temporary folder without the folder of the terminal session at its end: "C:\Temp\2\" in session 2 becomes
/// "C:\Temp\". Only that session has the folder.
std::wstring withoutSessionFolder(std::wstring tempPath, uint32_t sessionId);

}  // namespace pdx
