#include "state/RepairCleanup.h"

#include <gtest/gtest.h>
// shlobj.h needs the types of windows.h.
#include <shlobj.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "platform/FoundFolder.h"
#include "platform/Paths.h"
#include "platform/product/Client.h"
#include "platform/product/InstallerVersion.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/Text.h"
#include "platform/VersionInfo.h"
#include "state/ProtectedFolders.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Link.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

/// A client that is recorded at a location, and a clean-up of it.
class RepairCleanupTest : public testing::Test {
  protected:
    static bool isRecorded() {
        return static_cast<bool>(RegistryKey::localMachine(view64).openSubKey(productKey, false));
    }

    static RegistryValue unavailable(RegistryView view) {
        return RegistryKey::localMachine(view).getSubKeyValue(productKey, L"IsUnavailable");
    }

    RepairResult cleanUp(const std::wstring& location) {
        RegistryKey::localMachine(view64).setSubKeyValue(productKey, L"InstallLocation", location);
        steps.clear();
        int asked = 0;
        RepairRun run;
        run.providerKey = L"{none}";
        run.isCancelled = [&] { return ++asked == cancelledAt; };
        run.begin = [this](RepairStep step) {
            steps.push_back(step);
            if (step == RepairStep::deleteFolder && atFolder) atFolder();
        };
        run.omitDesktopShortcut = [] {};
        run.keepInstallFolder = [this](const std::wstring& kept) { keptFolder = kept; };
        return removeInstalledClient(run);
    }

    const TestKeys keys{{L"Software\\Corvane Works"}};
    TestFolder folder;
    std::function<void()> atFolder;  ///< called before the deletion of the folder
    int cancelledAt = 0;             ///< which question for a cancel returns true
    std::vector<RepairStep> steps;
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
    const CurrentFolder before;
    for (const Row& row : rows) {
        ASSERT_TRUE(SetCurrentDirectoryW(folder.path().c_str()));
        folder.addFile(L"client\\Palisade Desktop\\file.txt");
        keptFolder.clear();
        const CapturedLog log;
        EXPECT_EQ(cleanUp(row.location), row.ends ? RepairResult::done : RepairResult::failed) << row.location;
        EXPECT_NE(std::filesystem::exists(client), row.folderGoes) << row.location;
        // The later steps run only after the deletion, and the next install gets the folder.
        EXPECT_NE(isRecorded(), row.ends) << row.location;
        EXPECT_EQ(keptFolder, row.ends ? row.location : L"");
        const std::string refusal = "The recorded install folder is not deleted: \"" + toUtf8(row.location) + "\"";
        const auto lines = log.take();
        EXPECT_EQ(std::ranges::count(lines, LogEntry{logError, "performRepairCleanup", refusal}), row.ends ? 0 : 1);
    }
}

TEST_F(RepairCleanupTest, ChangesNothingIfTheFolderIsRefused) {
    const std::wstring programs = L"C:\\Program Files";
    const std::wstring shellFolders = L"\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
    std::vector<std::wstring> refused = {
        getKnownFolderPath(FOLDERID_Windows) + L"\\deep\\er",
        getKnownFolderPath(FOLDERID_UserProfiles),
        getKnownFolderPath(FOLDERID_UserProfiles) + L"\\anybody",
        getKnownFolderPath(FOLDERID_Public) + L"\\Documents",
        programs,
        programs + L"\\Common Files\\a\\b",
        programs + L" (x86)",
        programs + L" (x86)\\Common Files\\a\\b",
        getKnownFolderPath(FOLDERID_ProgramData),
        getKnownFolderPath(FOLDERID_ProgramData) + L"\\Microsoft\\Crypto\\Keys",
        getKnownFolderPath(FOLDERID_ProgramData) + L"\\Package Cache\\{id}\\v1",
        getShortPathName(programs),
        getProfilePath() + L"\\Favorites",
    };
    // Somebody else's profile, which need not be where most are.
    const ScopedVariable base(L"PDXTEST_PROFILES", folder.path());
    constexpr wchar_t account[] = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\S-1-5-21-1-2-3-1001";
    constexpr wchar_t profile[] = L"%PDXTEST_PROFILES%\\player";
    RegistryKey machine = RegistryKey::localMachine(view64);
    RegSetValueExW(machine.createSubKey(account, true).get(), L"ProfileImagePath", 0, REG_EXPAND_SZ,
                   reinterpret_cast<const BYTE*>(profile), sizeof profile);
    refused.push_back(folder.path());
    for (const wchar_t* name :
         {L"", L"\\3D Objects", L"\\AppData", L"\\AppData\\Local", L"\\AppData\\LocalLow", L"\\AppData\\Roaming",
          L"\\AppData\\Local\\Programs", L"\\Contacts", L"\\Desktop", L"\\Documents", L"\\Downloads", L"\\Favorites",
          L"\\Links", L"\\Music", L"\\OneDrive", L"\\Pictures", L"\\Saved Games", L"\\Searches", L"\\Videos"})
        refused.push_back(folder.path(L"player") + name);
    // And folders that the same account has moved.
    const std::wstring hive = L"S-1-5-21-1-2-3-1001";
    const std::pair<const wchar_t*, std::wstring> moves[] = {{L"My Music", folder.path(L"elsewhere\\tunes")},
                                                             {L"My Video", L"%UserProfile%\\films"}};
    for (const auto& [name, place] : moves)
        RegSetKeyValueW(HKEY_USERS, (hive + shellFolders).c_str(), name, REG_EXPAND_SZ, place.c_str(),
                        (place.size() + 1) * sizeof place[0]);
    for (const wchar_t* name : {L"elsewhere\\tunes", L"elsewhere", L"player\\films"})
        refused.push_back(folder.path(name));
    const auto expectRefused = [this](const std::wstring& location) {
        keptFolder.clear();
        EXPECT_EQ(cleanUp(location), RepairResult::failed) << location;
        EXPECT_EQ(steps, std::vector{RepairStep::deleteFolder}) << location;
        EXPECT_EQ(keptFolder, L"") << location;
        for (const RegistryView view : {view32, view64}) EXPECT_EQ(unavailable(view), RegistryValue()) << location;
    };
    for (const std::wstring& location : refused) expectRefused(location);
    EXPECT_EQ(cleanUp(folder.path(L"player\\Games")), RepairResult::done);
    EXPECT_EQ(cleanUp(folder.path(L"player\\AppData\\Local\\Palisade")), RepairResult::done);
    machine.deleteTree(account);
    RegDeleteTreeW(HKEY_USERS, hive.c_str());
    keys.clear();

    // This account's folders, each moved elsewhere. Windows calls the last but two "My Video".
    constexpr wchar_t moved[] = L"%PDXTEST_PROFILES%\\moved";
    RegistryKey own = RegistryKey::currentUser(view64).createSubKey(shellFolders.substr(1), true);
    for (const wchar_t* name : {L"Desktop", L"Personal", L"{374DE290-123F-4565-9164-39C4925E467B}", L"My Pictures",
                                L"My Music", L"My Videos", L"Local AppData", L"AppData"}) {
        SCOPED_TRACE(toUtf8(name));
        RegSetValueExW(own.get(), name, 0, REG_EXPAND_SZ, reinterpret_cast<const BYTE*>(moved), sizeof moved);
        expectRefused(folder.path(L"moved"));
        own.deleteValue(name);
    }
}

TEST(ProtectedFolders, AreOpenedBelowADriveOnly) {
    const std::wstring windows = getKnownFolderPath(FOLDERID_Windows);
    const auto volumes = withFinalPaths({{windows, 0}, {L"\\\\?\\" + windows, 0}});
    ASSERT_TRUE(volumes);
    EXPECT_EQ(volumes->at(0).path, volumePathOf(windows));
    EXPECT_EQ(volumes->at(1).path, L"");
}

TEST(ProtectedFolders, AreGivenUpAtTheBoundInTime) {
    EXPECT_FALSE(withFinalPaths({{getKnownFolderPath(FOLDERID_Windows), 0}}, std::chrono::milliseconds(0)));
}

TEST_F(RepairCleanupTest, JudgesAFolderWithoutAFinalPathAsItIsSpelt) {
    // Wine gives no final path of more than 260 characters, and takes such a path by a link.
    std::filesystem::create_directories(folder.path(std::wstring(130, L'a')));
    const Link link(folder.path(), L"l", folder.path(std::wstring(130, L'a')), SYMBOLIC_LINK_FLAG_DIRECTORY);
    ASSERT_TRUE(link);
    const std::wstring client = folder.path(L"l\\" + std::wstring(100, L'b'));
    folder.addFile(L"l\\" + std::wstring(100, L'b') + L"\\file");
    ASSERT_EQ(findFolder(client).volumePath, L"");
    const CapturedLog log;
    EXPECT_EQ(cleanUp(client), RepairResult::done);
    EXPECT_FALSE(std::filesystem::exists(client));
    const std::string line = "Without a final path the install folder is judged as it is spelt: \"";
    EXPECT_EQ(std::ranges::count(log.take(), LogEntry{logInfo, "performRepairCleanup", line + toUtf8(client) + '"'}),
              1);
}

TEST_F(RepairCleanupTest, StopsAtACancelBeforeTheServiceStep) {
    const std::wstring file = folder.addFile(L"client\\file.txt");
    const Handle program = startProbe(L"wait", copyProbe(folder, L"PalisadeDesktop.exe"));
    for (const auto& [question, mark] : {std::pair(1, RegistryValue()), {2, RegistryValue(1u)}}) {
        cancelledAt = question;
        EXPECT_EQ(cleanUp(folder.path(L"client")), RepairResult::cancelled);
        EXPECT_TRUE(steps.empty() && isRecorded() && std::filesystem::exists(file)) << question;
        EXPECT_EQ(WaitForSingleObject(program.get(), 0) == WAIT_OBJECT_0, question == 2);
        for (const RegistryView view : {view32, view64}) EXPECT_EQ(unavailable(view), mark) << question;
    }
}

TEST_F(RepairCleanupTest, EndsEveryProgramOfTheClient) {
    const auto start = [this](const std::wstring& name) { return startProbe(L"wait", copyProbe(folder, name)); };
    std::vector<Handle> programs;
    for (const wchar_t* name : {L"Connect_microsoft", L"CrashReporter", L"Desktop", L"Destager", L"ErrorReporter",
                                L"Glue", L"Launcher", L"LaunchHelper", L"LocalHostSvc", L"SteamProxy", L"Uninstall"})
        programs.push_back(start(std::wstring(L"Palisade") + name + L".exe"));
    programs.push_back(start(L"GateLink.exe"));
    const Handle other = start(L"Palisade.exe");
    EXPECT_EQ(cleanUp(L""), RepairResult::done);
    for (size_t index = 0; index < programs.size(); ++index)
        EXPECT_EQ(WaitForSingleObject(programs[index].get(), 0), WAIT_OBJECT_0) << index;
    EXPECT_EQ(WaitForSingleObject(other.get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
    for (const Handle& program : programs) TerminateProcess(program.get(), 0);
    TerminateProcess(other.get(), 0);
    waitFor(other);
}

TEST_F(RepairCleanupTest, KeepsALinkWithoutASavedCommandAndWritesItsVersion) {
    RegistryKey classes = RegistryKey::classesRoot(view64);
    constexpr wchar_t command[] = L"gatelink\\shell\\open\\command";
    for (const wchar_t* key : {command, L"palisadeconnect.microsoft\\shell\\open\\command"})
        classes.setSubKeyValue(key, L"", L"somebody's");
    const std::wstring entry = uninstallKey + std::wstring(L"\\{none}");
    RegistryKey machine = RegistryKey::localMachine(view32);
    machine.setSubKeyValue(entry, L"BundleVersion", L"1.2.3.4");
    EXPECT_EQ(cleanUp(L""), RepairResult::done);
    EXPECT_EQ(classes.getSubKeyValue(command, L""), RegistryValue(L"somebody's"));
    EXPECT_FALSE(classes.openSubKey(L"palisadeconnect.microsoft", false));
    EXPECT_EQ(machine.getSubKeyValue(entry, L"BundleVersion"), RegistryValue(toWide(installerVersion)));
    classes.deleteTree(L"gatelink");
    machine.deleteTree(entry);
}

TEST_F(RepairCleanupTest, ReadsNoVersionFromTheCurrentFolder) {
    std::filesystem::create_directories(folder.path(L"Palisade Desktop"));
    for (const wchar_t* place : {L"probe.exe", L"Palisade Desktop\\probe.exe"}) copyProbe(folder, place);
    const CurrentFolder before;
    ASSERT_TRUE(SetCurrentDirectoryW(folder.path().c_str()));
    EXPECT_NE(getFileVersion(L"probe.exe"), "");
    EXPECT_EQ(getProgramVersion(folder.path(), L"probe.exe"), getFileVersion(L"probe.exe"));
    // The second has room for the folder of programs alone.
    for (const size_t length : {size_t{250}, size_t{241}, size_t{0}}) {
        const std::wstring location = length == 0 ? L"" : L"C:\\" + std::wstring(length - 3, L'x');
        EXPECT_EQ(getProgramVersion(location, L"probe.exe"), "") << length;
    }
}

TEST_F(RepairCleanupTest, WaitsForAProgramStartedMeanwhileAndLeavesTheCurrentFolder) {
    std::filesystem::create_directories(folder.path(L"client"));
    const std::wstring program = copyProbe(folder, L"client\\PalisadeDesktop.exe");
    std::thread ender;
    atFolder = [&] {
        folder.addFile(L"client\\new\\file.txt");
        ender = std::thread([process = startProbe(L"wait", program)] {
            Sleep(400);
            TerminateProcess(process.get(), 0);
        });
    };
    const CurrentFolder before;
    ASSERT_TRUE(SetCurrentDirectoryW(folder.path(L"client").c_str()));
    EXPECT_EQ(cleanUp(folder.path(L"client")), RepairResult::done);
    ender.join();
    EXPECT_FALSE(std::filesystem::exists(folder.path(L"client")));
}

}  // namespace
}  // namespace pdx
