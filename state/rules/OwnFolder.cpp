#include "state/rules/OwnFolder.h"

#include <algorithm>
#include <vector>

#include "platform/rules/AsciiCase.h"

namespace pdx {
namespace {

using Parts = std::vector<std::wstring>;

bool isSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }
bool leadsElsewhere(const std::wstring& part) { return part.find_first_not_of(L'.') == std::wstring::npos; }
bool namesStream(const std::wstring& part) { return part.find(L':') != std::wstring::npos; }

/// The parts of a path in lower case, without empty ones.
Parts partsOf(std::wstring_view path) {
    Parts parts;
    while (!path.empty()) {
        const auto end = std::ranges::find_if(path, isSeparator);
        std::wstring part(path.begin(), end);
        path.remove_prefix(std::min(part.size() + 1, path.size()));
        // The system ignores blanks and dots at a part's end.
        part.resize(part.find_last_not_of(L' ') + 1);
        if (!leadsElsewhere(part)) part.resize(part.find_last_not_of(L". ") + 1);
        if (!part.empty()) parts.push_back(loweredAscii<wchar_t>(part));
    }
    return parts;
}

bool startsWith(const Parts& path, const Parts& begin) {
    return path.size() >= begin.size() && std::ranges::equal(begin, std::span(path).first(begin.size()));
}

/// Whether the folder is the system folder, is above it, or is below it by at most its depth.
bool overlaps(const Parts& folder, const SystemFolder& systemFolder) {
    const Parts parts = partsOf(systemFolder.path);
    if (parts.empty()) return false;
    return startsWith(parts, folder) ||
           (startsWith(folder, parts) && folder.size() - parts.size() <= systemFolder.depth);
}

bool isOwn(const Parts& folder, size_t volumeParts, std::span<const SystemFolder> systemFolders) {
    return folder.size() > volumeParts && std::ranges::none_of(folder, leadsElsewhere) &&
           std::ranges::none_of(std::span(folder).subspan(volumeParts), namesStream) &&
           std::ranges::none_of(systemFolders, [&](const SystemFolder& system) { return overlaps(folder, system); });
}

}  // namespace

bool isDrivePath(std::wstring_view path) { return path.size() >= 3 && path[1] == L':' && isSeparator(path[2]); }

bool isOwnFolder(std::wstring_view folder, std::span<const SystemFolder> systemFolders) {
    return isDrivePath(folder) && isOwn(partsOf(folder), 1, systemFolders);
}

bool isOwnVolumePath(std::wstring_view path, std::span<const SystemFolder> systemFolders) {
    const Parts parts = partsOf(path);
    // The path of a volume's root ends in a separator. All network folders have one device.
    return parts.size() > 2 && path.front() == L'\\' && path.back() != L'\\' && parts[0] == L"device" &&
           parts[1] != L"mup" && isOwn(parts, 2, systemFolders);
}

std::wstring inProfile(std::wstring_view folder, const std::wstring& profile) {
    constexpr std::wstring_view variable = L"%USERPROFILE%";
    if (!equalsAsciiCase(folder.substr(0, variable.size()), variable)) return std::wstring(folder);
    return profile + std::wstring(folder.substr(variable.size()));
}

}  // namespace pdx
