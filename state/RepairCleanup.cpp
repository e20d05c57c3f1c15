#include "state/RepairCleanup.h"

#include <windows.h>

#include <vector>

#include "platform/FolderRemoval.h"
#include "platform/FoundFolder.h"
#include "platform/IoBound.h"
#include "platform/Log.h"
#include "platform/Processes.h"
#include "platform/product/BundleEntry.h"
#include "platform/product/Client.h"
#include "platform/product/InstallerVersion.h"
#include "platform/product/Programs.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/Services.h"
#include "platform/Text.h"
#include "state/InstallInfo.h"
#include "state/ProductState.h"
#include "state/ProtectedFolders.h"
#include "state/rules/OwnFolder.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

constexpr uint64_t serviceTimeoutMilliseconds = 2000;
constexpr int32_t fileTries = 50;
constexpr uint32_t fileDelayMilliseconds = 100;

/// A program whose version is sent, and the attribute.
struct ProgramAttribute {
    const char* attribute;
    const wchar_t* file;
};
constexpr ProgramAttribute reportedPrograms[] = {
    {"lnvr", launcherProgram},
    {"lhvr", launchHelperProgram},
    {"apvr", desktopProgram},
    {"bgvr", serviceProgram},
};

/// The state before the install, as the client's package recorded it.
struct EarlierState {
    std::wstring bastionProtocol;
    std::wstring gateLinkProtocol;
    std::wstring uninstallCommand;
    std::wstring quietUninstallCommand;
};

void sendRepairStarted(const std::wstring& installLocation) {
    nlohmann::json versions = nlohmann::json::object();
    for (const ProgramAttribute& program : reportedPrograms)
        versions[program.attribute] = getProgramVersion(installLocation, program.file);
    sendTelemetry(briskSender, "inst.repr.strt", std::move(versions), false);
}

/// The client's package has put its own commands into the bundle's entry, and they stop working with the client.
void restoreUninstallCommands(const std::wstring& providerKey, const EarlierState& earlier) {
    RegistryKey entry = openBundleEntry(providerKey);
    if (!earlier.uninstallCommand.empty()) entry.setValue(L"UninstallString", earlier.uninstallCommand);
    if (!earlier.quietUninstallCommand.empty()) entry.setValue(L"QuietUninstallString", earlier.quietUninstallCommand);
}

bool removeService(const RepairRun& run) {
    run.begin(RepairStep::stopService);
    if (!stopService(clientService, serviceTimeoutMilliseconds)) {
        PDX_LOG(logInfo, "performRepairCleanup", "Failed to stop background service");
        return false;
    }
    run.begin(RepairStep::deleteService);
    if (!deleteService(clientService, serviceTimeoutMilliseconds)) {
        PDX_LOG(logInfo, "performRepairCleanup", "Failed to delete background service");
        return false;
    }
    return true;
}

/// Checks the path as it is spelt and the final path, which resolves short names and drives mapped to a folder.
bool isOwn(const std::wstring& location, const FoundFolder& folder) {
    const std::vector<SystemFolder> systemFolders = protectedFolders();
    if (!isOwnFolder(location, systemFolders)) return false;
    if (!folder.exists) return true;
    if (!folder.isOpen || !folder.isTrusted) return false;
    if (!folder.volumePath.empty()) {
        const auto byFinalPath = withFinalPaths(systemFolders);
        return byFinalPath && isOwnVolumePath(folder.volumePath, *byFinalPath);
    }
    PDX_LOG(logInfo, "performRepairCleanup",
            "Without a final path the install folder is judged as it is spelt: \"%ls\"", location);
    return true;
}

/// A process's current folder and those above it cannot be deleted.
void leaveCurrentFolder() {
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    if (length > 0 && length < MAX_PATH) SetCurrentDirectoryW(folder);
}

bool removeFolder(const RepairRun& run, const std::wstring& location, const FoundFolder& folder) {
    if (location.empty()) return true;
    run.begin(RepairStep::deleteFolder);
    run.keepInstallFolder(location);
    leaveCurrentFolder();
    return deleteDirectoryTree(folder, fileTries, fileDelayMilliseconds);
}

/// Asymmetric by design: one saved command serves both bastion protocols; ours is deleted; gatelink is restored only if
/// saved.
void restoreProtocols(const EarlierState& earlier) {
    restoreProtocolHandler(L"bastion", earlier.bastionProtocol);
    restoreProtocolHandler(L"bastion2", earlier.bastionProtocol);
    restoreProtocolHandler(L"palisadeconnect.microsoft", {});
    if (!earlier.gateLinkProtocol.empty()) restoreProtocolHandler(L"gatelink", earlier.gateLinkProtocol);
}

}  // namespace

RepairResult removeInstalledClient(const RepairRun& run) {
    const RegistryKey product = RegistryKey::localMachine(view64).openSubKey(productKey, false);
    const auto recorded = [&](const wchar_t* name) { return toText(product.getValue(name)); };
    const std::wstring installLocation = recorded(L"InstallLocation");
    const IoBound bound;
    const FoundFolder folder = findFolder(installLocation);
    const bool isFolderOwn = installLocation.empty() || isOwn(installLocation, folder);
    // A folder that is not the client's can lead to another machine, where this account would be signed in.
    sendRepairStarted(isFolderOwn && folder.isOpen ? installLocation : std::wstring());
    run.omitDesktopShortcut();
    const EarlierState earlier = {recorded(L"PrevBastion2"), recorded(L"PrevGateLink"),
                                  recorded(L"OriginalUninstallString"), recorded(L"OriginalQuietUninstallString")};
    if (!isFolderOwn) {
        run.begin(RepairStep::deleteFolder);
        PDX_LOG(logError, "performRepairCleanup", "The recorded install folder is not deleted: \"%ls\"",
                installLocation);
        return RepairResult::failed;
    }
    if (run.isCancelled()) return RepairResult::cancelled;
    // Before the steps that can fail: a client that stays after one is marked, and has the bundle's commands.
    setUnavailable();
    restoreUninstallCommands(run.providerKey, earlier);
    terminateProcesses(clientProcesses);
    if (run.isCancelled()) return RepairResult::cancelled;
    if (!removeService(run) || !removeFolder(run, installLocation, folder)) return RepairResult::failed;

    restoreClientPath(bastionKey);
    restoreClientPath(fenwickKey);
    restoreProtocols(earlier);
    for (const RegistryView view : {view32, view64}) purgeInstallInfo(view, run.providerKey);
    writeBundleVersion(run.providerKey, toWide(installerVersion));
    return RepairResult::done;
}

}  // namespace pdx
