#include "ui/dialog/BootstrapperDialog.h"

#include <objbase.h>

#include "platform/Errors.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "resources/ids.h"
#include "ui/dialog/rules/PageFlow.h"

namespace pdx {
namespace {

/// Held by a running client.
constexpr const wchar_t* clientMutexName = L"Global\\PalisadeDesktop.exe";

bool isClientRunning() { return static_cast<bool>(Handle(OpenMutexW(SYNCHRONIZE, FALSE, clientMutexName))); }

}  // namespace

BootstrapperDialog::~BootstrapperDialog() {
    app.setDialogWindow(nullptr);
    app.setDialogReady(true);
    if (!window) return;
    SetWindowLongPtrW(window, DWLP_USER, 0);
    DestroyWindow(window);
}

HWND BootstrapperDialog::create() {
    return CreateDialogParamW(libraryModule(), MAKEINTRESOURCEW(IDD_BOOTSTRAPPER), nullptr, dialogProcedure,
                              reinterpret_cast<LPARAM>(this));
}

INT_PTR CALLBACK BootstrapperDialog::dialogProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lparam);
        reinterpret_cast<BootstrapperDialog*>(lparam)->window = window;
    }
    auto* dialog = reinterpret_cast<BootstrapperDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!dialog) return FALSE;
    switch (message) {
        case WM_INITDIALOG:
            dialog->onInitDialog();
            return FALSE;
        case WM_DESTROY:
            dialog->onDestroy();
            return TRUE;
        case WM_QUERYENDSESSION:
            dialog->app.noteLogoutExit();
            return FALSE;
        default:
            if (message < WM_APP || message > 0xBFFF) return FALSE;
            SetWindowLongPtrW(window, DWLP_MSGRESULT, dialog->onAppMessage(message, wparam, lparam));
            return TRUE;
    }
}

void BootstrapperDialog::onInitDialog() {
    app.setDialogWindow(window);
    app.setDialogReady(true);
}

void BootstrapperDialog::onDestroy() {
    window = nullptr;
    PostQuitMessage(0);
    app.quit(0);
}

LRESULT BootstrapperDialog::onAppMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_BA_DETECT_COMPLETE:
            onDetectComplete();
            return 0;
        case WM_BA_PLAN_COMPLETE:
            // Whatever the status: a plan that failed shows as the failure of applying it.
            quitOnFailure("Apply", app.engine()->Apply(window));
            return 0;
        case WM_BA_ERROR:
            return onError(*reinterpret_cast<const ErrorInfo*>(wparam));
        case WM_BA_CACHE_ACQUIRE_COMPLETE:
            return FAILED(static_cast<HRESULT>(wparam)) ? connectionAnswer(showPrompt(resultCancel)) : 0;
        case WM_BA_APPLY_COMPLETE:
            return onApplyComplete(static_cast<HRESULT>(wparam), static_cast<int>(lparam));
        case WM_BA_PROMPT_ALREADY_INSTALLED:
            return showPrompt(resultOk);
        default:
            return 0;
    }
}

void BootstrapperDialog::onDetectComplete() {
    if (app.action() == BOOTSTRAPPER_ACTION_UNINSTALL) {
        while (isClientRunning() && showPrompt(resultCancel) == resultRetry) {
        }
        if (isClientRunning()) {
            PDX_LOG(logInfo, "BootstrapperDialog::OnDetectComplete",
                    "Palisade Desktop is still running.  Canceling uninstall");
            app.quit(0);
            return;
        }
        if (showPrompt(IDYES) != IDYES) return;
    }
    quitOnFailure("Plan", app.engine()->Plan(app.action()));
}

void BootstrapperDialog::quitOnFailure(const char* operation, HRESULT hr) {
    if (SUCCEEDED(hr)) return;
    // An engine that refuses would call nothing more, and the run would stand still.
    PDX_LOG(logError, "BootstrapperDialog::quitOnFailure", "%s failed: %s", operation, describeError(hr));
    app.UpdateInstallStatus(hr);
    app.quit(1);
}

LRESULT BootstrapperDialog::onError(const ErrorInfo& error) {
    const int answer = showPrompt(error.defaultResult);
    // The check box of the prompt is checked until somebody unchecks it.
    app.engine()->SetVariableNumeric(L"PDX_SUBMIT_ERROR_REPORT", 1);
    return answer;
}

LRESULT BootstrapperDialog::onApplyComplete(HRESULT status, int restart) {
    LRESULT answer = 0;
    if (isRestartWanted(restart))
        answer = showPrompt(IDYES) == IDYES ? resultRestart : 0;
    else if (app.action() == BOOTSTRAPPER_ACTION_UNINSTALL && codeOf(status) != ERROR_ACCESS_DISABLED_BY_POLICY)
        DestroyWindow(window);
    app.quit(exitCodeOf(status));
    return answer;
}

int BootstrapperDialog::showPrompt(int defaultResult) {
    if (isPromptShown(app.display()))
        PDX_LOG(logWarning, "BootstrapperDialog::ShowPrompt", "This build shows no prompts: answering with %d",
                defaultResult);
    return defaultResult;
}

void UIThreadFunc(BootstrapperApplication& application) {
    PDX_LOG(logInfo, "UIThreadFunc", "Entering UIThreadFunc");
    const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    {
        BootstrapperDialog dialog(application);
        const HWND window = dialog.create();
        if (!window) {
            PDX_LOG(logInfo, "UIThreadFunc", "CreateDialogParam failed: %s",
                    describeError(HRESULT_FROM_WIN32(GetLastError())));
        } else {
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
                if (IsDialogMessageW(window, &message)) continue;
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
        PDX_LOG(logInfo, "UIThreadFunc", "Exiting UIThreadFunc");
    }
    if (SUCCEEDED(com)) CoUninitialize();
}

}  // namespace pdx
