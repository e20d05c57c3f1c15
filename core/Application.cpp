// The object's life, and what every callback uses: variables, messages to the dialog, context and status.
#include "config/rules/ConfigLayers.h"
#include "config/Settings.h"
#include "config/Translator.h"
#include "core/BootstrapperApplication.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/rules/CommandLine.h"
#include "platform/Task.h"
#include "state/OlderClient.h"

namespace pdx {
namespace {

/// Puts the strings of the configuration's language, if it forces one, over those of the user's. In a translator of
/// their own: other threads may read the one that is there.
void takeForcedLanguage() {
    const std::wstring forced = getConfigWideString("location.language");
    if (forced.empty()) return;
    auto translator = std::make_shared<Translator>();
    translator->Load(forced);
    g_translator.set(std::move(translator));
}

}  // namespace

BootstrapperApplication::BootstrapperApplication(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command,
                                                 DWORD retryMaximum, DWORD retryDelay, UiRoutine uiRoutine,
                                                 TelemetryFactory makeTelemetry, RunHooks hooks)
    : CBalBaseBootstrapperApplication(engine, command, retryMaximum, retryDelay),
      m_logger(engine),
      m_engine(engine),
      m_command(command),
      m_uiRoutine(uiRoutine),
      m_hooks(std::move(hooks)),
      m_action(command->action),
      m_userDisplay(command->display),
      m_variables(engine),
      m_telemetry(m_variables, m_run, m_action),
      m_download(m_telemetry, m_hooks, [this] { return isCanceled(); }),
      m_reporting(m_variables, m_hooks),
      m_dialogReady(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    // First of all: the box of a crash takes its words from there.
    g_translator.set(std::make_shared<Translator>());
    // Beside it goes on what does without the answer.
    Task certificate(determineConfigurable);
    if (m_hooks.prepareUi) m_uiThread.prepare(m_hooks.prepareUi);
    takeEnvironment();
    const std::vector<std::wstring> arguments = processArguments();
    takeCommandLine(arguments);
    m_userDisplay = displayTowardsUser(command->display, command->relationType, arguments);
    loadConfiguration(isThinInstaller(), [&certificate] {
        certificate.wait();
        return g_configurable.load();
    });
    takeForcedLanguage();
    setShortcutTitles();
    setProductVariables();
    if (isRepair() && m_action == BOOTSTRAPPER_ACTION_UNINSTALL) m_action = BOOTSTRAPPER_ACTION_INSTALL;
    certificate.wait();  // every event tells it, and the first line of the start
    m_telemetry.start(makeTelemetry, command->relationType == BOOTSTRAPPER_RELATION_UPDATE, m_hooks.isElevated());
}

BootstrapperApplication::~BootstrapperApplication() {
    stopUiThread();
    releaseInstallerMutex();
}

void BootstrapperApplication::takeEnvironment() {
    if (const std::wstring repair = getEnvironmentText(variable::repair); !repair.empty())
        m_variables.set(variable::repair, repair);
    if (const std::wstring folder = getEnvironmentText(variable::installLocation); !folder.empty())
        m_variables.setInstallFolder(folder);
}

void BootstrapperApplication::takeCommandLine(std::span<const std::wstring> arguments) {
    for (const std::wstring& argument : arguments)
        if (const auto given = variableOfArgument(argument)) m_variables.set(given->first.c_str(), given->second);
}

void BootstrapperApplication::setShortcutTitles() {
    const auto translator = g_translator.get();
    for (const wchar_t* name : {variable::reporterShortcut, variable::recoveryShortcut}) {
        std::wstring title;
        if (translator->tryTranslate(name, title)) m_variables.set(name, title);
    }
}

void BootstrapperApplication::setProductVariables() {
    m_variables.set(variable::productName, L"Palisade app");
    m_variables.set(variable::shortcutName, L"Palisade");
    m_variables.setNumber(variable::allowWindows7, getConfigBool("qa.installer.allowWindows7", true));
    m_variables.setNumber(variable::meridianEnable, getConfigBool("app.meridian.enableMigration", false));
    if (removesBastion()) m_variables.setNumber(variable::uninstallBastion, 1);
}

std::string BootstrapperApplication::GetCurrentVersion() const {
    const ReportedVersion reported = reportedVersion(installerVersion, getConfigString("qa.currentVersion"),
                                                     getConfigString("qa.versionToOverride"));
    if (reported.overridden)
        PDX_LOG(logInfo, "BootstrapperApplication::GetCurrentVersion", "Overriding installer version from %s to %s",
                installerVersion, reported.version);
    return reported.version;
}

int BootstrapperApplication::sendAppMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    if (cancelCheck() == IDCANCEL) return IDCANCEL;
    if (!m_dialogWindow) return 0;
    WaitForSingleObject(m_dialogReady.get(), INFINITE);
    if (mayAsk(message)) awaitEndOfSystemLoops();
    return static_cast<int>(SendMessageW(m_dialogWindow, message, wparam, lparam));
}

void BootstrapperApplication::setDialogWindow(HWND window) { m_dialogWindow = window; }

void BootstrapperApplication::setDialogReady(bool ready) {
    if (ready)
        SetEvent(m_dialogReady.get());
    else
        ResetEvent(m_dialogReady.get());
}

void BootstrapperApplication::quit(DWORD code) {
    m_quitRequested = true;
    m_engine->Quit(code);
}

void BootstrapperApplication::quitOnFailure(const char* operation, HRESULT hr) {
    if (SUCCEEDED(hr)) return;
    PDX_LOG(logError, "BootstrapperApplication::quitOnFailure", "%s failed: %s", operation, describeError(hr));
    UpdateInstallStatus(hr);
    quit(1);
}

void BootstrapperApplication::requestReload(ReloadPurpose purpose) {
    const wchar_t* const mode = purpose == ReloadPurpose::repair ? variable::repair : variable::meridianMode;
    m_shutdownResult = resultReloadBootstrapper;
    SetEnvironmentVariableW(mode, L"1");
    m_variables.setNumber(mode, 1);
    quit(0);
}

void BootstrapperApplication::requestRepairReload() { requestReload(ReloadPurpose::repair); }

}  // namespace pdx
