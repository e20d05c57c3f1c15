#include "state/FileLocks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/CapturedLog.h"
#include "tests/platform/Link.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using namespace testing;

LogEntry line(const char* function, const std::wstring& message) { return {logInfo, function, toUtf8(message)}; }

class LockFileTest : public testing::Test {
  protected:
    HANDLE lock(const std::wstring& path, DWORD disposition = OPEN_EXISTING, DWORD share = FILE_SHARE_READ,
                DWORD access = GENERIC_READ) {
        return LockFile(locked, path, access, share, disposition, prefix);
    }
    /// Expects the lines of 25 tries that all ended with the error.
    void expectTries(const std::wstring& path, const char* number) {
        const std::string beginning = "Failed to lock file " + toUtf8(path) + ": ";
        EXPECT_THAT(log.take(),
                    AllOf(SizeIs(25),
                          Each(Field(&LogEntry::message, AllOf(StartsWith(beginning),
                                                               testing::EndsWith(" (" + std::string(number) + ")"))))));
        EXPECT_THAT(locked, IsEmpty());
    }

    TestFolder folder;
    CapturedLog log;
    std::vector<FileHandle> locked;
    std::wstring prefix = GetFinalPath(getSessionTempPath());
};

TEST_F(LockFileTest, HoldsAFileAgainstChange) {
    const std::wstring path = folder.addFile(L"a folder\\some file.log");
    const HANDLE handle = lock(path);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    EXPECT_THAT(log.take(), ElementsAre(line("LockFile", L"Locked " + path)));
    ASSERT_THAT(locked, SizeIs(1));
    EXPECT_EQ(locked[0].get(), handle);

    constexpr DWORD anyShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    EXPECT_TRUE(holdFile(path, GENERIC_READ, anyShare));
    EXPECT_FALSE(holdFile(path, GENERIC_WRITE, anyShare));
    EXPECT_FALSE(DeleteFileW(path.c_str()));
    EXPECT_FALSE(MoveFileW(path.c_str(), folder.path(L"moved").c_str()));

    locked.clear();
    EXPECT_TRUE(DeleteFileW(path.c_str()));
}

TEST_F(LockFileTest, ReplacesAnExistingFile) {
    const std::wstring path = folder.addFile(L"client.log", "of an earlier run");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    for (const std::wstring& created : {path, folder.path(L"fresh.log")}) {
        const HANDLE handle =
            lock(created, CREATE_NEW, FILE_SHARE_READ | FILE_SHARE_WRITE, GENERIC_READ | GENERIC_WRITE);
        ASSERT_NE(handle, INVALID_HANDLE_VALUE) << toUtf8(created);
        EXPECT_EQ(GetFileSize(handle, nullptr), 0u) << toUtf8(created);
        EXPECT_TRUE(holdFile(created, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE)) << "its writer may open it";
        EXPECT_FALSE(DeleteFileW(created.c_str())) << toUtf8(created);
    }
    EXPECT_THAT(locked, SizeIs(2));
}

TEST_F(LockFileTest, ChangesNothingInTheTargetOfALink) {
    const std::wstring kept = folder.addFile(L"target\\earlier.log", "somebody's");
    const Link link(folder.path(), L"link", folder.path(L"target"), SYMBOLIC_LINK_FLAG_DIRECTORY);
    ASSERT_TRUE(link);
    for (const wchar_t* name : {L"link\\earlier.log", L"link\\fresh.log"}) {
        EXPECT_EQ(lock(folder.path(name), CREATE_NEW, FILE_SHARE_READ | FILE_SHARE_WRITE, GENERIC_WRITE),
                  INVALID_HANDLE_VALUE);
        expectTries(folder.path(name), "00000000");
    }
    EXPECT_EQ(readFile(kept), "somebody's");
    EXPECT_FALSE(std::filesystem::exists(folder.path(L"target\\fresh.log")));
}

TEST_F(LockFileTest, AcceptsTheShortNameOfTheTrustedFolder) {
    const std::wstring path = folder.addFile(L"A long folder name\\some file.log");
    const std::wstring shortFolder = getShortPathName(folder.path(L"A long folder name"));
    ASSERT_NE(shortFolder, folder.path(L"A long folder name"));
    // The prefix is the long form in each case.
    prefix = GetFinalPath(shortFolder);
    ASSERT_TRUE(prefix.ends_with(L"\\A long folder name"));
    EXPECT_NE(lock(shortFolder + L"\\some file.log"), INVALID_HANDLE_VALUE);
    EXPECT_NE(lock(path), INVALID_HANDLE_VALUE);
    // Below the trusted folder another spelling is as good as a link.
    locked.clear();
    EXPECT_THAT(log.take(), SizeIs(2)) << "two successes";
    prefix = GetFinalPath(folder.path());
    EXPECT_EQ(lock(shortFolder + L"\\some file.log"), INVALID_HANDLE_VALUE);
    expectTries(shortFolder + L"\\some file.log", "00000000");
}

TEST_F(LockFileTest, LocksAFileThatIsReleasedInTime) {
    const std::wstring path = folder.addFile(L"held.log");
    FileHandle holder = holdFile(path, GENERIC_READ | GENERIC_WRITE, 0);
    ASSERT_TRUE(holder);
    // Closes the file at the first failure that is logged.
    struct Releaser : Logger {
        explicit Releaser(FileHandle& given) : held(given) {}
        void write(int32_t, const char*, int32_t, const char* message) override {
            messages.emplace_back(message);
            held.reset();
        }
        FileHandle& held;
        std::vector<std::string> messages;
    };
    const auto releaser = std::make_shared<Releaser>(holder);
    g_logger.set(releaser);
    EXPECT_NE(lock(path), INVALID_HANDLE_VALUE);
    EXPECT_THAT(releaser->messages, ElementsAre(testing::EndsWith(" (00000020)"), "Locked " + toUtf8(path)));
}

TEST_F(LockFileTest, LocksNothingWithoutAnExpectedPath) {
    const std::wstring path = folder.addFile(L"a.log");
    const LogEntry givenUp = line("LockFile", L"Failed to determine expected final path for " + path);
    prefix = L"C:\\Temp";
    EXPECT_EQ(lock(path), INVALID_HANDLE_VALUE);
    EXPECT_THAT(log.take(), ElementsAre(line("GetExpectedFinalPath", L"Bad finalPrefix: C:\\Temp"), givenUp));
    prefix = L"\\\\?\\C:\\nowhere";
    EXPECT_EQ(lock(path), INVALID_HANDLE_VALUE);
    EXPECT_THAT(log.take(),
                ElementsAre(line("GetExpectedFinalPath", L"Never found temp path prefix for " + path), givenUp));
    // Longer than the system joins.
    prefix = GetFinalPath(getSessionTempPath());
    std::wstring longPath = folder.path();
    while (longPath.size() < 32'760) longPath += L"\\component";
    EXPECT_EQ(GetExpectedFinalPath(prefix, longPath), L"");
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(GetFinalPath(folder.path(L"none")), L"");
    EXPECT_THAT(log.take(), ElementsAre(line("GetFinalPath", L"Failed to get final path for " + folder.path(L"none") +
                                                                 L"; error=00000002")));
}

}  // namespace
}  // namespace pdx
