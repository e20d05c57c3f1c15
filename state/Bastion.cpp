#include "state/Bastion.h"

#include <array>

#include "config/Settings.h"
#include "platform/Clock.h"
#include "platform/Handles.h"
#include "platform/IoBound.h"
#include "platform/Log.h"
#include "platform/PathFunctions.h"
#include "platform/Processes.h"
#include "platform/product/Client.h"
#include "platform/product/Programs.h"
#include "platform/Text.h"
#include "platform/VersionInfo.h"
#include "state/rules/MeridianMessages.h"
#include "state/rules/OwnFolder.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

constexpr DWORD quitTimeMilliseconds = 30000;

std::wstring recordedProgram() { return bastionText(L"BastionPath"); }

/// A handle to query and to wait for the process, or only to query if waiting is refused. On failure null, which is
/// logged.
Handle openProcess(DWORD processId) {
    Handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, processId));
    if (!process) process.reset(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    if (!process) PDX_LOG(logWarning, "isBastionTempUninstallerRunning", "Failed to open process for querying");
    return process;
}

/// The full path of a process's program. On failure empty, which is logged.
std::wstring programOf(HANDLE process) {
    std::array<wchar_t, MAX_PATH + 1> path{};
    DWORD size = path.size();
    if (!QueryFullProcessImageNameW(process, 0, path.data(), &size)) {
        PDX_LOG(logWarning, "isBastionTempUninstallerRunning", "Failed to query process image name");
        return {};
    }
    return path.data();
}

/// A running temporary uninstaller: its name begins with "bui" and its file describes itself as "BastionUninstall",
/// both without regard to case. Logs a process that cannot be queried at WARN, and a find at INFO. Returns the handle
/// by which it was recognised: after that is closed the id may belong to another process. Null if none runs.
Handle runningTempUninstaller() {
    const IoBound bound;
    ProcessSnapshot snapshot;
    for (PROCESSENTRY32W entry{}; snapshot.next(entry);) {
        const std::wstring_view file = entry.szExeFile;
        const std::wstring name = toLower(std::wstring(file.substr(file.find_last_of(L"\\/") + 1)));
        if (!name.starts_with(L"bui")) continue;
        Handle process = openProcess(entry.th32ProcessID);
        const std::wstring program = process ? programOf(process.get()) : std::wstring();
        // A program on another machine is none of the older client's, and opening it would sign this account in there.
        if (!isDrivePath(program) || toLower(getFileDescription(program)) != L"bastionuninstall") continue;
        PDX_LOG(logInfo, "isBastionTempUninstallerRunning", "Found Bastion uninstall process %ls", program);
        return process;
    }
    return {};
}

constexpr DWORD pollMilliseconds = 1000;

/// Waits until no temporary uninstaller has run for 3 seconds of the system clock, whose jumps are accepted. Several
/// processes do the work, with gaps between them.
void waitForQuiet() {
    constexpr uint64_t quiet = 3000 * fileTimePerMillisecond;
    for (uint64_t deadline = currentFileTime() + quiet; currentFileTime() < deadline;) {
        const Handle process = runningTempUninstaller();
        if (!process) {
            Sleep(pollMilliseconds);
            continue;
        }
        PDX_LOG(logInfo, "waitForBastionTempUninstallers",
                "Found running Bastion Uninstaller, waiting for it to complete");
        // No time limit. The pause avoids a busy loop if waiting is refused.
        if (WaitForSingleObject(process.get(), INFINITE) == WAIT_FAILED) Sleep(pollMilliseconds);
        deadline = currentFileTime() + quiet;
    }
}

bool isPromptOn() { return getConfigBool("app.meridian.promptBastionUninstall", false); }

}  // namespace

bool isBastionInstalled() {
    // The spelling is the older client's.
    return !bastionText(L"InstallSuccesfull").empty();
}

bool isMigrationOn() { return getConfigBool("app.meridian.enableMigration", false); }

bool removesBastion() { return isMigrationOn() && !isPromptOn() && isBastionInstalled(); }
bool asksToRemoveBastion() { return isMigrationOn() && isPromptOn() && isBastionInstalled(); }

bool isBastionRunning() {
    ProcessSnapshot snapshot;
    for (PROCESSENTRY32W entry{}; snapshot.next(entry);) {
        if (!equalsIgnoreCase(entry.szExeFile, bastionProgram)) continue;
        PDX_LOG(logInfo, "isBastionRunning", "Found process %ls", entry.szExeFile);
        return true;
    }
    return false;
}

void quitBastion() {
    const std::wstring program = recordedProgram();
    if (program.empty()) return;
    const Handle process = startProgram({.file = program, .parameters = L"bastion://quit"});
    if (process) WaitForSingleObject(process.get(), quitTimeMilliseconds);
}

void waitForBastionTempUninstallers() {
    const std::wstring program = recordedProgram();
    if (program.empty()) return;
    const std::wstring uninstaller = appendPath(removeFileSpec(program), bastionUninstaller);
    const Handle process = startProgram({.file = uninstaller, .parameters = L"/Silent", .show = SW_HIDE});
    if (process) WaitForSingleObject(process.get(), INFINITE);
    waitForQuiet();
    PDX_LOG(logInfo, "waitForBastionTempUninstallers",
            "Enough time has passed since the last Bastion Uninstaller process completed, continuing with the rest of "
            "the install");
}

void sendMeridianMessageEvent(const std::string& id, const std::string& destination, const std::string& page,
                              const std::string& status, const std::string& trackingTag) {
    sendTelemetry(tallySender, "message", meridianMessage(id, destination, page, status, trackingTag), false);
}

}  // namespace pdx
