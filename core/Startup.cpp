// What a start decides before anything is detected, and the UI thread's life.
#include "config/Settings.h"
#include "core/BootstrapperApplication.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "platform/OsIdentity.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/Registry.h"
#include "platform/RegistryPaths.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

constexpr const wchar_t* gatelinkCommandKey = L"gatelink\\shell\\open\\command";
constexpr DWORD quitRepeatMs = 100;
constexpr const wchar_t* installerMutexName = L"Global\\Palisade_Desktop_Installer";

}  // namespace

HRESULT BootstrapperApplication::OnStartup() {
    PDX_LOG(logInfo, "BootstrapperApplication::OnStartup", "[STARTUP] app[%ls], configurable[%s], processId[%u]",
            GetEngineVariable(L"BundleExecutableName", false), g_configurable ? "true" : "false",
            GetCurrentProcessId());
    PDX_LOG(logInfo, "BootstrapperApplication::OnStartup", "Version: %s", GetCurrentVersion());
    PDX_LOG(logInfo, "BootstrapperApplication::OnStartup", "Command line: [%ls]", GetCommandLineW());
    replaceContext(operationStartup);

    // A deliberate fault: it exercises the crash path on test machines.
    if (getConfigBool("qa.installer.crashOnStart", false)) *static_cast<volatile int*>(nullptr) = 0;

    const std::wstring installLocation = machineText(view64, productKey, L"InstallLocation");
    if (m_action == BOOTSTRAPPER_ACTION_UNINSTALL && !installLocation.empty()) setInstallFolder(installLocation);
    m_reportFiles.push_back(GetEngineVariable(L"WixBundleLog", false));
    m_reportFiles.push_back(getLogFilePath(L"PalisadeBackgroundService.log"));

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
        PDX_LOG(logWarning, "BootstrapperApplication::OnStartup",
                "This build does not support repair or migration runs");
        quit(0);
        return S_OK;
    }
    takeStartupStep(chooseStartupStep(startupFacts(!installLocation.empty())));
    return S_OK;
}

StartupFacts BootstrapperApplication::startupFacts(bool installed) const {
    StartupFacts facts;
    facts.action = m_action;
    facts.installed = installed;
    if (m_action != BOOTSTRAPPER_ACTION_INSTALL) return facts;
    facts.ignoreAlreadyInstalled = GetEngineVariable(L"IGNORE_ALREADY_INSTALLED", false) == L"1";
    // Nothing can answer that prompt yet.
    facts.olderClientToPrompt = [] { return false; };
    facts.olderClientRecorded = [] { return !machineText(view32, olderClientKey, L"ClientPath").empty(); };
    facts.gatelinkRegistered = [] {
        return !toText(RegistryKey::classesRoot(view64).getSubKeyValue(gatelinkCommandKey, {}, {})).empty();
    };
    return facts;
}

void BootstrapperApplication::takeStartupStep(StartupStep step) {
    switch (step) {
        case StartupStep::quit:
            quit(0);
            break;
        case StartupStep::promptAlreadyInstalled:
            promptAlreadyInstalled();
            break;
        case StartupStep::detect:
            quitOnFailure("Detect", m_engine->Detect(m_dialogWindow));
            break;
        // Nothing asks for these two yet: the facts that lead to them never hold.
        case StartupStep::launchClientFromDisc:
        case StartupStep::promptOlderClient:
            break;
    }
}

void BootstrapperApplication::promptAlreadyInstalled() {
    const int answer = sendAppMessage(WM_BA_PROMPT_ALREADY_INSTALLED);
    // A cancelled run, whose answer is the number that asks for a repair, only ends.
    if (!isCanceled()) {
        if (answer == 1) launchClient(L"/checkForUpdate");
        if (answer == 2) requestRepairReload();
    }
    // Asked twice after a repair, which is harmless.
    quit(0);
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

void BootstrapperApplication::stopUiThread() {
    if (m_uiThread.id() == 0) return;
    // Posted again until the thread has ended: a loop inside the dialog's own, such as that of moving a window, takes
    // the message for its own end, and a post can fail.
    do {
        PostThreadMessageW(m_uiThread.id(), WM_QUIT, 0, 0);
    } while (!m_uiThread.endsWithin(quitRepeatMs));
    m_uiThread.join();
}

}  // namespace pdx
