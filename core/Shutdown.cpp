// The end of a run: its events and error report, the Run value, and a reload of the library.
#include "config/Settings.h"
#include "core/BootstrapperApplication.h"
#include "core/rules/RunValue.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/product/Client.h"
#include "platform/Registry.h"

namespace pdx {
namespace {

constexpr const wchar_t* runKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

/// The object after a reload uses this one's process-wide services, so the library must stay mapped in between. Only
/// for a reload: a pinned library cannot be deleted, and its folder stays in the temporary folder.
void pinLibrary() {
    HMODULE pinned = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(libraryModule()), &pinned);
}

void removeRunValueOf(const std::wstring& installFolder) {
    RegistryKey run = RegistryKey::currentUser(view64).openSubKey(runKey, true);
    const std::wstring value = toText(run.getValue(runValueName, {}));
    if (isRunValueOfFolder(toLower(value), toLower(installFolder))) run.deleteValue(runValueName);
}

void writeRunValue() {
    const std::wstring launcher = clientText(L"LauncherAppPath");
    RegistryKey::currentUser(view64).setSubKeyValue(runKey, runValueName, runCommand(launcher));
}

void endAsCancel(Run& run, ErrorReporting& errors) {
    // Read now: a logout may change it during the upload.
    const char* const word = runCancelWord(run.loggedOut);
    PDX_LOG(logInfo, "BootstrapperApplication::OnShutdown", "The run was cancelled: %s", word);
    run.telemetry.sendRunCancelled(word, errors.submit());
}

void endAsFailure(Run& run, ErrorReporting& errors) {
    errors.showFailure();
    run.telemetry.sendRunFailed(errors.submit());
}

void endAsSuccess(Run& run) {
    run.telemetry.sendRunFinished();
    if (run.action == BOOTSTRAPPER_ACTION_UNINSTALL)
        removeRunValueOf(run.variables.get(variable::installFolder, true));
    else if (getConfigBool("indev.startOnBoot", false))
        writeRunValue();
}

}  // namespace

int BootstrapperApplication::OnShutdown() {
    m_context.record(Operation::shutdown, {});
    const int result = m_run.takeShutdownResult();
    m_context.merge({{"stat", result}});
    if (result == resultReloadBootstrapper) {
        pinLibrary();
        m_run.telemetry.handOn();
        return result;
    }
    switch (outcomeOf(installStatus())) {
        case Outcome::cancelled:
            endAsCancel(m_run, m_errors);
            break;
        case Outcome::failed:
            endAsFailure(m_run, m_errors);
            break;
        case Outcome::succeeded:
            endAsSuccess(m_run);
            break;
    }
    m_run.telemetry.sendSessionStopped();
    // The run is over for the user: a second one may start while the last events are sent.
    m_run.ui->hideWindow();
    m_run.mutex.release();
    m_run.telemetry.stop();
    m_run.ui->close();
    return 0;
}

}  // namespace pdx
