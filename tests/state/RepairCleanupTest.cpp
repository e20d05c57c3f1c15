#include "state/RepairCleanup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "platform/Paths.h"
#include "platform/Registry.h"
#include "platform/RegistryPaths.h"
#include "platform/Text.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

/// A client that is recorded at a location, and a clean-up of it.
class RepairCleanupTest : public testing::Test {
  protected:
    RepairCleanupTest() { forget(); }
    ~RepairCleanupTest() override { forget(); }

    static void forget() {
        for (const RegistryView view : {view32, view64})
            RegistryKey::localMachine(view).deleteTree(L"Software\\Corvane Works");
    }
    static bool isRecorded() {
        return static_cast<bool>(RegistryKey::localMachine(view64).openSubKey(productKey, false));
    }

    bool cleanUp(const std::wstring& location) {
        RegistryKey::localMachine(view64).setSubKeyValue(productKey, L"InstallLocation", location);
        RepairRun run;
        run.providerKey = L"{none}";
        run.isCancelled = [] { return false; };
        run.begin = [this](RepairStep step) {
            if (step == RepairStep::deleteFolder && atFolder) atFolder();
        };
        run.omitDesktopShortcut = [] {};
        run.keepInstallFolder = [this](const std::wstring& kept) { keptFolder = kept; };
        return cleanUpForRepair(run) == RepairResult::done;
    }

    TestFolder folder;
    std::function<void()> atFolder;  ///< comes when processes and service are down and the folder's turn is near
    std::wstring keptFolder;
};

TEST_F(RepairCleanupTest, DeletesTheRecordedFolderIfItCanBeTheClientsOwn) {
    const std::wstring client = folder.path(L"client");
    struct Row {
        std::wstring location;
        bool ends;
        bool folderGoes;
    };
    const Row rows[] = {
        {client, true, true},
        {client + L"\\", true, true},
        {client + L"/", true, true},
        {client + L"\\\\", true, true},
        {L"", true, false},
        {folder.path(L"missing"), true, false},
        {L"client", false, false},
        {client.substr(0, 3), false, false},
        {getProfilePath() + L"\\ ", false, false},
    };
    wchar_t before[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, before);
    ASSERT_TRUE(SetCurrentDirectoryW(folder.path().c_str()));
    for (const Row& row : rows) {
        folder.addFile(L"client\\Palisade Desktop\\file.txt");
        keptFolder.clear();
        const CapturedLog log;
        EXPECT_EQ(cleanUp(row.location), row.ends) << row.location;
        EXPECT_NE(std::filesystem::exists(client), row.folderGoes) << row.location;
        // What follows the folder comes after it alone, and the next install gets it.
        EXPECT_NE(isRecorded(), row.ends) << row.location;
        EXPECT_EQ(keptFolder, row.ends ? row.location : L"");
        const std::string refusal = "The recorded install folder is not deleted: \"" + toUtf8(row.location) + "\"";
        const auto lines = log.take();
        EXPECT_EQ(std::ranges::count(lines, LogEntry{logError, "performRepairCleanup", refusal}), row.ends ? 0 : 1);
    }
    SetCurrentDirectoryW(before);
}

TEST_F(RepairCleanupTest, WaitsForWhatIsStartedBehindItsBack) {
    const std::wstring program = folder.path(L"client\\PalisadeDesktop.exe");
    std::filesystem::create_directories(folder.path(L"client"));
    std::filesystem::copy_file(probePath(), program);
    std::thread ender;
    atFolder = [&] {
        folder.addFile(L"client\\new\\file.txt");
        ender = std::thread([process = startProbe(L"wait", program)] {
            Sleep(400);
            TerminateProcess(process.get(), 0);
        });
    };
    EXPECT_TRUE(cleanUp(folder.path(L"client")));
    ender.join();
    EXPECT_FALSE(std::filesystem::exists(folder.path(L"client")));
}

}  // namespace
}  // namespace pdx
