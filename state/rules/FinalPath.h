// Where a file has to be if no link is in its path, derived without trusting the file itself.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/rules/Numbers.h"

namespace pdx {

/// A final path as programs take one: "C:\Temp\a.log" or "\\server\share\a.log".
std::wstring withoutFinalPathStart(std::wstring_view finalPath);

enum class ExpectedPathProblem {
    none,
    badPrefix,    ///< the prefix is no final path
    neverFound,   ///< no leading part of the path is the prefix
    notJoinable,  ///< a component after the prefix could not be joined on
};

struct ExpectedPath {
    std::wstring path;  ///< empty with every problem
    ExpectedPathProblem problem;
};

/// What the walk asks of the system.
struct PathSystem {
    /// The final path of what is there, a link not followed; empty if there is nothing.
    std::function<std::wstring(const std::wstring& path)> finalPathOf;
    /// A path with one more component; empty on failure.
    std::function<std::wstring(const std::wstring& path, const std::wstring& component)> append;
};

/// The final path that a path ought to have if no component below the trusted folder is a link. finalPrefix is the
/// trusted folder's own final path, which begins with "\\?\"; the path is followed component by component, split at
/// "\" and "/", until what was walked has exactly that final path, and what is left is joined on as it is spelt. With
/// an empty prefix no folder is trusted and nothing is looked up: the path itself after "\\?\".
ExpectedPath expectedFinalPath(const std::wstring& finalPrefix, std::wstring_view path, const PathSystem& system);

/// The system's error for a file that is open but may not be locked. It is 4395 (ERROR_REPARSE_POINT_ENCOUNTERED) for a
/// link, 3 (ERROR_PATH_NOT_FOUND) without a final path, and 0 for another place than the expected one. None for one
/// that may.
std::optional<uint32_t> lockError(uint32_t attributes, std::wstring_view finalPath, bool isExpectedPath);

/// A temporary folder without the folder of the terminal session at its end, which only that session has:
/// "C:\Temp\2\" in session 2 becomes "C:\Temp\".
std::wstring withoutSessionFolder(std::wstring tempPath, uint32_t sessionId);

}  // namespace pdx
