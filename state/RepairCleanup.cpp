#include "state/RepairCleanup.h"

#include <windows.h>
// shlobj.h needs the types of windows.h.
#include <shlobj.h>

#include <vector>

#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/Registry.h"
#include "platform/RegistryPaths.h"
#include "platform/rules/InstallerVersion.h"
#include "platform/rules/Version.h"
#include "platform/Services.h"
#include "platform/Text.h"
#include "platform/VersionInfo.h"
#include "state/FileLocks.h"
#include "state/InstallInfo.h"
#include "state/ProductState.h"
#include "state/rules/OwnFolder.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

constexpr const wchar_t* serviceName = L"PalisadeBackgroundService";
constexpr uint64_t serviceTimeoutMilliseconds = 2000;
constexpr int32_t fileTries = 50;
constexpr uint32_t fileDelayMilliseconds = 100;

constexpr std::wstring_view clientProcesses[] = {
    L"PalisadeDesktop.exe",       L"PalisadeLauncher.exe",
    L"PalisadeLaunchHelper.exe",  L"PalisadeErrorReporter.exe",
    L"PalisadeCrashReporter.exe", L"PalisadeConnect_microsoft.exe",
    L"PalisadeDestager.exe",      L"GateLink.exe",
    L"PalisadeLocalHostSvc.exe",  L"PalisadeGlue.exe",
    L"PalisadeSteamProxy.exe",    L"PalisadeUninstall.exe",
};

/// The programs whose versions are told, each under its attribute.
struct ProgramAttribute {
    const char* attribute;
    const wchar_t* file;
};
constexpr ProgramAttribute toldPrograms[] = {
    {"lnvr", L"PalisadeLauncher.exe"},
    {"lhvr", L"PalisadeLaunchHelper.exe"},
    {"apvr", L"PalisadeDesktop.exe"},
    {"bgvr", L"PalisadeBackgroundService.exe"},
};

/// What the client's package noted of the time before it.
struct EarlierState {
    std::wstring bastionProtocol;
    std::wstring gateLinkProtocol;
    std::wstring uninstallCommand;
    std::wstring quietUninstallCommand;
};

void tellRepairStarted(const std::wstring& installLocation) {
    const std::wstring programs = appendPath(installLocation, L"Palisade Desktop");
    nlohmann::json versions = nlohmann::json::object();
    for (const ProgramAttribute& program : toldPrograms)
        versions[program.attribute] =
            installLocation.empty() ? std::string() : getFileVersion(appendPath(programs, program.file));
    sendTelemetry(briskSender, "inst.repr.strt", std::move(versions), false);
}

/// The package has put commands of its own in the bundle's entry; they go with the client.
void restoreUninstallCommands(const std::wstring& providerKey, const EarlierState& earlier) {
    if (!isEntryName(providerKey)) return;
    RegistryKey entry = RegistryKey::localMachine(view32).openSubKey(uninstallKey + (L'\\' + providerKey), true);
    if (!earlier.uninstallCommand.empty()) entry.setValue(L"UninstallString", earlier.uninstallCommand);
    if (!earlier.quietUninstallCommand.empty()) entry.setValue(L"QuietUninstallString", earlier.quietUninstallCommand);
}

bool takeServiceDown(const RepairRun& run) {
    run.begin(RepairStep::stopService);
    if (!stopService(serviceName, serviceTimeoutMilliseconds)) {
        PDX_LOG(logInfo, "performRepairCleanup", "Failed to stop background service");
        return false;
    }
    run.begin(RepairStep::deleteService);
    if (!deleteService(serviceName, serviceTimeoutMilliseconds)) {
        PDX_LOG(logInfo, "performRepairCleanup", "Failed to delete background service");
        return false;
    }
    return true;
}

/// By its spelling, and by where that leads: a short name or a drive that stands for a folder is still what it is.
bool isOwn(const std::wstring& folder) {
    std::vector<SystemFolder> systemFolders = {
        {getKnownFolderPath(FOLDERID_Windows), allBelow},
        {getKnownFolderPath(FOLDERID_UserProfiles), 1},
        // A 32-bit process is told the folder of 32-bit programs for either.
        {getEnvironmentText(L"ProgramW6432"), 0},
    };
    for (const KNOWNFOLDERID* id :
         {&FOLDERID_ProgramFiles, &FOLDERID_ProgramFilesCommon, &FOLDERID_ProgramData, &FOLDERID_Desktop,
          &FOLDERID_Documents, &FOLDERID_Downloads, &FOLDERID_Pictures, &FOLDERID_Music, &FOLDERID_Videos,
          &FOLDERID_LocalAppData, &FOLDERID_RoamingAppData})
        systemFolders.push_back({getKnownFolderPath(*id), 0});
    if (!isOwnFolder(folder, systemFolders)) return false;
    if (!fileExists(folder)) return true;
    constexpr std::wstring_view finalPathStart = L"\\\\?\\";
    const std::wstring finalPath = GetFinalPath(folder);
    return finalPath.starts_with(finalPathStart) && isOwnFolder(finalPath.substr(finalPathStart.size()), systemFolders);
}

/// Whether the recorded folder may be deleted; no folder may. A refusal is this step's failure.
bool judgeFolder(const RepairRun& run, const std::wstring& installLocation) {
    if (installLocation.empty() || isOwn(installLocation)) return true;
    run.begin(RepairStep::deleteFolder);
    PDX_LOG(logError, "performRepairCleanup", "The recorded install folder is not deleted: \"%ls\"", installLocation);
    return false;
}

bool takeFolderDown(const RepairRun& run, const std::wstring& installLocation) {
    if (installLocation.empty()) return true;
    run.begin(RepairStep::deleteFolder);
    run.keepInstallFolder(installLocation);
    return deleteDirectoryTree(installLocation, fileTries, fileDelayMilliseconds);
}

/// Uneven on purpose: the package notes one earlier command for both of the older client's protocols, its own goes
/// without a trace, and an unnoted gatelink stays as it is.
void restoreProtocols(const EarlierState& earlier) {
    restoreProtocolHandler(L"bastion", earlier.bastionProtocol);
    restoreProtocolHandler(L"bastion2", earlier.bastionProtocol);
    restoreProtocolHandler(L"palisadeconnect.microsoft", {});
    if (!earlier.gateLinkProtocol.empty()) restoreProtocolHandler(L"gatelink", earlier.gateLinkProtocol);
}

}  // namespace

std::string getFileVersion(const std::wstring& path) {
    const auto fixed = VersionInfo(path, VersionInfo::Language::neutral).fixed();
    if (!fixed) return {};
    return versionText(uint64_t{fixed->dwFileVersionMS} << 32 | fixed->dwFileVersionLS);
}

RepairResult cleanUpForRepair(const RepairRun& run) {
    const RegistryKey product = RegistryKey::localMachine(view64).openSubKey(productKey, false);
    const auto recorded = [&](const wchar_t* name) { return toText(product.getValue(name)); };
    const std::wstring installLocation = recorded(L"InstallLocation");
    tellRepairStarted(installLocation);
    run.omitDesktopShortcut();
    const EarlierState earlier = {recorded(L"PrevBastion2"), recorded(L"PrevGateLink"),
                                  recorded(L"OriginalUninstallString"), recorded(L"OriginalQuietUninstallString")};
    if (!judgeFolder(run, installLocation)) return RepairResult::failed;
    if (run.isCancelled()) return RepairResult::cancelled;
    // Before the steps that can fail.
    setUnavailable();
    restoreUninstallCommands(run.providerKey, earlier);
    terminateProcesses(clientProcesses);
    if (run.isCancelled()) return RepairResult::cancelled;
    if (!takeServiceDown(run) || !takeFolderDown(run, installLocation)) return RepairResult::failed;

    restoreClientPath(olderClientKey);
    restoreClientPath(fenwickKey);
    restoreProtocols(earlier);
    for (const RegistryView view : {view32, view64}) purgeInstallInfo(view, run.providerKey);
    writeBundleVersion(run.providerKey, toWide(installerVersion));
    return RepairResult::done;
}

}  // namespace pdx
