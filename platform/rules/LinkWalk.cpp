#include "platform/rules/LinkWalk.h"

#include <deque>
#include <vector>

#include "platform/rules/AsciiCase.h"
#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

constexpr std::wstring_view systemStart = L"\\??\\";  // begins the full paths in links

uint32_t readNumber(std::span<const std::byte> data, size_t offset, size_t size) {
    uint32_t number = 0;
    for (size_t index = 0; index < size; ++index)
        number |= std::to_integer<uint32_t>(data[offset + index]) << (8 * index);
    return number;
}

std::wstring withoutEndSeparator(const std::wstring& path) { return path.substr(0, path.find_last_not_of(L'\\') + 1); }

/// "D:" or "Volume{0B5A…}".
bool isRoot(std::wstring_view name) {
    const std::wstring lowered = loweredAscii(name);
    return (lowered.size() == 2 && lowered[1] == L':' && lowered[0] >= L'a' && lowered[0] <= L'z') ||
           (lowered.starts_with(L"volume{") && lowered.ends_with(L'}'));
}

/// The components still to be followed, and the path walked so far.
class Walk {
  public:
    /// Inserts the components of a path before the remaining ones.
    void prepend(std::wstring_view path) {
        std::vector<std::wstring> parts;
        while (!path.empty()) {
            const size_t end = std::min(path.find(L'\\'), path.size());
            if (end > 0) parts.emplace_back(path.substr(0, end));
            path.remove_prefix(std::min(end + 1, path.size()));
        }
        left.insert(left.begin(), parts.begin(), parts.end());
    }

    /// Restarts with a full path before the remaining components. False if the path has no root.
    bool restart(std::wstring_view path) {
        names.clear();
        volume.clear();
        for (const std::wstring_view start : {finalPathStart, systemStart}) {
            if (path.starts_with(start)) {
                path.remove_prefix(start.size());
                break;
            }
        }
        if (!isRoot(path.substr(0, path.find(L'\\')))) return false;
        prepend(path);
        return true;
    }

    /// Follows a link's relative path: from the link's folder, or from the root if the path begins with "\".
    void follow(std::wstring_view relative) {
        if (relative.starts_with(L'\\') && !names.empty()) names.resize(1);
        prepend(relative);
    }

    /// Notes a link, before its target is prepended. The target is reached once only the components that remain now are
    /// left.
    void awaitTarget(const PathEntry& link, const std::wstring& path) {
        links.push_back({left.size(), path, link.security, link.holderSecurity});
    }
    struct Link {
        size_t left;
        std::wstring path;
        FileSecurity security;
        FileSecurity holderSecurity;
    };
    /// Takes a link whose target is reached, if there is one.
    std::optional<Link> reachedLink() {
        if (links.empty() || links.back().left != left.size()) return std::nullopt;
        Link link = std::move(links.back());
        links.pop_back();
        return link;
    }

    [[nodiscard]] bool isDone() const { return left.empty(); }
    std::wstring next() {
        std::wstring name = std::move(left.front());
        left.pop_front();
        return name;
    }

    void enter(const std::wstring& name, const std::wstring& finalPath) {
        if (names.empty()) {
            volume = withoutEndSeparator(finalPath);
            names.push_back(name);
        } else {
            // The entry's name: the path may have the short one or another case.
            names.push_back(finalPath.empty() ? name : finalPath.substr(finalPath.rfind(L'\\') + 1));
        }
    }
    void leave() {
        if (names.size() > 1) names.pop_back();
    }

    [[nodiscard]] std::wstring path() const {
        if (names.empty()) return {};
        std::wstring joined(finalPathStart);
        joined += names.front();
        return below(joined);
    }
    [[nodiscard]] std::wstring path(const std::wstring& name) const {
        return names.empty() ? std::wstring(finalPathStart) + name + L'\\' : path() + L'\\' + name;
    }
    /// The path that opens the place so far: a root ends with a separator.
    [[nodiscard]] std::wstring place() const { return names.size() == 1 ? path() + L'\\' : path(); }
    [[nodiscard]] std::wstring finalPath() const { return volume.empty() ? volume : below(volume); }
    /// Whether an entry that was looked at is still in the folder where the walk is.
    [[nodiscard]] bool holds(const PathEntry& entry) const {
        if (names.empty() || volume.empty()) return true;
        return withoutEndSeparator(entry.holderFinalPath) == finalPath() &&
               entry.finalPath.substr(0, entry.finalPath.rfind(L'\\')) == finalPath();
    }

  private:
    [[nodiscard]] std::wstring below(std::wstring root) const {
        for (size_t index = 1; index < names.size(); ++index) (root += L'\\') += names[index];
        return root;
    }

    std::deque<std::wstring> left;
    std::vector<Link> links;          ///< whose targets are not reached; the next one is the last
    std::vector<std::wstring> names;  ///< the first is the root
    std::wstring volume;              ///< the root's final path
};

}  // namespace

std::optional<LinkTarget> linkTargetOf(std::span<const std::byte> reparseData) {
    constexpr uint32_t mountPoint = 0xA0000003;  // also junctions
    constexpr uint32_t symbolicLink = 0xA000000C;
    constexpr size_t offsetAt = 8;
    constexpr size_t lengthAt = 10;
    constexpr size_t flagsAt = 16;  // for a symbolic link only
    if (reparseData.size() < flagsAt) return std::nullopt;
    const uint32_t tag = readNumber(reparseData, 0, 4);
    if (tag != mountPoint && tag != symbolicLink) return std::nullopt;
    const size_t textsAt = tag == symbolicLink ? flagsAt + 4 : flagsAt;
    const size_t begin = textsAt + readNumber(reparseData, offsetAt, 2);
    const size_t length = readNumber(reparseData, lengthAt, 2);
    if (reparseData.size() < begin + length) return std::nullopt;

    LinkTarget target;
    for (size_t at = begin; at + 2 <= begin + length; at += 2)
        target.path.push_back(static_cast<wchar_t>(readNumber(reparseData, at, 2)));
    target.isRelative = tag == symbolicLink && (readNumber(reparseData, flagsAt, 4) & 1) != 0;
    return target;
}

WalkedPath walkLinks(std::wstring_view fullPath, const LookAtPath& look, const LinkJudge& judge) {
    WalkedPath walked;
    Walk walk;
    const auto endAt = [&](WalkResult result, const std::wstring& path) {
        walked.result = result;
        walked.path = path;
        return walked;
    };
    if (!walk.restart(fullPath)) return walked;
    int32_t links = 0;
    for (int32_t components = 1; !walk.isDone(); ++components) {
        const std::wstring name = walk.next();
        const bool isDots = name == L"." || name == L"..";  // only in relative links
        const std::wstring path = walk.path(name);
        if (components > mostComponents) return endAt(WalkResult::tooLong, path);
        const PathEntry entry = isDots ? PathEntry() : look(path);
        if (entry.isMissing) return endAt(WalkResult::missing, path);
        if (entry.isLink) {
            walked.endsInLink = walked.endsInLink || walk.isDone();
            if (!walk.holds(entry)) return endAt(WalkResult::refusedLink, path);
            if (++links > mostLinks) return endAt(WalkResult::tooLong, path);
            if (!entry.isMappedDrive) walk.awaitTarget(entry, path);
            if (entry.target.isRelative)
                walk.follow(entry.target.path);
            else if (!walk.restart(entry.target.path))
                return endAt(WalkResult::badPath, path);
        } else if (name == L"..") {
            walk.leave();
        } else if (!isDots) {
            walk.enter(name, entry.finalPath);
        }
        while (const auto link = walk.reachedLink()) {
            if (walk.path().empty()) return endAt(WalkResult::badPath, link->path);  // a root that leads nowhere
            const PathEntry target = look(walk.place());
            if (target.isLink || withoutEndSeparator(target.finalPath) != walk.finalPath() ||
                !judge(link->security, link->holderSecurity, target.security))
                return endAt(WalkResult::refusedLink, link->path);
        }
    }
    if (walk.path().empty()) return walked;  // a root that is a link to nothing
    walked.finalPath = walk.finalPath();
    return endAt(WalkResult::arrived, walk.path());
}

}  // namespace pdx
