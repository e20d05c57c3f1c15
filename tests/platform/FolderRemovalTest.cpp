#include "platform/FolderRemoval.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "platform/Files.h"
#include "platform/Handles.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Link.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FolderRemovalTest : public testing::Test {
  protected:
    bool remove(const std::wstring& path, int32_t tries = 1) { return deleteDirectoryTree(findFolder(path), tries, 1); }
    static LogEntry stays(const char* kind, const std::wstring& path, const char* error) {
        return {logInfo, "deleteDirectoryTree",
                std::string("Failed to remove ") + kind + " " + toUtf8(path) + ": error=" + error};
    }

    TestFolder folder;
    CapturedLog log;
};

TEST_F(FolderRemovalTest, DeletesAWholeTree) {
    for (const wchar_t* separator : {L"", L"\\", L"/"}) {
        folder.addFile(L"tree\\a.txt");
        folder.addFile(L"tree\\ü\\.hidden");
        folder.addFile(L"tree\\ü\\deep\\er\\noextension");
        std::filesystem::create_directories(folder.path(L"tree\\empty"));
        SetFileAttributesW(folder.path(L"tree\\a.txt").c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
        for (const wchar_t* fixed : {L"tree\\ü\\.hidden", L"tree\\empty"})
            ASSERT_TRUE(SetFileAttributesW(folder.path(fixed).c_str(), FILE_ATTRIBUTE_READONLY));
        EXPECT_TRUE(remove(folder.path(L"tree") + separator));
        EXPECT_FALSE(fileExists(folder.path(L"tree")));
    }
    EXPECT_TRUE(remove(folder.path(L"missing\\deeper"))) << "a missing one counts as deleted";
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(FolderRemovalTest, TheEmptyPathIsNotTheCurrentFolder) {
    const CurrentFolder before;
    const std::wstring kept = folder.addFile(L"kept");
    ASSERT_TRUE(SetCurrentDirectoryW(folder.path().c_str()));
    EXPECT_TRUE(remove(L""));
    EXPECT_TRUE(fileExists(kept));
}

TEST_F(FolderRemovalTest, EmptiesTheTargetOfALinkAndKeepsTheLink) {
    folder.addFile(L"target\\sub\\a.txt");
    const Link link(folder.path(), L"link", folder.path(L"target"), SYMBOLIC_LINK_FLAG_DIRECTORY);
    ASSERT_TRUE(link);
    const FoundFolder found = findFolder(folder.path(L"link"));
    EXPECT_TRUE(found.isLink && found.isTrusted);
    EXPECT_EQ(found.volumePath, volumePathOf(folder.path(L"target")));
    EXPECT_TRUE(deleteDirectoryTree(found, 1, 0));
    EXPECT_TRUE(link);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path(L"target")));
}

TEST_F(FolderRemovalTest, FollowsLinksAboveTheFolder) {
    folder.addFile(L"target\\deep\\client\\a.txt");
    const Link outer(folder.path(), L"outer", folder.path(L"target"), SYMBOLIC_LINK_FLAG_DIRECTORY);
    const Link inner(folder.path(L"target"), L"inner", folder.path(L"target\\deep"), SYMBOLIC_LINK_FLAG_DIRECTORY);
    ASSERT_TRUE(outer && inner);
    const FoundFolder found = findFolder(folder.path(L"outer\\inner\\client"));
    EXPECT_TRUE(found.isTrusted && !found.isLink);
    EXPECT_EQ(found.path, L"\\\\?\\" + folder.path(L"target\\deep\\client"));
    EXPECT_TRUE(deleteDirectoryTree(found, 1, 0));
    EXPECT_TRUE(outer && inner);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path(L"target\\deep")));
}

TEST_F(FolderRemovalTest, DeletesNoFolderThatIsNotTrusted) {
    const std::wstring kept = folder.addFile(L"tree\\kept");
    FoundFolder found = findFolder(folder.path(L"tree"));
    found.isTrusted = false;
    EXPECT_FALSE(deleteDirectoryTree(found, 1, 0));
    EXPECT_EQ(readFile(kept), "x");
    EXPECT_THAT(log.take(), ElementsAre(stays("directory", folder.path(L"tree"), "0000112b")));
}

TEST_F(FolderRemovalTest, StopsAtEachBound) {
    for (const wchar_t* name : {L"tree\\a", L"tree\\b", L"tree\\c", L"tree\\d"}) folder.addFile(name);
    const FoundFolder found = findFolder(folder.path(L"tree"));
    EXPECT_FALSE(deleteDirectoryTree(found, 1, 0, {.entries = 3}));
    const auto gaveUp = [&](const char* entries) {
        return ElementsAre(
            testing::FieldsAre(logInfo, "deleteDirectoryTree",
                               testing::StartsWith(std::string("Gave up after ") + entries + " entries in ")),
            stays("directory", folder.path(L"tree"), "00000091"));
    };
    EXPECT_THAT(log.take(), gaveUp("4"));
    EXPECT_FALSE(deleteDirectoryTree(found, 1, 0, {.time = std::chrono::milliseconds(0)}));
    EXPECT_THAT(log.take(), gaveUp("1"));
    folder.addFile(L"tree\\d");
    FileHandle held(CreateFileW(folder.path(L"tree\\d").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                0, nullptr));
    ASSERT_TRUE(held);
    const Handle ended(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    // Closes the file only if the removal waits for it.
    std::thread holder([&] {
        WaitForSingleObject(ended.get(), 5'000);
        held.reset();
    });
    EXPECT_FALSE(deleteDirectoryTree(found, INT32_MAX, 1, {.failedTries = 2}));
    SetEvent(ended.get());
    holder.join();
    EXPECT_THAT(log.take(), ElementsAre(stays("file", folder.path(L"tree\\d"), "00000020")));
}

TEST_F(FolderRemovalTest, KeepsTheTargetOfALinkInside) {
    const std::wstring kept = folder.addFile(L"target\\kept");
    std::filesystem::create_directories(folder.path(L"tree"));
    const Link link(folder.path(L"tree"), L"link", folder.path(L"target"), SYMBOLIC_LINK_FLAG_DIRECTORY);
    ASSERT_TRUE(link);
    // Wine cannot remove a link of the system below it, and so the walk ends there.
    remove(folder.path(L"tree"));
    EXPECT_EQ(readFile(kept), "x");
    // Wine opens what a link to a file leads to, as an open by way of an exchanged folder would.
    std::filesystem::create_directories(folder.path(L"other"));
    const Link toFile(folder.path(L"other"), L"link", kept, 0);
    ASSERT_TRUE(toFile);
    std::ignore = log.take();
    EXPECT_FALSE(remove(folder.path(L"other")));
    EXPECT_EQ(readFile(kept), "x");
    EXPECT_THAT(log.take(), ElementsAre(stays("file", folder.path(L"other\\link"), "0000112b")));
}

TEST_F(FolderRemovalTest, DeletesOnlyTheFolderThatWasFound) {
    std::filesystem::create_directories(folder.path(L"tree"));
    const std::wstring kept = folder.addFile(L"target\\kept");
    const FoundFolder found = findFolder(folder.path(L"tree"));
    std::filesystem::remove(folder.path(L"tree"));
    const Link link(folder.path(), L"tree", folder.path(L"target"), SYMBOLIC_LINK_FLAG_DIRECTORY);
    ASSERT_TRUE(link);
    EXPECT_FALSE(deleteDirectoryTree(found, 1, 0));
    EXPECT_EQ(readFile(kept), "x");
    EXPECT_THAT(log.take(), ElementsAre(stays("directory", folder.path(L"tree"), "0000112b")));
}

TEST_F(FolderRemovalTest, TrustsAFolderByItsShortName) {
    std::filesystem::create_directories(folder.path(L"A long folder name"));
    const std::wstring shortPath = getShortPathName(folder.path(L"A long folder name"));
    ASSERT_NE(shortPath, folder.path(L"A long folder name"));
    const FoundFolder found = findFolder(shortPath);
    EXPECT_TRUE(found.isTrusted && !found.isLink);
    EXPECT_EQ(found.path, L"\\\\?\\" + folder.path(L"A long folder name"));
}

TEST_F(FolderRemovalTest, StopsAtAnEntryThatCannotBeDeleted) {
    folder.addFile(L"tree\\sub\\file.txt");
    for (const auto& [kind, name] : {std::pair("file", L"tree\\sub\\file.txt"), {"directory", L"tree\\sub"}}) {
        const std::wstring stuck = folder.path(name);
        const FileHandle open(CreateFileW(stuck.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                          OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        ASSERT_TRUE(open);
        EXPECT_FALSE(remove(folder.path(L"tree"), 2));
        EXPECT_THAT(log.take(), ElementsAre(stays(kind, stuck, "00000020")));
    }
    EXPECT_FALSE(fileExists(folder.path(L"tree\\sub\\file.txt"))) << "deleted before";
}

}  // namespace
}  // namespace pdx
