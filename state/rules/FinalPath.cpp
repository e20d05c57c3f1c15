#include "state/rules/FinalPath.h"

#include <vector>

#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

/// All components, including empty ones.
std::vector<std::wstring> splitPath(std::wstring_view path) {
    std::vector<std::wstring> components;
    for (;;) {
        const size_t end = path.find_first_of(L"\\/");
        components.emplace_back(path.substr(0, end));
        if (end == std::wstring_view::npos) return components;
        path.remove_prefix(end + 1);
    }
}

}  // namespace

std::wstring withoutFinalPathStart(std::wstring_view finalPath) {
    constexpr std::wstring_view shareStart = L"\\\\?\\UNC\\";
    if (finalPath.starts_with(shareStart)) return L"\\\\" + std::wstring(finalPath.substr(shareStart.size()));
    if (finalPath.starts_with(finalPathStart)) finalPath.remove_prefix(finalPathStart.size());
    return std::wstring(finalPath);
}

ExpectedPath expectedFinalPath(const std::wstring& finalPrefix, std::wstring_view path, const PathSystem& system) {
    if (!finalPrefix.empty() && !finalPrefix.starts_with(finalPathStart)) return {{}, ExpectedPathProblem::badPrefix};
    bool found = finalPrefix.empty();
    // Joined without the first four characters, which the system's function might treat as a root.
    std::wstring expected;
    std::wstring walked;
    for (const std::wstring& component : splitPath(path)) {
        std::wstring& joined = found ? expected : walked;
        joined = system.append(joined, component);
        if (joined.empty() && !component.empty())
            return {{}, found ? ExpectedPathProblem::notJoinable : ExpectedPathProblem::neverFound};
        if (!found && system.finalPathOf(walked) == finalPrefix) {
            expected = finalPrefix.substr(finalPathStart.size());
            found = true;
        }
    }
    if (!found) return {{}, ExpectedPathProblem::neverFound};
    return {std::wstring(finalPathStart) + expected, ExpectedPathProblem::none};
}

std::optional<uint32_t> lockError(uint32_t attributes, std::wstring_view finalPath, bool isExpectedPath) {
    constexpr uint32_t reparsePoint = 0x400;
    if (attributes & reparsePoint) return 4395;  // ERROR_REPARSE_POINT_ENCOUNTERED
    if (finalPath.empty()) return 3;             // ERROR_PATH_NOT_FOUND
    if (!isExpectedPath) return 0;
    return std::nullopt;
}

std::wstring withoutSessionFolder(std::wstring tempPath, uint32_t sessionId) {
    const std::wstring folder = L'\\' + std::to_wstring(sessionId) + L'\\';
    if (tempPath.ends_with(folder)) tempPath.resize(tempPath.size() - folder.size() + 1);
    return tempPath;
}

}  // namespace pdx
