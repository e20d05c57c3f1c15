#include "platform/Processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "platform/product/Client.h"
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

TEST(WaitForAll, WaitsForEachGroupAndRefusesWhatCannotBeWaitedFor) {
    std::vector<HANDLE> handles(2 * MAXIMUM_WAIT_OBJECTS, nullptr);
    std::vector<Handle> owners;
    for (HANDLE& handle : handles) handle = owners.emplace_back(CreateEventW(nullptr, TRUE, TRUE, nullptr)).get();
    EXPECT_TRUE(waitForAll(handles));
    handles.push_back(nullptr);
    EXPECT_FALSE(waitForAll(handles)) << "the last stands in a group of its own";
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

/// The product's key for the time of a test.
class LaunchClientTest : public testing::Test {
  protected:
    static constexpr wchar_t productKey[] = L"Software\\Corvane Works\\Palisade Desktop";

    ~LaunchClientTest() override {
        for (const RegistryView view : {view32, view64})
            RegistryKey::localMachine(view).deleteTree(L"Software\\Corvane Works");
    }

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
}

}  // namespace
}  // namespace pdx
