#include "state/rules/OwnFolder.h"

#include <algorithm>
#include <vector>

#include "platform/rules/AsciiCase.h"

namespace pdx {
namespace {

bool isSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

/// A full path taken apart, in lower case: the root, "c:" or "server" and "share", and what lies below it.
struct FullPath {
    size_t rootParts = 0;  ///< 0 if it is no full path
    std::vector<std::wstring> parts;
};

FullPath takeApart(std::wstring_view path) {
    FullPath full;
    if (path.size() > 2 && path[1] == L':' && isSeparator(path[2])) full.rootParts = 1;
    if (path.size() > 2 && isSeparator(path[0]) && isSeparator(path[1])) full.rootParts = 2;
    while (!path.empty()) {
        const auto end = std::ranges::find_if(path, isSeparator);
        std::wstring part(path.begin(), end);
        path.remove_prefix(std::min(part.size() + 1, path.size()));
        // The system drops blanks at a part's end.
        part.resize(part.find_last_not_of(L' ') + 1);
        std::ranges::transform(part, part.begin(), lowerAscii<wchar_t>);
        if (!part.empty()) full.parts.push_back(std::move(part));
    }
    return full;
}

bool leadsElsewhere(const std::wstring& part) { return part.find_first_not_of(L'.') == std::wstring::npos; }

bool startsWith(const std::vector<std::wstring>& path, const std::vector<std::wstring>& begin) {
    return path.size() >= begin.size() && std::ranges::equal(begin, std::span(path).first(begin.size()));
}

}  // namespace

bool isOwnFolder(std::wstring_view folder, std::span<const std::wstring> systemFolders) {
    const FullPath own = takeApart(folder);
    if (own.rootParts == 0 || own.parts.size() <= own.rootParts || own.parts[0] == L"?") return false;
    if (std::ranges::any_of(own.parts, leadsElsewhere)) return false;
    return std::ranges::none_of(systemFolders, [&](const std::wstring& systemFolder) {
        return startsWith(takeApart(systemFolder).parts, own.parts);
    });
}

}  // namespace pdx
