// What a start decides before anything is detected, and the UI thread's life.
#include "config/Settings.h"
#include "core/BootstrapperApplication.h"
#include "platform/CommandLine.h"
#include "platform/Crash.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "platform/OsIdentity.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/Registry.h"
#include "platform/RegistryPaths.h"
#include "state/DiscStart.h"
#include "state/OlderClientFate.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

constexpr const wchar_t* gatelinkCommandKey = L"gatelink\\shell\\open\\command";
constexpr DWORD quitRepeatMs = 100;
// Half a second at the most.
constexpr DWORD loopCheckMs = 10;
constexpr int loopChecks = 50;
constexpr const wchar_t* installerMutexName = L"Global\\Palisade_Desktop_Installer";

/// Ends a menu of the window, or a drag that it has the mouse for, on the window's own thread; not waited for.
BOOL CALLBACK cancelMode(HWND window, LPARAM) {
    SendNotifyMessageW(window, WM_CANCELMODE, 0, 0);
    return TRUE;
}

bool runsSystemLoop(DWORD thread) {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    return GetGUIThreadInfo(thread, &state) && (state.flags & (GUI_INMENUMODE | GUI_INMOVESIZE)) != 0;
}

}  // namespace

HRESULT BootstrapperApplication::OnStartup() {
    PDX_LOG(logInfo, "BootstrapperApplication::OnStartup", "[STARTUP] app[%ls], configurable[%s], processId[%u]",
            m_variables.get(variable::bundleExecutable), g_configurable ? "true" : "false", GetCurrentProcessId());
    PDX_LOG(logInfo, "BootstrapperApplication::OnStartup", "Version: %s", GetCurrentVersion());
    PDX_LOG(logInfo, "BootstrapperApplication::OnStartup", "Command line: [%ls]", GetCommandLineW());
    m_run.begin(Operation::startup);

    // A deliberate fault: it exercises the crash path on test machines.
    if (getConfigBool("qa.installer.crashOnStart", false)) *static_cast<volatile int*>(nullptr) = 0;

    std::wstring discParameters = L"-ITD";
    const std::wstring bundleFolder = m_variables.get(variable::bundleFolder, true);
    // A key without a value is a crash of its own kind.
    const bool fromDisc =
        crashOnException([&] { return checkForITD(discParameters, bundleFolder, processArguments()); });

    const std::wstring installLocation = machineText(view64, productKey, L"InstallLocation");
    if (m_action == BOOTSTRAPPER_ACTION_UNINSTALL && !installLocation.empty()) setInstallFolder(installLocation);
    m_reporting.addFile(m_variables.get(variable::bundleLog));
    m_reporting.addFile(getLogFilePath(L"PalisadeBackgroundService.log"));

    if (!startUiThread()) {
        UpdateInstallStatus(E_FAIL);
        return E_FAIL;
    }

    const OsInfo system = systemVersion();
    if (!isSystemAccepted({isSystem64Bit(), system.major, system.minor},
                          getConfigBool("qa.installer.allowWindows7", true)))
        return failStartup(errorSystemTooOld);
    if (!takeInstallerMutex()) return failStartup(errorSecondInstance);

    if (isRepair() || isMeridianMode()) {
        enableTelemetry();
        return continueElevated();
    }
    return takeStartupStep(chooseStartupStep(startupFacts(!installLocation.empty(), fromDisc)), discParameters);
}

StartupFacts BootstrapperApplication::startupFacts(bool installed, bool fromDisc) const {
    StartupFacts facts;
    facts.action = m_action;
    facts.installed = installed;
    facts.fromDisc = fromDisc;
    if (m_action != BOOTSTRAPPER_ACTION_INSTALL) return facts;
    facts.ignoreAlreadyInstalled = m_variables.get(variable::ignoreInstalled) == L"1";
    facts.olderClientToPrompt = [this] {
        return m_variables.get(variable::meridianUpgrade) == L"1" && isOlderClientTo(OlderClientFate::asks);
    };
    facts.olderClientRecorded = [] { return !machineText(view32, olderClientKey, L"ClientPath").empty(); };
    facts.gatelinkRegistered = [] {
        return !toText(RegistryKey::classesRoot(view64).getSubKeyValue(gatelinkCommandKey, {}, {})).empty();
    };
    return facts;
}

HRESULT BootstrapperApplication::takeStartupStep(StartupStep step, const std::wstring& discParameters) {
    switch (step) {
        case StartupStep::quit:
            quit(0);
            break;
        case StartupStep::promptAlreadyInstalled:
            promptAlreadyInstalled();
            break;
        case StartupStep::detect:
            return detect();
        case StartupStep::launchClientFromDisc:
            PDX_LOG(logInfo, "BootstrapperApplication::OnStartup",
                    "Launching client with [%ls] parameters to initiate game install through disk.", discParameters);
            launchClient(discParameters);
            quit(0);
            break;
        case StartupStep::promptOlderClient:
            promptBastionUninstall();
            break;
    }
    return S_OK;
}

HRESULT BootstrapperApplication::detect() {
    const HRESULT hr = m_engine->Detect(m_dialogWindow);
    quitOnFailure("Detect", hr);
    return hr;
}

HRESULT BootstrapperApplication::failStartup(ProgramError code) {
    raiseError(code);
    return formError(PALISADE_ERROR_TYPE, code);
}

bool BootstrapperApplication::takeInstallerMutex() {
    if (m_installerMutex) return true;
    Handle mutex(CreateMutexW(nullptr, TRUE, installerMutexName));
    if (!mutex || GetLastError() == ERROR_ALREADY_EXISTS) return false;
    m_installerMutex = std::move(mutex);
    return true;
}

void BootstrapperApplication::releaseInstallerMutex() {
    if (m_installerMutex) ReleaseMutex(m_installerMutex.get());
    m_installerMutex.reset();
}

unsigned __stdcall BootstrapperApplication::runUi(void* argument) {
    auto& application = *static_cast<BootstrapperApplication*>(argument);
    try {
        application.m_uiRoutine(application);
    } catch (const std::exception& problem) {
        PDX_LOG(logError, "BootstrapperApplication::runUi", "The UI thread failed: %s", problem.what());
    }
    // Whatever became of the dialog: the engine's thread waits for it.
    application.setDialogWindow(nullptr);
    application.setDialogReady(true);
    return 0;
}

bool BootstrapperApplication::startUiThread() {
    if (m_uiThread.id() != 0) return true;
    if (m_uiThread.start(runUi, this))
        WaitForSingleObject(m_dialogReady.get(), INFINITE);
    else
        PDX_LOG(logError, "BootstrapperApplication::startUiThread", "Failed to start the UI thread: %s",
                describeError(HRESULT_FROM_WIN32(GetLastError())));
    // Without the dialog nobody would ever plan, apply or quit.
    return m_dialogWindow != nullptr;
}

void BootstrapperApplication::endSystemLoops() const {
    // Without a thread all windows of the machine would be meant.
    if (m_uiThread.id() != 0) EnumThreadWindows(m_uiThread.id(), cancelMode, 0);
}

void BootstrapperApplication::awaitEndOfSystemLoops() const {
    for (int check = 0; check < loopChecks && m_uiThread.id() != 0 && runsSystemLoop(m_uiThread.id()); ++check) {
        endSystemLoops();
        if (m_uiThread.endsWithin(loopCheckMs)) return;
    }
}

void BootstrapperApplication::stopUiThread() {
    if (m_uiThread.id() == 0) return;
    // Again until the thread has ended: a loop of the system's inside the dialog's own takes the message away from
    // that, a new one may have begun, and a post can fail.
    do {
        endSystemLoops();
        PostThreadMessageW(m_uiThread.id(), WM_QUIT, 0, 0);
    } while (!m_uiThread.endsWithin(quitRepeatMs));
    m_uiThread.join();
}

}  // namespace pdx
