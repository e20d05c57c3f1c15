// The runs that do not install: a repair or a migration with elevated rights, and a handover to the client.
#include "core/rules/Handover.h"
#include "core/BootstrapperApplication.h"
#include "platform/Log.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "state/OlderClient.h"
#include "state/RepairCleanup.h"

namespace pdx {
namespace {

/// By RepairStep.
constexpr Operation repairOperations[] = {Operation::repairStopService, Operation::repairDeleteService,
                                          Operation::repairDeleteFolder};

}  // namespace

HRESULT BootstrapperApplication::continueElevated() {
    if (!m_hooks.isElevated()) return relaunchElevated();
    if (isRepair()) {
        sendAppMessage(WM_BA_REPAIR_INITIALIZING);
        return performRepairCleanup();
    }
    if (m_variables.get(variable::uninstallBastion) == L"1") removeOlderClient();
    launchClientToUpdate();
    quit(0);
    return S_OK;
}

HRESULT BootstrapperApplication::relaunchElevated() {
    const std::wstring folder = removeFileSpec(getProcessFilePath());
    if (const HRESULT hr = lockElevatedBinaries(folder, getProcessFileName()); FAILED(hr)) return hr;
    const auto valueOf = [this](const wchar_t* name) { return m_variables.get(name); };
    const ProgramStart start = {.verb = L"runas",
                                .file = lockedExecutable(m_lockedFiles),
                                .parameters = relaunchParameters(valueOf),
                                .show = SW_SHOW};
    if (!hasUserCancelled()) {
        // The copy is to take it.
        releaseInstallerMutex();
        // Whatever the result is, a refusal by the user too: nobody is there to do the work in its place.
        const Handle copy = m_hooks.startProgram(start);
        // Not earlier: without a window of this process the system's question could stay in the background.
        leaveTheScreen();
        awaitElevatedStart(copy.get(), [this] { return m_logoutExit.load(); });
    }
    quit(0);
    return S_OK;
}

bool BootstrapperApplication::hasUserCancelled() {
    // The message is handled after the answer to a question that is open now.
    sendAppMessage(WM_NULL);
    return isCanceled();
}

HRESULT BootstrapperApplication::lockElevatedBinaries(const std::wstring& folder, const std::wstring& executable) {
    if (m_hooks.lockElevated(m_lockedFiles, folder, executable)) return S_OK;
    return failStartup(errorFilesNotLocked);
}

HRESULT BootstrapperApplication::performRepairCleanup() {
    RepairRun run;
    run.providerKey = m_variables.get(variable::providerKey);
    run.isCancelled = [this] { return hasUserCancelled(); };
    run.begin = [this](RepairStep step) {
        const Operation operation = repairOperations[static_cast<size_t>(step)];
        if (step == RepairStep::stopService)
            m_run.begin(operation);
        else
            m_run.setOperation(operation);
    };
    run.omitDesktopShortcut = [this] { m_variables.set(variable::desktopShortcut, L""); };
    run.keepInstallFolder = [this](const std::wstring& folder) {
        setInstallFolder(folder);
        SetEnvironmentVariableW(variable::installLocation, folder.c_str());
    };
    const RepairResult result = cleanUpForRepair(run);
    if (result == RepairResult::failed) return failStartup(errorRepairIncomplete);
    // Also after a cancel that came too late for the clean-up: the engine would detect before it ends the run.
    if (result == RepairResult::cancelled || isCanceled()) {
        quit(0);
        return S_OK;
    }
    Sleep(1000);
    return detect();
}

void BootstrapperApplication::removeOlderClient() {
    sendAppMessage(WM_BA_UNINSTALLING_BASTION);
    if (hasUserCancelled()) return;
    waitForBastionTempUninstallers();
    Sleep(1000);
    // After a cancel too: the older client is gone.
    m_telemetry.sendMeridianCompleted();
}

void BootstrapperApplication::launchClientToUpdate() {
    if (hasUserCancelled()) return;
    launchClient(L"/checkForUpdate " + authArgument(m_variables.get(variable::authCode)));
}

void BootstrapperApplication::promptAlreadyInstalled() {
    const int answer = sendAppMessage(WM_BA_PROMPT_ALREADY_INSTALLED);
    // A cancelled run, whose answer is the number that asks for a repair, only ends.
    if (!isCanceled()) {
        if (answer == 1) {
            if (m_variables.get(variable::uninstallBastion) == L"1") {
                removeOlderClient();
                launchClientToUpdate();
            } else {
                launchClient(L"/checkForUpdate");
            }
        }
        if (answer == 2) requestReload(ReloadPurpose::repair);
    }
    // Asked twice after a repair, which is harmless.
    quit(0);
}

void BootstrapperApplication::promptBastionUninstall() {
    const bool asks = !isCanceled();
    const int answer = sendAppMessage(WM_BA_PROMPT_BASTION_UNINSTALL);
    // Every answer other than the first counts as this click, the closed window too, which cancels the run.
    if (asks) m_telemetry.sendBastionOverlayClick(answer == 1 ? overlayUninstall : overlayNotNow);
    if (!isCanceled()) {
        if (answer == 1) {
            m_variables.setNumber(variable::uninstallBastion, 1);
            requestReload(ReloadPurpose::migration);
        }
        if (answer == 2) {
            m_variables.setNumber(variable::uninstallBastion, 0);
            if (isBastionRunning()) {
                PDX_LOG(logInfo, "BootstrapperApplication::promptBastionUninstall",
                        "Bastion is running, attempting to close Bastion");
                quitBastion();
            }
            launchClientToUpdate();
        }
    }
    // Asked twice after the first answer, which is harmless.
    quit(0);
}

}  // namespace pdx
