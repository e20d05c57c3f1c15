#include "state/OlderClient.h"

#include <gtest/gtest.h>

#include "platform/Log.h"
#include "platform/Registry.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

void deleteKeys() {
    for (const RegistryView view : {view32, view64}) RegistryKey::localMachine(view).deleteTree(L"Software\\Bastion");
}

TEST(IsBastionInstalled, AsksForItsMarkerInThe32BitView) {
    struct Row {
        const char* name;
        RegistryView view;
        const wchar_t* valueName;
        RegistryValue value;
        bool installed;
    };
    const Row rows[] = {
        {"text", view32, L"InstallSuccesfull", L"true", true},
        {"empty text", view32, L"InstallSuccesfull", L"", false},
        {"zero reads as \"0\"", view32, L"InstallSuccesfull", 0u, true},
        {"the other view", view64, L"InstallSuccesfull", L"true", false},
        {"spelt rightly", view32, L"InstallSuccessful", L"true", false},
    };
    deleteKeys();
    EXPECT_FALSE(isBastionInstalled()) << "no key";
    for (const Row& row : rows) {
        ASSERT_TRUE(RegistryKey::localMachine(row.view).setSubKeyValue(L"Software\\Bastion", row.valueName, row.value));
        EXPECT_EQ(isBastionInstalled(), row.installed) << row.name;
        deleteKeys();
    }
}

TEST(TempUninstaller, IsWaitedForByTheHandleThatFoundIt) {
    // Ends the uninstaller between the find and the wait: its id is then free, unless somebody holds a handle to it.
    struct EndingLogger : Logger {
        void write(int32_t, const char*, int32_t, const char* message) override {
            if (!process || !std::string_view(message).starts_with("Found running Bastion Uninstaller")) return;
            const DWORD id = GetProcessId(process.get());
            TerminateProcess(process.get(), 0);
            waitFor(process);
            process.reset();
            waitFor(startProbe(L""));  // in the time of which the system forgets a process that nobody holds
            held = static_cast<bool>(Handle(OpenProcess(SYNCHRONIZE, FALSE, id)));
        }
        Handle process;
        bool held = false;
    };
    const TestFolder folder;
    const std::wstring uninstaller = folder.path(L"bui1.exe");
    CopyFileW(probePath().c_str(), folder.path(L"BastionUninstall.exe").c_str(), TRUE);
    const std::wstring sample = getModuleFilePath(L"harness\\client\\BastionUninstall.exe");
    ASSERT_TRUE(CopyFileW(sample.c_str(), uninstaller.c_str(), TRUE));
    RegistryKey::localMachine(view32).setSubKeyValue(L"Software\\Bastion", L"BastionPath", folder.path(L"Bastion.exe"));
    const auto logger = std::make_shared<EndingLogger>();
    logger->process = startProbe(L"--stay never", uninstaller);
    g_logger.set(logger);
    waitForBastionTempUninstallers();
    g_logger.clear();
    EXPECT_TRUE(logger->held);
    deleteKeys();
}

TEST(WaitForBastionTempUninstallers, StartsAndAwaitsNothingWithoutARecordedProgram) {
    for (const bool recorded : {false, true}) {
        if (recorded) RegistryKey::localMachine(view32).setSubKeyValue(L"Software\\Bastion", L"BastionPath", std::wstring());
        const CapturedLog log;
        waitForBastionTempUninstallers();
        for (const LogEntry& line : log.take()) EXPECT_NE(line.function, "waitForBastionTempUninstallers");
    }
    deleteKeys();
}

}  // namespace
}  // namespace pdx
