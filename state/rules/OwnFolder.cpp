#include "state/rules/OwnFolder.h"

#include <algorithm>
#include <vector>

#include "platform/rules/AsciiCase.h"

namespace pdx {
namespace {

using Parts = std::vector<std::wstring>;

bool isSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }
bool leadsElsewhere(const std::wstring& part) { return part.find_first_not_of(L'.') == std::wstring::npos; }

/// The parts of a full path in lower case, its drive the first; none if it is no full path.
Parts partsOf(std::wstring_view path) {
    Parts parts;
    if (path.size() < 3 || path[1] != L':' || !isSeparator(path[2])) return parts;
    while (!path.empty()) {
        const auto end = std::ranges::find_if(path, isSeparator);
        std::wstring part(path.begin(), end);
        path.remove_prefix(std::min(part.size() + 1, path.size()));
        // The system drops blanks and dots at a part's end.
        part.resize(part.find_last_not_of(L' ') + 1);
        if (!leadsElsewhere(part)) part.resize(part.find_last_not_of(L". ") + 1);
        std::ranges::transform(part, part.begin(), lowerAscii<wchar_t>);
        if (!part.empty()) parts.push_back(std::move(part));
    }
    return parts;
}

bool startsWith(const Parts& path, const Parts& begin) {
    return path.size() >= begin.size() && std::ranges::equal(begin, std::span(path).first(begin.size()));
}

bool isOf(const Parts& folder, const SystemFolder& systemFolder) {
    const Parts parts = partsOf(systemFolder.path);
    if (parts.empty()) return false;
    return startsWith(parts, folder) ||
           (startsWith(folder, parts) && folder.size() - parts.size() <= systemFolder.depth);
}

}  // namespace

bool isOwnFolder(std::wstring_view folder, std::span<const SystemFolder> systemFolders) {
    const Parts own = partsOf(folder);
    if (own.size() < 2 || std::ranges::any_of(own, leadsElsewhere)) return false;
    return std::ranges::none_of(systemFolders, [&](const SystemFolder& system) { return isOf(own, system); });
}

}  // namespace pdx
