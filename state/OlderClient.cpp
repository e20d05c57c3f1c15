#include "state/OlderClient.h"

#include <array>
#include <chrono>

#include "platform/Files.h"
#include "platform/Handles.h"
#include "platform/Log.h"
#include "platform/PathFunctions.h"
#include "platform/Processes.h"
#include "platform/product/Client.h"
#include "platform/product/Programs.h"
#include "platform/Text.h"
#include "state/rules/MeridianMessages.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

constexpr DWORD quitTimeMilliseconds = 30000;

std::wstring bastionPath() { return olderClientText(L"BastionPath"); }

/// A handle to query and to wait for the process; one that only queries where waiting is refused. Null, and logged, if
/// there is none.
Handle openProcess(DWORD processId) {
    Handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, processId));
    if (!process) process.reset(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    if (!process) PDX_LOG(logWarning, "isBastionTempUninstallerRunning", "Failed to open process for querying");
    return process;
}

/// The full path of a process's program; empty, and logged, if it cannot be asked.
std::wstring programOf(HANDLE process) {
    std::array<wchar_t, MAX_PATH + 1> path{};
    DWORD size = path.size();
    if (!QueryFullProcessImageNameW(process, 0, path.data(), &size)) {
        PDX_LOG(logWarning, "isBastionTempUninstallerRunning", "Failed to query process image name");
        return {};
    }
    return path.data();
}

constexpr DWORD pollMilliseconds = 1000;

/// Returns when no temporary uninstaller has been seen for the time of quiet. The work is finished by processes of
/// their own, with gaps between them.
void waitForQuiet() {
    using Clock = std::chrono::system_clock;
    constexpr std::chrono::seconds quiet(3);
    for (auto deadline = Clock::now() + quiet; Clock::now() < deadline;) {
        PROCESSENTRY32W entry{};
        Handle process;
        if (!isBastionTempUninstallerRunning(entry, process)) {
            Sleep(pollMilliseconds);
            continue;
        }
        PDX_LOG(logInfo, "waitForBastionTempUninstallers",
                "Found running Bastion Uninstaller, waiting for it to complete");
        // Without limit. One that cannot be waited for is looked for again a while later, and not in a busy loop.
        if (WaitForSingleObject(process.get(), INFINITE) == WAIT_FAILED) Sleep(pollMilliseconds);
        deadline = Clock::now() + quiet;
    }
}

}  // namespace

bool isBastionInstalled() {
    // The spelling is the older client's own.
    return !olderClientText(L"InstallSuccesfull").empty();
}

bool isBastionRunning() {
    ProcessSnapshot snapshot;
    for (PROCESSENTRY32W entry{}; snapshot.next(entry);) {
        if (!equalsIgnoreCase(entry.szExeFile, olderClientProgram)) continue;
        PDX_LOG(logInfo, "isBastionRunning", "Found process %ls", entry.szExeFile);
        return true;
    }
    return false;
}

void quitBastion() {
    const std::wstring program = bastionPath();
    if (program.empty()) return;
    const Handle process =
        startProgram(ProgramStart{.file = program, .parameters = L"bastion://quit", .show = SW_SHOW});
    if (process) WaitForSingleObject(process.get(), quitTimeMilliseconds);
}

void waitForBastionTempUninstallers() {
    const std::wstring program = bastionPath();
    if (program.empty()) return;
    const std::wstring uninstaller = appendPath(removeFileSpec(program), olderClientUninstaller);
    const Handle process = startProgram(ProgramStart{.file = uninstaller, .parameters = L"/Silent", .show = SW_HIDE});
    if (process) WaitForSingleObject(process.get(), INFINITE);
    waitForQuiet();
    PDX_LOG(logInfo, "waitForBastionTempUninstallers",
            "Enough time has passed since the last Bastion Uninstaller process completed, continuing with the rest of "
            "the install");
}

bool isBastionTempUninstallerRunning(PROCESSENTRY32W& entry, Handle& process) {
    ProcessSnapshot snapshot;
    while (snapshot.next(entry)) {
        const std::wstring_view file = entry.szExeFile;
        const std::wstring name = toLower(std::wstring(file.substr(file.find_last_of(L"\\/") + 1)));
        if (!name.starts_with(L"bui")) continue;
        process = openProcess(entry.th32ProcessID);
        const std::wstring program = process ? programOf(process.get()) : std::wstring();
        if (program.empty() || toLower(getFileDescription(program)) != L"bastionuninstall") continue;
        PDX_LOG(logInfo, "isBastionTempUninstallerRunning", "Found Bastion uninstall process %ls", program);
        return true;
    }
    return false;
}

void sendMeridianMessageEvent(const std::string& id, const std::string& destination, const std::string& page,
                              const std::string& status, const std::string& trackingTag) {
    sendTelemetry(tallySender, "message", meridianMessage(id, destination, page, status, trackingTag), false);
}

}  // namespace pdx
