// The object's construction and end, and the operations that the user interface asks for.
#include <span>

#include "config/rules/ConfigLayers.h"
#include "config/Settings.h"
#include "config/Translator.h"
#include "core/BootstrapperApplication.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/product/InstallerVersion.h"
#include "platform/rules/CommandLine.h"
#include "platform/Task.h"
#include "state/Bastion.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

/// Replaces the translator if the configuration forces a language. The strings load into a new one, because other
/// threads may be reading the current one.
void takeForcedLanguage() {
    const std::wstring forced = getConfigWideString("location.language");
    if (forced.empty()) return;
    auto translator = std::make_shared<Translator>();
    translator->Load(forced);
    g_translator.set(std::move(translator));
}

void takeEnvironment(RunVariables& variables) {
    if (const std::wstring repair = getEnvironmentText(variable::repair); !repair.empty())
        variables.set(variable::repair, repair);
    if (const std::wstring folder = getEnvironmentText(variable::installLocation); !folder.empty())
        variables.setInstallFolder(folder);
}

void takeCommandLine(RunVariables& variables, std::span<const std::wstring> arguments) {
    for (const std::wstring& argument : arguments)
        if (const auto given = variableOfArgument(argument)) variables.set(given->first.c_str(), given->second);
}

void setShortcutTitles(RunVariables& variables) {
    const auto translator = g_translator.get();
    for (const wchar_t* name : {variable::reporterShortcut, variable::recoveryShortcut}) {
        std::wstring title;
        if (translator->tryTranslate(name, title)) variables.set(name, title);
    }
}

void setProductVariables(RunVariables& variables) {
    variables.set(variable::productName, L"Palisade app");
    variables.set(variable::shortcutName, L"Palisade");
    variables.setNumber(variable::allowWindows7, getConfigBool("qa.installer.allowWindows7", true));
    variables.setNumber(variable::meridianEnable, isMigrationOn());
    if (removesBastion()) variables.setNumber(variable::uninstallBastion, 1);
}

}  // namespace

BootstrapperApplication::BootstrapperApplication(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command,
                                                 DWORD retryMaximum, DWORD retryDelay, const UiFactory& makeUi,
                                                 TelemetryFactory makeTelemetry, RunHooks hooks)
    : RecordedCallbacks(engine, command, retryMaximum, retryDelay),
      m_logger(engine),
      m_command(command),
      m_run(engine, *command, std::move(hooks), m_context, [this] { return isCanceled(); }),
      m_errors(m_run),
      m_download(m_run),
      m_migration(m_run, m_errors),
      m_repair(m_run, m_errors, m_migration),
      m_userDisplay(displayTowardsUser(command->display, command->relationType, processArguments())) {
    // First: the box of a crash reads its texts there.
    g_translator.set(std::make_shared<Translator>());
    // Runs in parallel; the steps below do not need its result.
    Task certificate(determineConfigurable);
    m_run.ui = makeUi(*this);
    takeEnvironment(m_run.variables);
    m_bundleExecutable = m_run.variables.get(variable::bundleExecutable);
    takeCommandLine(m_run.variables, processArguments());
    // Before the override file, which is not even looked for without the certificate: any account may have put a link
    // to a server there.
    certificate.wait();
    loadConfiguration(isThinInstaller());
    takeForcedLanguage();
    setShortcutTitles(m_run.variables);
    setProductVariables(m_run.variables);
    if (isRepair() && action() == BOOTSTRAPPER_ACTION_UNINSTALL) m_run.action = BOOTSTRAPPER_ACTION_INSTALL;
    m_run.telemetry.start(makeTelemetry, command->relationType == BOOTSTRAPPER_RELATION_UPDATE,
                          m_run.hooks.isElevated());
}

BootstrapperApplication::~BootstrapperApplication() {
    // The UI thread calls this object.
    m_run.ui.reset();
}

std::string BootstrapperApplication::GetCurrentVersion() const {
    const ReportedVersion reported = reportedVersion(installerVersion, getConfigString("qa.currentVersion"),
                                                     getConfigString("qa.versionToOverride"));
    if (reported.overridden)
        PDX_LOG(logInfo, "BootstrapperApplication::GetCurrentVersion", "Overriding installer version from %s to %s",
                installerVersion, reported.version);
    return reported.version;
}

bool BootstrapperApplication::asksAboutBastion() const { return asksToRemoveBastion(); }

void BootstrapperApplication::enableSending() { enableTelemetry(); }

void BootstrapperApplication::plan() { m_run.quitOnFailure("Plan", m_run.engine->Plan(action())); }

void BootstrapperApplication::apply(HWND window) { m_run.quitOnFailure("Apply", m_run.engine->Apply(window)); }

void BootstrapperApplication::cancel(HWND window) {
    PromptCancel(window, TRUE, nullptr, nullptr);
    UpdateInstallStatus(hresultFromWin32(userExitCode));
}

}  // namespace pdx
