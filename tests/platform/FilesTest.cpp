#include "platform/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/Handles.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Link.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FilesTest : public testing::Test {
  protected:
    TestFolder folder;
    CapturedLog log;
};

TEST_F(FilesTest, CopiesOnlyWhatIsMissing) {
    const std::wstring source = folder.addFile(L"source", "new");
    const std::wstring present = folder.addFile(L"present", "old");
    EXPECT_TRUE(copyIfMissing(source, folder.path(L"target")));
    EXPECT_EQ(readFile(folder.path(L"target")), "new");
    EXPECT_TRUE(copyIfMissing(source, present));
    EXPECT_EQ(readFile(present), "old");
    EXPECT_TRUE(copyIfMissing(folder.path(L"missing"), present));
    EXPECT_FALSE(copyIfMissing(folder.path(L"missing"), folder.path(L"other")));
}

TEST_F(FilesTest, ReadsTheFirstDescriptionInTheOrderOfTheLanguages) {
    // The program names four languages: no block, a block without a description, then German before English.
    EXPECT_EQ(getFileDescription(probePath()), L"Prüfling");
    EXPECT_EQ(getFileDescription(folder.addFile(L"text.exe")), L"");
    EXPECT_EQ(getFileDescription(folder.path(L"missing.exe")), L"");
}

TEST(RetryUntil, CallsUntilTheFirstSuccess) {
    const struct {
        int32_t tries;
        int succeedsAt;
        bool result;
        int calls;
    } cases[] = {{10, 3, true, 3}, {3, 3, true, 3}, {3, 4, false, 3}, {0, 1, false, 0}};
    for (const auto& row : cases) {
        int calls = 0;
        EXPECT_EQ(retryUntil([&] { return ++calls == row.succeedsAt; }, row.tries, 0), row.result)
            << row.tries << " tries, success at " << row.succeedsAt;
        EXPECT_EQ(calls, row.calls);
    }
}

TEST_F(FilesTest, DeletesATreeWithAllThatIsInIt) {
    for (const wchar_t* separator : {L"", L"\\", L"/"}) {
        folder.addFile(L"tree\\a.txt");
        folder.addFile(L"tree\\ü\\.hidden");
        folder.addFile(L"tree\\ü\\deep\\er\\noextension");
        std::filesystem::create_directories(folder.path(L"tree\\empty"));
        SetFileAttributesW(folder.path(L"tree\\a.txt").c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
        EXPECT_TRUE(deleteDirectoryTree(folder.path(L"tree") + separator, 1, 0));
        EXPECT_FALSE(fileExists(folder.path(L"tree")));
    }
    EXPECT_TRUE(deleteDirectoryTree(folder.path(L"missing\\deeper"), 1, 0)) << "what is not there is deleted";
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(FilesTest, TheEmptyPathIsNotTheCurrentFolder) {
    wchar_t before[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, before);
    const std::wstring kept = folder.addFile(L"kept");
    ASSERT_TRUE(SetCurrentDirectoryW(folder.path().c_str()));
    EXPECT_TRUE(deleteDirectoryTree(L"", 1, 0));
    SetCurrentDirectoryW(before);
    EXPECT_TRUE(fileExists(kept));
}

TEST_F(FilesTest, LeavesAloneWhatALinkLeadsTo) {
    const std::wstring kept = folder.addFile(L"target\\kept");
    std::filesystem::create_directories(folder.path(L"tree"));
    for (const wchar_t* place : {L"", L"tree"}) {
        const Link link(folder.path(place), L"link", folder.path(L"target"), SYMBOLIC_LINK_FLAG_DIRECTORY);
        ASSERT_TRUE(link);
        // Wine cannot remove a link of the system below it, and so the walk ends there.
        deleteDirectoryTree(*place ? folder.path(place) : folder.path(L"link"), 1, 0);
        EXPECT_EQ(readFile(kept), "x") << place;
    }
}

TEST_F(FilesTest, StopsAtAFolderThatStays) {
    folder.addFile(L"tree\\sub\\file.txt");
    const std::wstring stuck = folder.path(L"tree\\sub");
    const FileHandle open(CreateFileW(stuck.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    ASSERT_TRUE(open);
    EXPECT_FALSE(deleteDirectoryTree(folder.path(L"tree"), 2, 1));
    EXPECT_THAT(log.take(),
                ElementsAre(LogEntry{logInfo, "deleteDirectoryTree",
                                     toUtf8(L"Failed to remove directory " + stuck + L": error=00000020")}));
}

}  // namespace
}  // namespace pdx
