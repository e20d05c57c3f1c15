#include "platform/Processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>

#include "platform/Registry.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

std::wstring copyProbe(const TestFolder& folder, const std::wstring& name) {
    std::filesystem::copy_file(probePath(), folder.path(name));
    return folder.path(name);
}

std::multiset<std::wstring> runningPrograms() {
    std::multiset<std::wstring> names;
    ProcessSnapshot snapshot;
    for (PROCESSENTRY32W entry; snapshot.next(entry);) names.insert(entry.szExeFile);
    return names;
}

TEST(ProcessSnapshot, HoldsTheProcessesOfItsMoment) {
    const TestFolder folder;
    ProcessSnapshot before;
    const Handle probe = startProbe(L"wait", copyProbe(folder, L"PalisadeSnapshot.exe"));
    EXPECT_EQ(runningPrograms().count(L"PalisadeSnapshot.exe"), 1u);
    EXPECT_EQ(runningPrograms().count(getProcessFileName()), 1u);
    for (PROCESSENTRY32W entry; before.next(entry);) EXPECT_STRNE(entry.szExeFile, L"PalisadeSnapshot.exe");
    TerminateProcess(probe.get(), 0);
    waitFor(probe);
}

TEST(WaitForAll, WaitsForMoreThanTheSystemCanAtOnce) {
    for (const size_t count : {size_t{0}, size_t{1}, size_t{64}, size_t{65}, size_t{200}}) {
        std::vector<Handle> events(count);
        std::vector<HANDLE> handles;
        for (Handle& event : events) {
            event = Handle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
            handles.push_back(event.get());
        }
        std::atomic<size_t> signalled = 0;
        const Handle begun(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        std::thread signaller([&] {
            WaitForSingleObject(begun.get(), INFINITE);
            for (const HANDLE event : handles) {
                ++signalled;
                SetEvent(event);
            }
        });
        SetEvent(begun.get());
        EXPECT_TRUE(waitForAll(handles));
        EXPECT_EQ(signalled, count);
        signaller.join();
    }
    const HANDLE invalid[] = {INVALID_HANDLE_VALUE, nullptr};
    EXPECT_FALSE(waitForAll(invalid));
}

TEST(TerminateProcesses, EndsMoreThanTheSystemCanWaitForAtOnce) {
    constexpr size_t count = 70;
    static_assert(count > MAXIMUM_WAIT_OBJECTS);
    const TestFolder folder;
    const std::wstring wanted = copyProbe(folder, L"PalisadeMany.exe");
    const std::wstring other = copyProbe(folder, L"PalisadeManyMore.exe");
    std::vector<Handle> probes;
    for (size_t i = 0; i < count; ++i) probes.push_back(startProbe(L"wait", wanted));
    const Handle spared = startProbe(L"wait", other);
    const CapturedLog log;

    constexpr std::wstring_view names[] = {L"palisadeMANY.EXE", L"PalisadeNotRunning.exe"};
    terminateProcesses(names);

    for (const Handle& probe : probes) {
        EXPECT_EQ(WaitForSingleObject(probe.get(), 0), WAIT_OBJECT_0) << "all have ended when it returns";
        EXPECT_EQ(waitFor(probe), 9u);
    }
    EXPECT_EQ(WaitForSingleObject(spared.get(), 0), DWORD{WAIT_TIMEOUT});
    const std::vector<LogEntry> lines = log.take();
    EXPECT_EQ(lines.size(), count);
    EXPECT_THAT(lines, Each(LogEntry{logInfo, "terminateProcesses", "Terminating PalisadeMany.exe"}));
    TerminateProcess(spared.get(), 0);
    waitFor(spared);
}

TEST(TerminateProcesses, DoesNothingWhereNothingRuns) {
    const CapturedLog log;
    constexpr std::wstring_view names[] = {L"PalisadeNotRunning.exe", L""};
    terminateProcesses(names);
    terminateProcesses({});
    EXPECT_THAT(log.take(), IsEmpty());
}

/// The product's key for the time of a test.
class LaunchClientTest : public testing::Test {
  protected:
    static constexpr wchar_t productKey[] = L"Software\\Corvane Works\\Palisade Desktop";

    ~LaunchClientTest() override { RegDeleteTreeW(machine.openSubKey(L"Software", true).get(), L"Corvane Works"); }

    RegistryKey machine = RegistryKey::localMachine(view64);
    TestFolder folder;
    CapturedLog log;
};

TEST_F(LaunchClientTest, StartsTheRecordedProgramInTheRecordedFolder) {
    std::filesystem::create_directories(folder.path(L"Inställation"));
    const std::wstring install = folder.path(L"Inställation");
    const std::wstring report = folder.path(L"report.txt");
    machine.setSubKeyValue(productKey, L"InstallLocation", install);
    machine.setSubKeyValue(productKey, L"LauncherAppPath", probePath());

    const Handle client = launchClient(L"record \"" + report + L"\" /checkForUpdate --authCode=a\"b");
    ASSERT_TRUE(client);
    EXPECT_EQ(waitFor(client), 0u);
    EXPECT_EQ(readFile(report), toUtf8(install + L"\n\"" + probePath() + L"\" record \"" + report +
                                       L"\" /checkForUpdate --authCode=a\"b\n"));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(LaunchClientTest, StartsNothingWithoutARecordedProgram) {
    EXPECT_FALSE(launchClient(L""));
    EXPECT_THAT(log.take(), ElementsAre(LogEntry{logError, "RegistryKey::openSubKey",
                                                 "Failed to open subkey " + toUtf8(productKey)}));
    machine.setSubKeyValue(productKey, L"InstallLocation", folder.path());
    EXPECT_FALSE(launchClient(L""));
    // What the 32-bit view says does not count.
    RegistryKey::localMachine(view32).setSubKeyValue(productKey, L"LauncherAppPath", probePath());
    EXPECT_FALSE(launchClient(L"wait"));
    RegDeleteTreeW(RegistryKey::localMachine(view32).openSubKey(L"Software", true).get(), L"Corvane Works");
}

}  // namespace
}  // namespace pdx
