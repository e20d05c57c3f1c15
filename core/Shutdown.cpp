// The end of a run: how it is told, what is left behind, and whether the engine loads the library anew.
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

/// After a reload the engine's next object finds this one's process-wide services, so the library must not be unmapped
/// in between. Only then: a pinned library cannot be deleted, and its folder stays in the temporary folder.
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

}  // namespace

int BootstrapperApplication::OnShutdown() {
    PDX_LOG(logTrace, "BootstrapperApplication::OnShutdown", "Entering OnShutdown");
    m_run.merge(Operation::shutdown, {{"stat", m_shutdownResult.load()}});
    if (m_shutdownResult == resultReloadBootstrapper) {
        m_shutdownResult = 0;
        pinLibrary();
        m_telemetry.handOn();
        return resultReloadBootstrapper;
    }
    switch (outcomeOf(installStatus())) {
        case Outcome::cancelled:
            endAsCancel();
            break;
        case Outcome::failed:
            endAsFailure();
            break;
        case Outcome::succeeded:
            endAsSuccess();
            break;
    }
    m_telemetry.sendSessionStopped();
    leaveTheScreen();
    m_telemetry.stop();
    stopUiThread();
    return 0;
}

void BootstrapperApplication::leaveTheScreen() {
    endSystemLoops();
    // Not waited for either: the dialog's thread may be busy.
    if (const HWND dialog = m_dialogWindow) ShowWindowAsync(dialog, SW_HIDE);
    releaseInstallerMutex();
}

void BootstrapperApplication::endAsCancel() {
    // Of the moment: the session may end while the report goes out.
    const char* const word = runCancelWord(m_logoutExit);
    PDX_LOG(logInfo, "BootstrapperApplication::OnShutdown", "The run was cancelled: %s", word);
    m_telemetry.sendRunCancelled(word, submitErrorReport());
}

void BootstrapperApplication::endAsFailure() {
    const bool shown = m_run.markErrorShown();
    if (!shown) {
        ErrorInfo record = {BOOTSTRAPPER_ERROR_TYPE_WINDOWS_INSTALLER, static_cast<DWORD>(m_run.status()), 0, resultOk};
        sendAppMessage(WM_BA_ERROR, reinterpret_cast<WPARAM>(&record));
    }
    m_telemetry.sendRunFailed(submitErrorReport());
}

std::string BootstrapperApplication::submitErrorReport() {
    return m_reporting.submit([this] {
        sendAppMessage(WM_BA_SENDING_ERROR_REPORT);
        // A second attempt need not wait for the network.
        releaseInstallerMutex();
    });
}

void BootstrapperApplication::endAsSuccess() {
    m_telemetry.sendRunFinished();
    if (m_action == BOOTSTRAPPER_ACTION_UNINSTALL)
        removeRunValueOf(m_variables.get(variable::installFolder, true));
    else if (getConfigBool("indev.startOnBoot", false))
        writeRunValue();
}

int BootstrapperApplication::OnSystemShutdown(DWORD dwEndSession, int nRecommendation) {
    m_run.record(Operation::systemShutdown,
                 {{"dwEndsession", "ends", dwEndSession}, {"nRecommendation", "reco", nRecommendation}});
    return endSessionAnswer(dwEndSession);
}

}  // namespace pdx
