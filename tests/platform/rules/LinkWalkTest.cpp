#include "platform/rules/LinkWalk.h"

#include <gtest/gtest.h>

#include <map>

namespace pdx {
namespace {

constexpr wchar_t volume1[] = L"\\Device\\HarddiskVolume1";
constexpr wchar_t volume2[] = L"\\Device\\HarddiskVolume2";

FileSecurity of(const wchar_t* owner) { return {owner, {}}; }
PathEntry folder(const std::wstring& finalPath, const wchar_t* owner = L"ann") {
    return {.finalPath = finalPath, .security = of(owner)};
}
/// A link in the root of C:, or in another folder of it.
PathEntry link(const wchar_t* target, const wchar_t* owner = L"ann", const std::wstring& holder = L"") {
    const std::wstring holderPath = volume1 + holder;
    return {.isLink = true,
            .target = {target, *target && !std::wstring_view(target).starts_with(L"\\??\\")},
            .finalPath = holderPath + L"\\link",
            .holderFinalPath = holder.empty() ? holderPath + L'\\' : holderPath,
            .security = of(owner),
            .holderSecurity = of(owner)};
}
/// A link whose own place and whose holder's differ.
PathEntry placed(const wchar_t* place, const wchar_t* holder) {
    PathEntry entry = link(L"\\??\\D:\\Data", L"ann", holder);
    entry.finalPath = std::wstring(volume1) + place + L"\\link";
    return entry;
}
PathEntry mappedDrive(const wchar_t* target) {
    PathEntry entry = link(target, L"system");
    entry.isMappedDrive = true;
    return entry;
}

/// C: with links to D: and elsewhere, X: for a folder of C:, and R: on a volume without final paths.
PathEntry look(const std::wstring& path) {
    const std::wstring games = std::wstring(volume1) + L"\\Games";
    const std::wstring data = std::wstring(volume2) + L"\\Data";
    static const std::map<std::wstring, PathEntry> entries = {
        {L"C:\\", folder(std::wstring(volume1) + L"\\")},
        {L"D:\\", folder(std::wstring(volume2) + L"\\", L"system")},
        {L"D:\\Data", folder(data)},
        {L"D:\\Data\\deep", folder(data + L"\\deep")},
        {L"R:\\", {}},
        {L"R:\\Palisade", {}},
        {L"Volume{0B5A}\\", folder(std::wstring(volume2) + L"\\", L"system")},
        {L"Volume{0B5A}\\Data", folder(data)},
        {L"X:\\", mappedDrive(L"\\??\\C:\\Games")},
        {L"C:\\Games", folder(games)},
        {L"C:\\GAME~1", folder(games)},
        {L"C:\\Games\\Palisade", folder(games + L"\\Palisade")},
        {L"C:\\Windows", folder(std::wstring(volume1) + L"\\Windows", L"system")},
        {L"C:\\Windows\\Palisade", folder(std::wstring(volume1) + L"\\Windows\\Palisade", L"system")},
        // Exchanged while it was looked at: it lies elsewhere, and keeps its name.
        {L"C:\\Games\\swapped", folder(L"\\Device\\HarddiskVolume1\\Windows")},
        {L"C:\\Games\\sideways", link(L"..\\.\\Games\\Palisade", L"ann", L"\\Games")},
        {L"C:\\Games\\rooted", link(L"\\Games", L"ann", L"\\Games")},
        {L"C:\\Games\\above", link(L"..\\..\\..\\Games\\Palisade\\..", L"ann", L"\\Games")},
        {L"C:\\moved", link(L"\\??\\D:\\Data\\")},
        {L"C:\\mounted", link(L"\\??\\Volume{0B5A}\\", L"system")},
        {L"C:\\unmounted", link(L"\\??\\Volume{0B5A}\\")},
        {L"C:\\chain", link(L"\\??\\C:\\moved\\deep")},
        {L"C:\\circle", link(L"circle")},
        {L"E:\\", link(L".")},
        {L"C:\\attacker", link(L"\\??\\C:\\Windows")},
        {L"C:\\lured", link(L"\\??\\C:\\attacker\\Palisade", L"system")},
        // Seen by way of a folder that had become a link meanwhile.
        {L"C:\\Games\\strayed", link(L"\\??\\D:\\Data", L"ann", L"\\Elsewhere")},
        {L"C:\\strayed", link(L"\\??\\D:\\Data", L"ann", L"\\Elsewhere")},
        {L"C:\\Games\\Windows", folder(std::wstring(volume1) + L"\\Windows")},
        {L"C:\\Games\\otherPlace", placed(L"\\Elsewhere", L"\\Games")},
        {L"C:\\Games\\otherHolder", placed(L"\\Games", L"\\Elsewhere")},
        {L"C:\\toSwapped", link(L"\\??\\C:\\Games\\swapped")},
        {L"C:\\dangling", link(L"\\??\\C:\\none", L"system")},
        {L"C:\\share", link(L"\\??\\UNC\\server\\share")},
        {L"C:\\unread", link(L"")},
    };
    const auto found = entries.find(path.starts_with(L"\\\\?\\") ? path.substr(4) : L"none");
    return found == entries.end() ? PathEntry{.isMissing = true} : found->second;
}

TEST(WalkLinks, FollowsTrustedLinksOnly) {
    using enum WalkResult;
    const struct {
        const wchar_t* given;
        WalkResult result;
        const wchar_t* path;
        std::wstring finalPath;
        bool endsInLink = false;
    } rows[] = {
        {L"C:\\Games\\Palisade", arrived, L"C:\\Games\\Palisade", std::wstring(volume1) + L"\\Games\\Palisade"},
        {L"C:\\GAME~1\\Palisade", arrived, L"C:\\Games\\Palisade", std::wstring(volume1) + L"\\Games\\Palisade"},
        {L"C:\\Games\\none\\x", missing, L"C:\\Games\\none", L""},
        {L"C:\\Games\\swapped", arrived, L"C:\\Games\\Windows", std::wstring(volume1) + L"\\Games\\Windows"},
        {L"R:\\Palisade", arrived, L"R:\\Palisade", L""},
        {L"X:\\Palisade", arrived, L"C:\\Games\\Palisade", std::wstring(volume1) + L"\\Games\\Palisade"},
        {L"C:\\moved\\deep", arrived, L"D:\\Data\\deep", std::wstring(volume2) + L"\\Data\\deep"},
        {L"C:\\mounted\\Data", arrived, L"Volume{0B5A}\\Data", std::wstring(volume2) + L"\\Data"},
        {L"C:\\unmounted\\Data", refusedLink, L"C:\\unmounted", L""},
        {L"C:\\chain", arrived, L"D:\\Data\\deep", std::wstring(volume2) + L"\\Data\\deep", true},
        {L"C:\\moved", arrived, L"D:\\Data", std::wstring(volume2) + L"\\Data", true},
        {L"C:\\Games\\sideways", arrived, L"C:\\Games\\Palisade", std::wstring(volume1) + L"\\Games\\Palisade", true},
        {L"C:\\Games\\rooted\\Palisade", arrived, L"C:\\Games\\Palisade", std::wstring(volume1) + L"\\Games\\Palisade"},
        {L"C:\\Games\\above", arrived, L"C:\\Games", std::wstring(volume1) + L"\\Games", true},
        {L"C:\\attacker\\Palisade", refusedLink, L"C:\\attacker", L""},
        {L"C:\\attacker", refusedLink, L"C:\\attacker", L"", true},
        {L"C:\\lured", refusedLink, L"C:\\attacker", L"", true},
        {L"C:\\strayed", refusedLink, L"C:\\strayed", L"", true},
        {L"C:\\Games\\strayed\\deep", refusedLink, L"C:\\Games\\strayed", L""},
        {L"C:\\Games\\otherPlace", refusedLink, L"C:\\Games\\otherPlace", L"", true},
        {L"C:\\Games\\otherHolder", refusedLink, L"C:\\Games\\otherHolder", L"", true},
        {L"C:\\toSwapped", refusedLink, L"C:\\toSwapped", L"", true},
        {L"C:\\dangling\\x", missing, L"C:\\none", L""},
        {L"C:\\circle\\x", tooLong, L"C:\\circle", L""},
        {L"C:\\share\\Palisade", badPath, L"C:\\share", L""},
        {L"E:\\x", badPath, L"E:\\", L""},
        {L"C:\\unread\\Volume{0B5A}\\x", badPath, L"C:\\unread", L""},
    };
    for (const auto& row : rows) {
        const WalkedPath walked = walkLinks(row.given, look);
        EXPECT_EQ(walked.result, row.result) << row.given;
        EXPECT_EQ(walked.path, std::wstring(L"\\\\?\\") + row.path) << row.given;
        EXPECT_EQ(walked.finalPath, row.finalPath) << row.given;
        EXPECT_EQ(walked.endsInLink, row.endsInLink) << row.given;
    }
    for (const wchar_t* path : {L"", L"Games", L"\\Games", L"\\\\server\\share", L"\\\\.\\con", L"1:\\Games"})
        EXPECT_EQ(walkLinks(path, look).result, badPath) << path;
    int32_t asked = 0;
    walkLinks(L"C:\\circle", [&](const std::wstring& path) {
        ++asked;
        return look(path);
    });
    EXPECT_EQ(asked, 1 + mostLinks + 1) << "the root, and one link too many";
    asked = 0;
    std::wstring deep = L"C:";
    for (int32_t component = 1; component <= mostComponents; ++component) deep += L"\\a";
    const auto anyFolder = [&](const std::wstring&) {
        ++asked;
        return PathEntry();
    };
    EXPECT_EQ(walkLinks(deep, anyFolder).result, tooLong);
    EXPECT_EQ(asked, mostComponents);
}

TEST(LinkTargetOf, ReadsTheTargetsOfJunctionsAndSymbolicLinks) {
    constexpr uint32_t junction = 0xA0000003;
    constexpr uint32_t symbolicLink = 0xA000000C;
    const auto data = [](uint32_t tag, uint32_t flags, uint16_t offset, uint16_t length, std::wstring_view text) {
        std::vector<std::byte> bytes;
        const auto add = [&](uint32_t number, size_t size) {
            for (size_t index = 0; index < size; ++index) bytes.push_back(std::byte(number >> (8 * index)));
        };
        add(tag, 4);
        add(0, 4);  // the size of what follows, and a reserved number
        add(offset, 2);
        add(length, 2);
        add(0, 4);  // where the text for display is
        if (tag == symbolicLink) add(flags, 4);
        for (const wchar_t letter : text) add(static_cast<uint32_t>(letter), 2);
        return bytes;
    };
    const auto read = [](const std::vector<std::byte>& bytes) {
        const auto target = linkTargetOf(bytes);
        return target ? target->path + (target->isRelative ? L" relative" : L"") : L"none";
    };
    EXPECT_EQ(read(data(junction, 0, 2, 6, L"yC:\\x")), L"C:\\");
    EXPECT_EQ(read(data(symbolicLink, 0, 0, 6, L"C:\\ü")), L"C:\\");
    EXPECT_EQ(read(data(symbolicLink, 1, 2, 2, L"xü")), L"ü relative");
    EXPECT_EQ(read(data(0xA0000019, 0, 0, 6, L"C:\\")), L"none") << "another tag";
    EXPECT_EQ(read(data(junction, 0, 2, 6, L"C:\\")), L"none") << "a text beyond the end";
    EXPECT_EQ(read(data(symbolicLink, 0, 0, 8, L"C:\\")), L"none");
    for (const size_t size : {0, 15, 16, 19}) {
        auto bytes = data(symbolicLink, 1, 0, 0, L"");
        bytes.resize(size);
        EXPECT_EQ(read(bytes), L"none") << size;
    }
}

}  // namespace
}  // namespace pdx
