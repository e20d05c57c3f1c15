// How each message of AppMessages.h is sent, and what the dialog does with it.
#include "ui/dialog/AppMessages.h"

#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/DialogUi.h"
#include "ui/dialog/rules/PageFlow.h"

namespace pdx {
namespace {

constexpr WPARAM word(HRESULT status) { return static_cast<WPARAM>(status); }

/// Whether the dialog's handling of the message makes the engine continue the run.
bool drivesRunOn(UINT message) {
    return message == WM_BA_DETECT_COMPLETE || message == WM_BA_PLAN_COMPLETE || message == WM_BA_APPLY_COMPLETE;
}

}  // namespace

// ---- The sender's side, on any thread but the UI thread

int DialogUi::sendAppMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    if (run.isStopped()) return IDCANCEL;
    if (!window()) return 0;
    dialogGate.awaitReady();
    if (mayAsk(message)) awaitEndOfSystemLoops();
    return static_cast<int>(SendMessageW(window(), message, wparam, lparam));
}

void DialogUi::settle() { sendAppMessage(WM_NULL); }
void DialogUi::showUpdateCheck() { sendAppMessage(WM_BA_DETECT_UPDATE_BEGIN); }
void DialogUi::detectComplete(HRESULT status) { sendAppMessage(WM_BA_DETECT_COMPLETE, word(status)); }
void DialogUi::planComplete(HRESULT status) { sendAppMessage(WM_BA_PLAN_COMPLETE, word(status)); }
int DialogUi::showError(const ErrorInfo& error) {
    return sendAppMessage(WM_BA_ERROR, reinterpret_cast<WPARAM>(&error));
}
int DialogUi::cacheBegin() { return sendAppMessage(WM_BA_CACHE_BEGIN); }
int DialogUi::cacheAcquireBegin(BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR source) {
    return sendAppMessage(WM_BA_CACHE_ACQUIRE_BEGIN, static_cast<WPARAM>(operation), reinterpret_cast<LPARAM>(source));
}
int DialogUi::cacheAcquireProgress(DWORD overallPercentage) {
    return sendAppMessage(WM_BA_CACHE_ACQUIRE_PROGRESS, overallPercentage);
}
int DialogUi::cacheAcquireComplete(HRESULT status, int recommendation) {
    return sendAppMessage(WM_BA_CACHE_ACQUIRE_COMPLETE, word(status), recommendation);
}
int DialogUi::executeBegin(DWORD packages) { return sendAppMessage(WM_BA_EXECUTE_BEGIN, packages); }
int DialogUi::executePackageBegin(bool forward, LPCWSTR package) {
    return sendAppMessage(WM_BA_EXECUTE_PACKAGE_BEGIN, forward, reinterpret_cast<LPARAM>(package));
}
int DialogUi::executeProgress(DWORD packagePercentage, DWORD overallPercentage) {
    return sendAppMessage(WM_BA_EXECUTE_PROGRESS, packagePercentage, static_cast<LPARAM>(overallPercentage));
}
int DialogUi::applyComplete(HRESULT status, BOOTSTRAPPER_APPLY_RESTART restart) {
    return sendAppMessage(WM_BA_APPLY_COMPLETE, word(status), restart);
}

InstalledChoice DialogUi::askInstalled() {
    switch (sendAppMessage(WM_BA_PROMPT_ALREADY_INSTALLED)) {
        case resultOk:
            return InstalledChoice::launch;
        case resultCancel:
            return InstalledChoice::repair;
        default:
            return InstalledChoice::none;
    }
}

BastionChoice DialogUi::askAboutBastion() {
    switch (sendAppMessage(WM_BA_PROMPT_BASTION_UNINSTALL)) {
        case resultOk:
            return BastionChoice::uninstall;
        case resultCancel:
            return BastionChoice::notNow;
        default:
            return BastionChoice::none;
    }
}

void DialogUi::showRepairBeginning() { sendAppMessage(WM_BA_REPAIR_INITIALIZING); }
void DialogUi::showReportUnderWay() { sendAppMessage(WM_BA_SENDING_ERROR_REPORT); }
void DialogUi::showBastionTitle() { sendAppMessage(WM_BA_UNINSTALLING_BASTION_TITLE); }
void DialogUi::showBastionRemoval() { sendAppMessage(WM_BA_UNINSTALLING_BASTION); }

// ---- The dialog's side, on the UI thread

MessageResult BootstrapperDialog::OnAppMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    try {
        return takeAppMessage(message, wparam, lparam);
    } catch (...) {
        // Otherwise the run would hang.
        if (drivesRunOn(message)) run.quitAfterDialogFault();
        throw;
    }
}

MessageResult BootstrapperDialog::takeAppMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_BA_DETECT_UPDATE_BEGIN:
            showProgressPage(L"installer_checking_update_title");
            return handled();
        case WM_BA_DETECT_COMPLETE:
            OnDetectComplete();
            return handled();
        case WM_BA_PLAN_COMPLETE:
            // For any status: the failure of a plan is shown as the failure of applying it.
            run.apply(hwnd);
            return handled();
        case WM_BA_ERROR:
            return handled(OnError(*reinterpret_cast<const ErrorInfo*>(wparam)));
        case WM_BA_CACHE_BEGIN:
            showProgressPage(installTitleKey());
            return handled();
        case WM_BA_CACHE_ACQUIRE_PROGRESS:
            showProgress(static_cast<int32_t>(wparam));
            return handled();
        case WM_BA_CACHE_ACQUIRE_COMPLETE:
            return handled(OnCacheAcquireComplete(static_cast<HRESULT>(wparam)));
        case WM_BA_EXECUTE_BEGIN:
            if (hidesForUpdate(run.action())) Show(SW_HIDE);
            return handled();
        case WM_BA_EXECUTE_PACKAGE_BEGIN:
            showProgressPage(run.action() == BOOTSTRAPPER_ACTION_UNINSTALL ? L"installer_uninstall_progress_title"
                                                                           : L"installer_install_progress_title");
            return handled();
        case WM_BA_EXECUTE_PROGRESS:
            showProgress(static_cast<int32_t>(lparam));
            return handled();
        case WM_BA_APPLY_COMPLETE:
            return handled(OnApplyComplete(static_cast<HRESULT>(wparam), static_cast<int32_t>(lparam)));
        case WM_BA_PROMPT_ALREADY_INSTALLED:
            return handled(ShowPrompt(alreadyInstalledPrompt));
        case WM_BA_REPAIR_INITIALIZING:
            showProgressPage(L"installer_initializing_repair_title");
            return handled();
        case WM_BA_SENDING_ERROR_REPORT:
            showProgressPage(L"ERROR_DIALOG_CRASH_SEND-REPORT", PageRole::reportUnderWay);
            return handled();
        case WM_BA_PROMPT_BASTION_UNINSTALL:
            return handled(offerBastionUninstall());
        case WM_BA_UNINSTALLING_BASTION_TITLE:
            retitle(L"INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE");
            return handled();
        case WM_BA_UNINSTALLING_BASTION:
            showProgressPage(L"INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE");
            return handled();
        case WM_BA_REFRESH_PAGE:
            ShowTopPage();
            return handled();
        default:
            return handled();
    }
}

}  // namespace pdx
