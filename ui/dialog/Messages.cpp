// What the dialog makes of the application's messages.
#include <windows.h>

#include <commctrl.h>

#include "platform/Log.h"
#include "telemetry/TelemetryManager.h"
#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/rules/PageFlow.h"

namespace pdx {
namespace {

/// Held by a running client.
constexpr const wchar_t* clientMutexName = L"Global\\PalisadeDesktop.exe";

/// A client of another user may not be looked at, and runs all the same.
bool isClientRunning() {
    return Handle(OpenMutexW(SYNCHRONIZE, FALSE, clientMutexName)) || GetLastError() == ERROR_ACCESS_DENIED;
}

/// Whether the run goes on by what the dialog asks of the engine when it gets the message.
bool drivesRunOn(UINT message) {
    return message == WM_BA_DETECT_COMPLETE || message == WM_BA_PLAN_COMPLETE || message == WM_BA_APPLY_COMPLETE;
}

}  // namespace

MessageResult BootstrapperDialog::OnAppMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    try {
        return TakeAppMessage(message, wparam, lparam);
    } catch (...) {
        // Nobody else would drive the run on.
        if (drivesRunOn(message)) QuitOnFailure("A message", E_FAIL);
        throw;
    }
}

MessageResult BootstrapperDialog::TakeAppMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_BA_DETECT_UPDATE_BEGIN:
            ShowProgressPage(L"installer_checking_update_title");
            return handled();
        case WM_BA_DETECT_COMPLETE:
            OnDetectComplete();
            return handled();
        case WM_BA_PLAN_COMPLETE:
            // Whatever the status: a plan that failed shows as the failure of applying it.
            QuitOnFailure("Apply", app.engine()->Apply(hwnd));
            return handled();
        case WM_BA_ERROR:
            return handled(OnError(*reinterpret_cast<const ErrorInfo*>(wparam)));
        case WM_BA_CACHE_BEGIN:
            ShowProgressPage(InstallTitleKey());
            return handled();
        case WM_BA_CACHE_ACQUIRE_PROGRESS:
            UpdateProgress(static_cast<int32_t>(wparam));
            return handled();
        case WM_BA_CACHE_ACQUIRE_COMPLETE:
            return handled(OnCacheAcquireComplete(static_cast<HRESULT>(wparam)));
        case WM_BA_EXECUTE_BEGIN:
            if (hidesForUpdate(app.action())) Show(SW_HIDE);
            return handled();
        case WM_BA_EXECUTE_PACKAGE_BEGIN:
            ShowProgressPage(app.action() == BOOTSTRAPPER_ACTION_UNINSTALL ? L"installer_uninstall_progress_title"
                                                                           : L"installer_install_progress_title");
            return handled();
        case WM_BA_EXECUTE_PROGRESS:
            UpdateProgress(static_cast<int32_t>(lparam));
            return handled();
        case WM_BA_APPLY_COMPLETE:
            return handled(OnApplyComplete(static_cast<HRESULT>(wparam), static_cast<int32_t>(lparam)));
        case WM_BA_PROMPT_ALREADY_INSTALLED:
            return handled(ShowPrompt(alreadyInstalledPrompt));
        case WM_BA_REPAIR_INITIALIZING:
            ShowProgressPage(L"installer_initializing_repair_title");
            return handled();
        case WM_BA_SENDING_ERROR_REPORT:
            ShowProgressPage(L"ERROR_DIALOG_CRASH_SEND-REPORT", PageRole::reportUnderWay);
            return handled();
        case WM_BA_PROMPT_BASTION_UNINSTALL:
            return handled(OfferBastionUninstall());
        case WM_BA_UNINSTALLING_BASTION_TITLE:
            SetOlderClientTitle();
            return handled();
        case WM_BA_UNINSTALLING_BASTION:
            ShowProgressPage(L"INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE");
            return handled();
        case WM_BA_REFRESH_PAGE:
            ShowTopPage();
            return handled();
        default:
            return handled();
    }
}

void BootstrapperDialog::QuitOnFailure(const char* operation, HRESULT hr) { app.quitOnFailure(operation, hr); }

void BootstrapperDialog::ShowProgressPage(const wchar_t* titleKey, PageRole role) {
    ReplacePage({.kind = pageProgress, .title = Translate(titleKey), .role = role});
}

PageState& BootstrapperDialog::PageBelowPrompts() {
    return openPrompts < pages.size() ? pages[pages.size() - 1 - openPrompts] : Top();
}

void BootstrapperDialog::SetOlderClientTitle() {
    PageState& page = PageBelowPrompts();
    page.title = Translate(L"INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE");
    if (openPrompts == 0) titleLabel->SetText(page.title);
}

void BootstrapperDialog::UpdateProgress(int32_t percent) {
    // A message of another thread that was on its way when a prompt opened is none of the prompt's.
    PageState& page = PageBelowPrompts();
    if (page.progress == percent) return;
    SendMessageW(progressBar->getHandle(), PBM_SETPOS, static_cast<WPARAM>(percent), 0);
    page.progress = percent;
}

void BootstrapperDialog::OnDetectComplete() {
    const bool repairIsOff = app.GetEngineVariable(variable::repair, false) == L"0";
    switch (afterDetection(app.action(), app.display(), repairIsOff)) {
        case DetectFlow::uninstall:
            OnUninstallDetected();
            break;
        case DetectFlow::welcome:
            ReplacePage({.kind = pageWelcome});
            app.telemetry().sendMeridianStartImpressions();
            break;
        case DetectFlow::update:
            ShowProgressPage(L"installer_download_progress_title");
            enableTelemetry();
            QuitOnFailure("Plan", app.engine()->Plan(app.action()));
            break;
        case DetectFlow::install:
            enableTelemetry();
            QuitOnFailure("Plan", app.engine()->Plan(app.action()));
            break;
        case DetectFlow::plan:
            QuitOnFailure("Plan", app.engine()->Plan(app.action()));
            break;
    }
}

void BootstrapperDialog::OnUninstallDetected() {
    enableTelemetry();
    while (isClientRunning() && ShowPrompt(clientRunningPrompt) == resultRetry) {
    }
    if (isClientRunning()) {
        PDX_LOG(logInfo, "BootstrapperDialog::OnDetectComplete",
                "Palisade Desktop is still running.  Canceling uninstall");
        app.quit(0);
        return;
    }
    const int32_t answer = ShowPrompt(confirmUninstallPrompt);
    if (answer == resultYes) {
        ShowProgressPage(L"installer_uninstall_initial_progress_title");
        QuitOnFailure("Plan", app.engine()->Plan(app.action()));
    } else if (answer == resultNo) {
        app.requestRepairReload();
    }
}

int32_t BootstrapperDialog::OfferBastionUninstall() {
    app.telemetry().sendBastionOverlayImpressions();
    return ShowPrompt(olderClientPrompt);
}

int32_t BootstrapperDialog::OnError(const ErrorInfo& error) {
    questionCheck->SetChecked(true);
    questionChecked = true;
    const int32_t answer = ShowPrompt(errorPrompt(error.errorType, error.code, error.uiHint, error.defaultResult));
    if (IsWindow(hwnd)) questionChecked = questionCheck->IsChecked();
    app.engine()->SetVariableNumeric(variable::submitReport, questionChecked);
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
    } else if (app.action() == BOOTSTRAPPER_ACTION_UNINSTALL) {
        if (SUCCEEDED(status)) ShowPrompt(uninstallCompletePrompt);
        DestroyWindow(hwnd);
    }
    app.quit(exitCodeOf(status));
    return answer;
}

}  // namespace pdx
