#include "state/Bastion.h"

#include <gtest/gtest.h>

#include "platform/product/RegistryPaths.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

class BastionTest : public testing::Test {
  protected:
    TestKeys keys{{bastionKey}};
    RegistryKey machine = RegistryKey::localMachine(view32);
};

TEST_F(BastionTest, IsInstalledIfItsMarkerIsInThe32BitView) {
    const struct {
        const char* name;
        RegistryView view;
        const wchar_t* valueName;
        RegistryValue value;
        bool installed;
    } rows[] = {
        {"text", view32, L"InstallSuccesfull", L"true", true},
        {"empty text", view32, L"InstallSuccesfull", L"", false},
        {"zero reads as \"0\"", view32, L"InstallSuccesfull", 0u, true},
        {"the other view", view64, L"InstallSuccesfull", L"true", false},
        {"spelled correctly", view32, L"InstallSuccessful", L"true", false},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(RegistryKey::localMachine(row.view).setSubKeyValue(bastionKey, row.valueName, row.value));
        EXPECT_EQ(isBastionInstalled(), row.installed) << row.name;
        keys.clear();
    }
}

TEST_F(BastionTest, WaitsForTheUninstallerByTheHandleThatFoundIt) {
    // Ends the uninstaller between the find and the wait: its id is then free, unless a handle to it is open.
    struct EndingLogger : Logger {
        void write(int32_t, const char*, int32_t, const char* message) override {
            if (!process || !std::string_view(message).starts_with("Found running Bastion Uninstaller")) return;
            const DWORD id = GetProcessId(process.get());
            TerminateProcess(process.get(), 0);
            waitFor(process);
            process.reset();
            waitFor(startProbe(L""));  // meanwhile the system frees the id of a process without handles
            held = static_cast<bool>(Handle(OpenProcess(SYNCHRONIZE, FALSE, id)));
        }
        Handle process;
        bool held = false;
    };
    const TestFolder folder;
    const std::wstring uninstaller = folder.path(L"bui1.exe");
    copyProbe(folder, L"BastionUninstall.exe");
    std::filesystem::copy_file(getModuleFilePath(L"harness\\client\\BastionUninstall.exe"), uninstaller);
    machine.setSubKeyValue(bastionKey, L"BastionPath", folder.path(L"Bastion.exe"));
    const auto logger = std::make_shared<EndingLogger>();
    logger->process = startProbe(L"--stay never", uninstaller);
    g_logger.set(logger);
    waitForBastionTempUninstallers();
    g_logger.clear();
    EXPECT_TRUE(logger->held);
}

TEST_F(BastionTest, WaitsForNoUninstallerWithoutARecordedProgram) {
    for (const bool recorded : {false, true}) {
        if (recorded) machine.setSubKeyValue(bastionKey, L"BastionPath", L"");
        const CapturedLog log;
        waitForBastionTempUninstallers();
        for (const LogEntry& line : log.take()) EXPECT_NE(line.function, "waitForBastionTempUninstallers");
    }
}

}  // namespace
}  // namespace pdx
