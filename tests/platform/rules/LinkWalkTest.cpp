#include "platform/rules/LinkWalk.h"

#include <gtest/gtest.h>

#include <map>

namespace pdx {
namespace {

constexpr wchar_t volume1[] = L"\\Device\\HarddiskVolume1";
constexpr wchar_t volume2[] = L"\\Device\\HarddiskVolume2";

PathEntry folder(const std::wstring& finalPath) { return {false, false, {}, {}, finalPath}; }
PathEntry link(const wchar_t* target, const std::wstring& targetFinalPath, bool isRelative = false) {
    return {true, true, targetFinalPath, {target, isRelative}, L"\\Device\\HarddiskVolume1\\link"};
}

/// C: with links to D: and elsewhere, X: for a folder of C:, and R: on a volume without final paths.
PathEntry look(const std::wstring& path) {
    const std::wstring games = std::wstring(volume1) + L"\\Games";
    const std::wstring windows = std::wstring(volume1) + L"\\Windows";
    const std::wstring data = std::wstring(volume2) + L"\\Data";
    const std::map<std::wstring, PathEntry> entries = {
        {L"\\\\?\\C:\\", folder(std::wstring(volume1) + L"\\")},
        {L"\\\\?\\D:\\", folder(std::wstring(volume2) + L"\\")},
        {L"\\\\?\\Volume{0B5A}\\", folder(std::wstring(volume2) + L"\\")},
        {L"\\\\?\\X:\\", link(L"\\??\\C:\\Games", games)},
        {L"\\\\?\\C:\\Games", folder(std::wstring(volume1) + L"\\Games")},
        {L"\\\\?\\C:\\GAME~1", folder(std::wstring(volume1) + L"\\Games")},
        {L"\\\\?\\C:\\Games\\Palisade", folder(std::wstring(volume1) + L"\\Games\\Palisade")},
        // Exchanged while it was looked at: it lies elsewhere, and keeps its name.
        {L"\\\\?\\C:\\Games\\swapped", folder(L"\\Device\\HarddiskVolume1\\Windows")},
        {L"\\\\?\\C:\\Games\\sideways", link(L"..\\.\\Games\\Palisade", games + L"\\Palisade", true)},
        {L"\\\\?\\C:\\Games\\rooted", link(L"\\Games", games, true)},
        {L"\\\\?\\C:\\Games\\above", link(L"..\\..\\..\\Games\\Palisade\\..", games, true)},
        {L"\\\\?\\C:\\moved", link(L"\\??\\D:\\Data\\", data)},
        {L"\\\\?\\C:\\mounted", link(L"\\??\\Volume{0B5A}\\", std::wstring(volume2) + L"\\")},
        {L"\\\\?\\C:\\chain", link(L"\\??\\C:\\moved\\deep", data + L"\\deep")},
        {L"\\\\?\\C:\\circle", link(L"circle", L"", true)},
        // Led to a folder of its owner's when its owner was asked for.
        {L"\\\\?\\C:\\exchanged", link(L"\\??\\C:\\Games", data)},
        {L"\\\\?\\C:\\attacker", {true, false, windows, {L"\\??\\C:\\Windows"}, {}}},
        {L"\\\\?\\C:\\lured", link(L"\\??\\C:\\attacker\\Palisade", windows + L"\\Palisade")},
        {L"\\\\?\\C:\\share", link(L"\\??\\UNC\\server\\share", L"")},
        {L"\\\\?\\C:\\unread", link(L"", L"")},
    };
    const auto found = entries.find(path);
    return found == entries.end() ? PathEntry() : found->second;
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
        {L"C:\\Games\\missing\\x", arrived, L"C:\\Games\\missing\\x", std::wstring(volume1) + L"\\Games\\missing\\x"},
        {L"C:\\Games\\swapped", arrived, L"C:\\Games\\Windows", std::wstring(volume1) + L"\\Games\\Windows"},
        {L"R:\\Palisade", arrived, L"R:\\Palisade", L""},
        {L"X:\\Palisade", arrived, L"C:\\Games\\Palisade", std::wstring(volume1) + L"\\Games\\Palisade"},
        {L"C:\\moved\\Palisade", arrived, L"D:\\Data\\Palisade", std::wstring(volume2) + L"\\Data\\Palisade"},
        {L"C:\\mounted\\x", arrived, L"Volume{0B5A}\\x", std::wstring(volume2) + L"\\x"},
        {L"C:\\chain\\x", arrived, L"D:\\Data\\deep\\x", std::wstring(volume2) + L"\\Data\\deep\\x"},
        {L"C:\\chain", arrived, L"D:\\Data\\deep", std::wstring(volume2) + L"\\Data\\deep", true},
        {L"C:\\moved", arrived, L"D:\\Data", std::wstring(volume2) + L"\\Data", true},
        {L"C:\\Games\\sideways", arrived, L"C:\\Games\\Palisade", std::wstring(volume1) + L"\\Games\\Palisade", true},
        {L"C:\\Games\\rooted\\x", arrived, L"C:\\Games\\x", std::wstring(volume1) + L"\\Games\\x"},
        {L"C:\\Games\\above\\x", arrived, L"C:\\Games\\x", std::wstring(volume1) + L"\\Games\\x"},
        {L"C:\\attacker\\Palisade", refusedLink, L"C:\\attacker", L""},
        {L"C:\\exchanged\\Palisade", refusedLink, L"C:\\exchanged", L""},
        {L"C:\\attacker", refusedLink, L"C:\\attacker", L"", true},
        {L"C:\\lured\\x", refusedLink, L"C:\\attacker", L""},
        {L"C:\\circle\\x", tooManyLinks, L"C:\\circle", L""},
        {L"C:\\share\\Palisade", badPath, L"C:\\share", L""},
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
