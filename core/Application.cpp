// The object's life, and what every callback uses: variables, messages to the dialog, context and status.
#include <mutex>

#include "config/rules/ConfigLayers.h"
#include "config/Settings.h"
#include "config/Translator.h"
#include "core/BootstrapperApplication.h"
#include "platform/CommandLine.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/rules/CommandLine.h"
#include "platform/Task.h"
#include "state/OlderClientFate.h"

namespace pdx {
namespace {

/// Asks for a text whose size is not known: a first buffer of 256 characters, and a second of the size that the answer
/// names. Empty on any failure.
template <typename Ask>
std::wstring askText(Ask ask) {
    std::wstring buffer(256, L'\0');
    auto size = static_cast<DWORD>(buffer.size());
    HRESULT hr = ask(buffer.data(), &size);
    if (hr == HRESULT_FROM_WIN32(ERROR_MORE_DATA)) {
        buffer.assign(size_t{size} + 1, L'\0');
        size = static_cast<DWORD>(buffer.size());
        hr = ask(buffer.data(), &size);
    }
    return SUCCEEDED(hr) ? std::wstring(buffer.c_str()) : std::wstring();
}

/// What a run leaves in the environment for the one that the engine loads after it.
constexpr struct {
    const wchar_t* name;
    void (*take)(BootstrapperApplication& application, const std::wstring& value);
} reloadEnvironment[] = {
    {L"PDX_REPAIR",
     [](auto& application, auto& value) { application.engine()->SetVariableString(L"PDX_REPAIR", value.c_str()); }},
    {L"PDX_INSTALL_LOCATION", [](auto& application, auto& value) { application.setInstallFolder(value); }},
};

/// The strings in the user's language, or in the one that the configuration forces.
std::shared_ptr<Translator> makeTranslator() {
    auto translator = std::make_shared<Translator>();
    const std::wstring forced = getConfigWideString("location.language");
    if (!forced.empty()) translator->Load(forced);
    return translator;
}

}  // namespace

BootstrapperApplication::BootstrapperApplication(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command,
                                                 DWORD retryMaximum, DWORD retryDelay, UiRoutine uiRoutine,
                                                 TelemetryFactory telemetry, RunHooks hooks)
    : CBalBaseBootstrapperApplication(engine, command, retryMaximum, retryDelay),
      m_logger(engine),
      m_engine(engine),
      m_command(command),
      m_uiRoutine(uiRoutine),
      m_hooks(std::move(hooks)),
      m_action(command->action),
      m_userDisplay(command->display),
      m_dialogReady(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    // Beside it goes on what does without the answer.
    Task certificate(determineConfigurable);
    takeEnvironment();
    const std::vector<std::wstring> arguments = processArguments();
    takeCommandLine(arguments);
    m_userDisplay = displayTowardsUser(command->display, command->relationType, arguments);
    loadConfiguration(isThinInstaller(), [&certificate] {
        certificate.wait();
        return g_configurable.load();
    });
    g_translator.set(makeTranslator());
    setShortcutTitles();
    setProductVariables();
    if (isRepair() && m_action == BOOTSTRAPPER_ACTION_UNINSTALL) m_action = BOOTSTRAPPER_ACTION_INSTALL;
    certificate.wait();  // every event tells it, and the first line of the start
    startTelemetry(telemetry);
}

BootstrapperApplication::~BootstrapperApplication() {
    stopUiThread();
    releaseInstallerMutex();
}

void BootstrapperApplication::takeEnvironment() {
    for (const auto& row : reloadEnvironment) {
        const std::wstring value = getEnvironmentText(row.name);
        if (!value.empty()) row.take(*this, value);
    }
}

void BootstrapperApplication::takeCommandLine(std::span<const std::wstring> arguments) {
    for (const std::wstring& argument : arguments)
        if (const auto variable = variableOfArgument(argument))
            m_engine->SetVariableString(variable->first.c_str(), variable->second.c_str());
}

void BootstrapperApplication::setShortcutTitles() {
    const auto translator = g_translator.get();
    for (const wchar_t* name :
         {L"INSTALLER_ERROR_REPORTER_SHORTCUT_TITLE", L"INSTALLER_RECOVERY_HELPER_SHORTCUT_TITLE"}) {
        std::wstring title;
        if (translator->tryTranslate(name, title)) m_engine->SetVariableString(name, title.c_str());
    }
}

void BootstrapperApplication::setProductVariables() {
    m_engine->SetVariableString(L"PRODUCT_DISPLAY_NAME", L"Palisade app");
    m_engine->SetVariableString(L"PDX_SHORTCUT_NAME", L"Palisade");
    m_engine->SetVariableNumeric(L"PDX_ALLOW_WINDOWS_7", getConfigBool("qa.installer.allowWindows7", true));
    m_engine->SetVariableNumeric(L"PDX_MERIDIAN_ENABLE", getConfigBool("app.meridian.enableMigration", false));
    if (isOlderClientTo(OlderClientFate::goes)) m_engine->SetVariableNumeric(L"PDX_UNINSTALL_BASTION", 1);
}

std::wstring BootstrapperApplication::GetEngineVariable(const std::wstring& name, bool format) const {
    std::wstring value =
        askText([&](LPWSTR buffer, DWORD* size) { return m_engine->GetVariableString(name.c_str(), buffer, size); });
    if (format) {
        value =
            askText([&](LPWSTR buffer, DWORD* size) { return m_engine->FormatString(value.c_str(), buffer, size); });
    }
    PDX_LOG(logInfo, "BootstrapperApplication::GetEngineVariable", "variable=[%ls]; result=[%ls]", name, value);
    return value;
}

std::string BootstrapperApplication::GetCurrentVersion() const {
    const ReportedVersion reported = reportedVersion(installerVersion, getConfigString("qa.currentVersion"),
                                                     getConfigString("qa.versionToOverride"));
    if (reported.overridden)
        PDX_LOG(logInfo, "BootstrapperApplication::GetCurrentVersion", "Overriding installer version from %s to %s",
                installerVersion, reported.version);
    return reported.version;
}

bool BootstrapperApplication::isThinInstaller() const { return GetEngineVariable(L"IsThickInstaller", false) == L"no"; }
bool BootstrapperApplication::isRepair() const { return GetEngineVariable(L"PDX_REPAIR", false) != L"0"; }
bool BootstrapperApplication::isMeridianMode() const { return GetEngineVariable(L"PDX_MERIDIAN_MODE", false) != L"0"; }

int BootstrapperApplication::sendAppMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    if (cancelCheck() == IDCANCEL) return IDCANCEL;
    if (!m_dialogWindow) return 0;
    WaitForSingleObject(m_dialogReady.get(), INFINITE);
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

void BootstrapperApplication::setInstallFolder(const std::wstring& folder) {
    std::wstring escaped(folder.size() * 4 + 1, L'\0');
    auto size = static_cast<DWORD>(escaped.size());
    const bool made = SUCCEEDED(m_engine->EscapeString(folder.c_str(), escaped.data(), &size));
    m_engine->SetVariableString(L"InstallFolder", made ? escaped.c_str() : folder.c_str());
}

void BootstrapperApplication::requestReload(ReloadPurpose purpose) {
    const wchar_t* const mode = purpose == ReloadPurpose::repair ? L"PDX_REPAIR" : L"PDX_MERIDIAN_MODE";
    m_shutdownResult = resultReloadBootstrapper;
    SetEnvironmentVariableW(mode, L"1");
    m_engine->SetVariableNumeric(mode, 1);
    quit(0);
}

void BootstrapperApplication::requestRepairReload() { requestReload(ReloadPurpose::repair); }

void BootstrapperApplication::UpdateInstallStatus(HRESULT hr) {
    HRESULT before = 0;
    {
        const std::lock_guard guard(m_stateLock);
        before = m_status.status;
        if (!m_status.update(hr, m_lastOperation, m_context)) return;
    }
    PDX_LOG(logInfo, "BootstrapperApplication::UpdateInstallStatus",
            "Updating install status from %s (%08x) to %s (%08x)", describeError(before), static_cast<uint32_t>(before),
            describeError(hr), static_cast<uint32_t>(hr));
}

void BootstrapperApplication::record(Operation operation, std::initializer_list<Fact> facts,
                                     std::source_location where) {
    const OperationRow& row = rowOf(operation);
    const std::string name = row.callback;
    const std::string line = facts.size() == 0 ? "Entering " + name.substr(name.rfind(':') + 1) : lineOf(facts);
    logMessage(logTrace, row.callback, static_cast<int32_t>(where.line()), "%s", line);
    const std::lock_guard guard(m_stateLock);
    m_lastOperation = operation;
    if (row.rule == ContextRule::replace) m_context.clear();
    m_context.update(contextOf(facts));
}

void BootstrapperApplication::trace(const char* callback, std::span<const Fact> facts, std::source_location where) {
    logMessage(logTrace, callback, static_cast<int32_t>(where.line()), "%s", lineOf(facts));
}

void BootstrapperApplication::replaceContext(Operation operation) {
    const std::lock_guard guard(m_stateLock);
    m_lastOperation = operation;
    m_context = Json::object();
}

void BootstrapperApplication::mergeContext(Operation operation, const Json& attributes) {
    const std::lock_guard guard(m_stateLock);
    m_lastOperation = operation;
    m_context.update(attributes);
}

void BootstrapperApplication::mergeContext(const Json& attributes) {
    const std::lock_guard guard(m_stateLock);
    m_context.update(attributes);
}

void BootstrapperApplication::setOperation(Operation operation) {
    const std::lock_guard guard(m_stateLock);
    m_lastOperation = operation;
}

HRESULT BootstrapperApplication::installStatus() const {
    const std::lock_guard guard(m_stateLock);
    return m_status.status;
}

BootstrapperApplication::State BootstrapperApplication::state() const {
    const std::lock_guard guard(m_stateLock);
    return {m_lastOperation, m_context, m_status};
}

}  // namespace pdx
