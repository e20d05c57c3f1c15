#include "platform/Files.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/Clock.h"
#include "platform/IoBound.h"
#include "platform/VersionInfo.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

TEST(Files, CopiesOnlyWhatIsMissing) {
    const TestFolder folder;
    const std::wstring source = folder.addFile(L"source", "new");
    const std::wstring present = folder.addFile(L"present", "old");
    EXPECT_TRUE(copyIfMissing(source, folder.path(L"target")));
    EXPECT_EQ(readFile(folder.path(L"target")), "new");
    EXPECT_TRUE(copyIfMissing(source, present));
    EXPECT_EQ(readFile(present), "old");
    EXPECT_TRUE(copyIfMissing(folder.path(L"missing"), present));
    EXPECT_FALSE(copyIfMissing(folder.path(L"missing"), folder.path(L"other")));
}

TEST(Files, ReadsTheFirstDescriptionInTheOrderOfTheLanguages) {
    const TestFolder folder;
    // The program names four languages: no block, a block without a description, then German before English.
    EXPECT_EQ(getFileDescription(probePath()), L"Prüfling");
    EXPECT_EQ(getFileDescription(folder.addFile(L"text.exe")), L"");
    EXPECT_EQ(getFileDescription(folder.path(L"missing.exe")), L"");
}

TEST(IoBound, EndsWhatDoesNotReturn) {
    FileHandle reader, writer;
    ASSERT_TRUE(CreatePipe(reader.put(), writer.put(), nullptr, 0));
    const IoBound bound(20);
    char byte = 0;
    DWORD read = 0;
    EXPECT_FALSE(ReadFile(reader.get(), &byte, 1, &read, nullptr)) << "nobody writes";
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_OPERATION_ABORTED));
}

TEST(IoBound, EndsNothingOfAThreadThatRunsBetweenItsOperations) {
    FileHandle reader, writer;
    ASSERT_TRUE(CreatePipe(reader.put(), writer.put(), nullptr, 0));
    constexpr DWORD period = 1000;
    const std::jthread slowDisc([&](const std::stop_token& end) {
        for (DWORD written = 0; !end.stop_requested(); WriteFile(writer.get(), "x", 1, &written, nullptr)) Sleep(170);
    });
    const IoBound bound(period);
    const ULONGLONG end = GetTickCount64() + 3 * period / 2;
    while (GetTickCount64() < end) {
        char byte = 0;
        DWORD read = 0;
        ASSERT_TRUE(ReadFile(reader.get(), &byte, 1, &read, nullptr)) << GetLastError();
        // Runs until the thread's time has changed: Wine counts it in steps of the host.
        FILETIME other{}, before{}, now{};
        GetThreadTimes(GetCurrentThread(), &other, &other, &other, &before);
        do GetThreadTimes(GetCurrentThread(), &other, &other, &other, &now);
        while (fileTimeOf(now) == fileTimeOf(before));
    }
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

}  // namespace
}  // namespace pdx
