#include "state/ElevatedBinaries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "config/Settings.h"
#include "platform/Processes.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Link.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

TEST(ElevatedBinaries, AreLockedUnderEachNameOfTheTemporaryFolder) {
    const TestFolder folder;
    folder.addFile(L"A temporary folder\\.be\\setup.exe");
    folder.addFile(L"A temporary folder\\.be\\version.dll");
    const std::wstring temporary = folder.path(L"A temporary folder");
    DWORD session = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    const std::wstring ofSession = temporary + L'\\' + std::to_wstring(session);
    CreateDirectoryW(ofSession.c_str(), nullptr);
    for (const std::wstring& name : {temporary, getShortPathName(temporary), ofSession}) {
        const ScopedVariable variable(L"TMP", name);
        const CapturedLog log;
        std::vector<FileHandle> files;
        EXPECT_FALSE(LockElevatedBinaries(files, temporary + L"\\.be", L"setup.exe")) << "nobody signed them";
        EXPECT_THAT(files, testing::SizeIs(2)) << toUtf8(name);
    }
    EXPECT_NE(getShortPathName(temporary), temporary);
}

/// Changes a link with the first line that is logged.
struct LinkChanger : Logger {
    void write(int32_t, const char*, int32_t, const char* message) override {
        if (std::exchange(first, false)) change();
        last = message;
    }
    std::function<void()> change;
    bool first = true;
    std::string last;
};

TEST(ElevatedBinaries, AreRefusedIfALinkChangesBetweenThem) {
    const TestFolder folder;
    for (const wchar_t* target : {L"one", L"other"}) {
        folder.addFile(std::wstring(target) + L"\\temp\\.be\\setup.exe");
        folder.addFile(std::wstring(target) + L"\\temp\\.be\\version.dll");
    }
    const ScopedVariable variable(L"TMP", folder.path(L"link\\temp"));
    g_configurable = true;
    for (const wchar_t* second : {L"one", L"other"}) {
        auto link = std::make_unique<Link>(folder.path(), L"link", folder.path(L"one"), SYMBOLIC_LINK_FLAG_DIRECTORY);
        ASSERT_TRUE(*link);
        const auto log = std::make_shared<LinkChanger>();
        log->change = [&] {
            link.reset();
            link = std::make_unique<Link>(folder.path(), L"link", folder.path(second), SYMBOLIC_LINK_FLAG_DIRECTORY);
        };
        g_logger.set(log);
        std::vector<FileHandle> files;
        const bool same = second == std::wstring(L"one");
        EXPECT_EQ(LockElevatedBinaries(files, folder.path(L"link\\temp\\.be"), L"setup.exe"), same) << log->last;
        EXPECT_EQ(lockedExecutable(files), folder.path(L"one\\temp\\.be\\setup.exe"));
    }
    g_logger.clear();
    g_configurable = false;
}

TEST(ElevatedStart, EndsWithAChildOrTheProcess) {
    constexpr DWORD soon = 300;  // ms
    constexpr DWORD never = 60'000;
    const CapturedLog log;
    const auto goesOn = [] { return false; };
    const TestFolder folder;
    const std::wstring child = folder.path(L"elevated child.exe");
    ASSERT_TRUE(CopyFileW(probePath().c_str(), child.c_str(), TRUE));
    const Handle childless = startProbe(L"wait");
    EXPECT_FALSE(awaitElevatedStart(childless.get(), goesOn, soon));
    EXPECT_FALSE(awaitElevatedStart(
        childless.get(), [] { return true; }, never));
    EXPECT_THAT(log.take(), testing::SizeIs(1)) << "of the bound alone";
    TerminateProcess(childless.get(), 0);
    EXPECT_TRUE(awaitElevatedStart(childless.get(), goesOn, never));
    EXPECT_TRUE(awaitElevatedStart(nullptr, goesOn, never)) << "the user has refused";

    const Handle parent = startProbe(L"/c \"\"" + child + L"\" wait\"", getEnvironmentText(L"ComSpec"));
    EXPECT_TRUE(awaitElevatedStart(parent.get(), goesOn, never));
    EXPECT_EQ(WaitForSingleObject(parent.get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
    const std::wstring_view names[] = {L"elevated child.exe"};
    terminateProcesses(names);
    waitFor(parent);
}

}  // namespace
}  // namespace pdx
