// What the dialog does for each step of the run.
#include "platform/Handles.h"
#include "platform/Log.h"
#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/rules/PageFlow.h"

namespace pdx {
namespace {

/// The mutex of a running client.
constexpr const wchar_t* clientMutexName = L"Global\\PalisadeDesktop.exe";

/// Access is denied for the client of another user, which counts as running.
bool isClientRunning() {
    return Handle(OpenMutexW(SYNCHRONIZE, FALSE, clientMutexName)) || GetLastError() == ERROR_ACCESS_DENIED;
}

}  // namespace

void BootstrapperDialog::showProgressPage(const wchar_t* titleKey, PageRole role) {
    ReplacePage({.kind = pageProgress, .title = Translate(titleKey), .role = role});
}

const wchar_t* BootstrapperDialog::installTitleKey() const {
    return run.isThinInstaller() ? L"installer_download_progress_title" : L"installer_install_progress_title";
}

void BootstrapperDialog::OnDetectComplete() {
    switch (afterDetection(run.action(), run.display(), run.isRepair())) {
        case DetectFlow::uninstall:
            confirmUninstall();
            break;
        case DetectFlow::welcome:
            ReplacePage({.kind = pageWelcome});
            run.telemetry().sendMeridianStartImpressions();
            break;
        case DetectFlow::update:
            showProgressPage(L"installer_download_progress_title");
            [[fallthrough]];
        case DetectFlow::install:
            run.enableSending();
            [[fallthrough]];
        case DetectFlow::plan:
            run.plan();
            break;
    }
}

void BootstrapperDialog::confirmUninstall() {
    run.enableSending();
    while (isClientRunning() && ShowPrompt(clientRunningPrompt) == resultRetry) {
    }
    if (isClientRunning()) {
        PDX_LOG(logInfo, "BootstrapperDialog::OnDetectComplete",
                "Palisade Desktop is still running.  Canceling uninstall");
        run.quit(0);
        return;
    }
    const int32_t answer = ShowPrompt(confirmUninstallPrompt);
    if (answer == resultYes) {
        showProgressPage(L"installer_uninstall_initial_progress_title");
        run.plan();
    } else if (answer == resultNo) {
        run.requestRepair();
    }
}

int32_t BootstrapperDialog::offerBastionUninstall() {
    run.telemetry().sendBastionOverlayImpressions();
    return ShowPrompt(bastionPrompt);
}

int32_t BootstrapperDialog::OnError(const ErrorInfo& error) {
    questionCheck->SetChecked(true);
    questionChecked = true;
    const int32_t answer = ShowPrompt(errorPrompt(error.errorType, error.code, error.uiHint, error.defaultResult));
    if (IsWindow(hwnd)) questionChecked = questionCheck->IsChecked();
    run.setReportConsent(questionChecked);
    return answer;
}

int32_t BootstrapperDialog::OnCacheAcquireComplete(HRESULT status) {
    if (SUCCEEDED(status)) return 0;
    return connectionAnswer(ShowPrompt(connectionPrompt));
}

int32_t BootstrapperDialog::OnApplyComplete(HRESULT status, int32_t restart) {
    int32_t answer = 0;
    if (isRestartWanted(restart)) {
        if (ShowPrompt(restartPrompt) == resultYes) answer = resultRestart;
    } else if (FAILED(status) && codeOf(status) == ERROR_ACCESS_DISABLED_BY_POLICY) {
        ShowPrompt(notAuthenticatedPrompt);
    } else if (run.action() == BOOTSTRAPPER_ACTION_UNINSTALL) {
        if (SUCCEEDED(status)) ShowPrompt(uninstallCompletePrompt);
        DestroyWindow(hwnd);
    }
    run.quit(exitCodeOf(status));
    return answer;
}

}  // namespace pdx
