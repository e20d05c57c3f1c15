// The start: what is decided before the detection.
#include "config/Settings.h"
#include "core/BootstrapperApplication.h"
#include "platform/Log.h"
#include "platform/OsIdentity.h"
#include "platform/Processes.h"
#include "platform/product/Client.h"
#include "platform/Registry.h"
#include "platform/UncaughtExceptions.h"
#include "state/DiscStart.h"

namespace pdx {
namespace {

constexpr const wchar_t* gatelinkCommandKey = L"gatelink\\shell\\open\\command";

/// Whether the run starts from a disc; appends the client's parameters of such a start. An argument that is a bare key
/// throws, which counts as a crash (checkForITD).
bool takeDiscParameters(const RunVariables& variables, std::wstring& parameters) {
    const std::wstring bundleFolder = variables.get(variable::bundleFolder, true);
    return crashOnException([&] { return checkForITD(parameters, bundleFolder, processArguments()); });
}

}  // namespace

HRESULT BootstrapperApplication::OnStartup() {
    logStart();
    m_context.begin(Operation::startup);

    // A deliberate fault, to test the crash report.
    if (getConfigBool("qa.installer.crashOnStart", false)) *static_cast<volatile int*>(nullptr) = 0;

    std::wstring discParameters = L"-ITD";
    const bool fromDisc = takeDiscParameters(m_run.variables, discParameters);
    const bool installed = takeInstallLocation();
    addReportFiles();
    if (const HRESULT hr = openUi(); FAILED(hr)) return hr;
    if (const HRESULT hr = checkMachine(); FAILED(hr)) return hr;
    return takeFirstStep(installed, fromDisc, discParameters);
}

void BootstrapperApplication::logStart() const {
    PDX_LOG(logInfo, "BootstrapperApplication::OnStartup", "[STARTUP] app[%ls], configurable[%s], processId[%u]",
            m_run.variables.get(variable::bundleExecutable), g_configurable ? "true" : "false", GetCurrentProcessId());
    PDX_LOG(logInfo, "BootstrapperApplication::OnStartup", "Version: %s", GetCurrentVersion());
    PDX_LOG(logInfo, "BootstrapperApplication::OnStartup", "Command line: [%ls]", GetCommandLineW());
}

bool BootstrapperApplication::takeInstallLocation() {
    const std::wstring location = clientText(L"InstallLocation");
    if (action() == BOOTSTRAPPER_ACTION_UNINSTALL && !location.empty()) setInstallFolder(location);
    return !location.empty();
}

void BootstrapperApplication::addReportFiles() {
    m_errors.addFile(m_run.variables.get(variable::bundleLog));
    m_errors.addFile(getLogFilePath(L"PalisadeBackgroundService.log"));
}

HRESULT BootstrapperApplication::openUi() {
    if (m_run.ui->open()) return S_OK;
    // Without the dialog no step would plan, apply or quit.
    UpdateInstallStatus(E_FAIL);
    return E_FAIL;
}

HRESULT BootstrapperApplication::checkMachine() {
    const OsInfo system = systemVersion();
    if (!isSystemAccepted({isSystem64Bit(), system.major, system.minor},
                          getConfigBool("qa.installer.allowWindows7", true)))
        return m_errors.fail(errorSystemTooOld);
    return m_run.mutex.take() ? S_OK : m_errors.fail(errorSecondInstance);
}

HRESULT BootstrapperApplication::takeFirstStep(bool installed, bool fromDisc, const std::wstring& discParameters) {
    if (isRepair() || isMeridianMode()) {
        enableSending();
        return isRepair() ? m_repair.start() : m_migration.start();
    }
    switch (chooseStartupStep(startupFacts(installed, fromDisc))) {
        case StartupStep::quit:
            quit(0);
            break;
        case StartupStep::promptAlreadyInstalled:
            m_repair.promptAlreadyInstalled();
            break;
        case StartupStep::detect:
            return m_run.detect();
        case StartupStep::launchClientFromDisc:
            PDX_LOG(logInfo, "BootstrapperApplication::OnStartup",
                    "Launching client with [%ls] parameters to initiate game install through disk.", discParameters);
            launchClient(discParameters);
            quit(0);
            break;
        case StartupStep::promptBastionUninstall:
            m_migration.promptBastionUninstall();
            break;
    }
    return S_OK;
}

StartupFacts BootstrapperApplication::startupFacts(bool installed, bool fromDisc) const {
    StartupFacts facts;
    facts.action = action();
    facts.installed = installed;
    facts.fromDisc = fromDisc;
    if (action() != BOOTSTRAPPER_ACTION_INSTALL) return facts;
    facts.ignoreAlreadyInstalled = m_run.variables.get(variable::ignoreInstalled) == L"1";
    facts.bastionToPrompt = [this] {
        return m_run.variables.get(variable::meridianUpgrade) == L"1" && asksAboutBastion();
    };
    facts.bastionRecorded = [] { return !bastionText(L"ClientPath").empty(); };
    facts.gatelinkRegistered = [] {
        return !toText(RegistryKey::classesRoot(view64).getSubKeyValue(gatelinkCommandKey, {}, {})).empty();
    };
    return facts;
}

}  // namespace pdx
