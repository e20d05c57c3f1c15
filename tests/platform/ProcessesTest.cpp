#include "platform/Processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "platform/product/Client.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(WaitForAll, WaitsForEachGroupAndRefusesABadHandle) {
    std::vector<HANDLE> handles(2 * MAXIMUM_WAIT_OBJECTS, nullptr);
    std::vector<Handle> owners;
    for (HANDLE& handle : handles) handle = owners.emplace_back(CreateEventW(nullptr, TRUE, TRUE, nullptr)).get();
    for (HANDLE* late : {&handles.front(), &handles.back()}) {
        *late = owners.emplace_back(CreateWaitableTimerW(nullptr, TRUE, nullptr)).get();
        const LARGE_INTEGER soon{.QuadPart = -500'000};  // 50 ms
        ASSERT_TRUE(SetWaitableTimer(*late, &soon, 0, nullptr, nullptr, FALSE));
        EXPECT_TRUE(waitForAll(handles));
        EXPECT_EQ(WaitForSingleObject(*late, 0), WAIT_OBJECT_0);
    }
    handles.push_back(nullptr);
    EXPECT_FALSE(waitForAll(handles)) << "the last is a group of its own";
}

TEST(TerminateProcesses, EndsProcessesByNameInAnyCase) {
    const TestFolder folder;
    const Handle wanted = startProbe(L"wait", copyProbe(folder, L"PalisadeMany.exe"));
    const Handle spared = startProbe(L"wait", copyProbe(folder, L"PalisadeManyMore.exe"));
    const CapturedLog log;
    constexpr std::wstring_view names[] = {L"palisadeMANY.EXE", L"PalisadeNotRunning.exe"};
    terminateProcesses(names);
    EXPECT_EQ(WaitForSingleObject(wanted.get(), 0), WAIT_OBJECT_0) << "it has ended when the call returns";
    EXPECT_EQ(waitFor(wanted), 9u);
    EXPECT_EQ(WaitForSingleObject(spared.get(), 0), DWORD{WAIT_TIMEOUT});
    EXPECT_THAT(log.takeTexts(), ElementsAre("2 terminateProcesses Terminating PalisadeMany.exe"));
    TerminateProcess(spared.get(), 0);
    waitFor(spared);
}

TEST(StartProgram, PassesFileParametersAndFolderByEachRoute) {
    const TestFolder folder;
    const std::wstring report = folder.path(L"report.txt");
    for (Handle (*const start)(const ProgramStart&) : {startProgram, startByShell}) {
        const Handle probe = start({.file = probePath(),
                                    .parameters = L"record \"" + report + L"\" a \"b c\"",
                                    .folder = folder.path(),
                                    .show = SW_HIDE});
        ASSERT_TRUE(probe);
        EXPECT_EQ(waitFor(probe), 0u);
        EXPECT_EQ(readFile(report),
                  toUtf8(folder.path() + L"\n\"" + probePath() + L"\" record \"" + report + L"\" a \"b c\"\n"));
        DeleteFileW(report.c_str());
    }
}

class LaunchClientTest : public testing::Test {
  protected:
    TestKeys keys{{L"Software\\Corvane Works"}};
    RegistryKey machine = RegistryKey::localMachine(view64);
    TestFolder folder;
    CapturedLog log;
};

TEST_F(LaunchClientTest, StartsTheRecordedProgramInTheRecordedFolder) {
    const std::wstring install = folder.path(L"Inställation");
    CreateDirectoryW(install.c_str(), nullptr);
    const std::wstring report = folder.path(L"report.txt");
    machine.setSubKeyValue(productKey, L"InstallLocation", install);
    machine.setSubKeyValue(productKey, L"LauncherAppPath", probePath());

    RegistryKey user = RegistryKey::currentUser(view64);
    for (const bool userReplacesTheClass : {false, true}) {
        DeleteFileW(report.c_str());
        if (userReplacesTheClass)
            user.setSubKeyValue(L"Software\\Classes\\exefile\\shell\\open\\command", {}, L"C:\\none.exe");
        const Handle client = launchClient(L"record \"" + report + L"\" /checkForUpdate --authCode=a\"b");
        user.deleteTree(L"Software\\Classes\\exefile");
        ASSERT_TRUE(client);
        EXPECT_EQ(waitFor(client), 0u);
        EXPECT_EQ(readFile(report), toUtf8(install + L"\n\"" + probePath() + L"\" record \"" + report +
                                           L"\" /checkForUpdate --authCode=a\"b\n"));
    }
}

TEST_F(LaunchClientTest, StartsNothingWithoutARecordedProgram) {
    EXPECT_FALSE(launchClient(L""));
    EXPECT_THAT(log.takeTexts(), ElementsAre("0 RegistryKey::openSubKey Failed to open subkey " + toUtf8(productKey)));
    machine.setSubKeyValue(productKey, L"InstallLocation", folder.path());
    EXPECT_FALSE(launchClient(L""));
    // The 32-bit view does not count.
    RegistryKey::localMachine(view32).setSubKeyValue(productKey, L"LauncherAppPath", probePath());
    EXPECT_FALSE(launchClient(L"wait"));
}

}  // namespace
}  // namespace pdx
