// What the buttons do.
#include <algorithm>

#include "state/OlderClient.h"
#include "telemetry/TelemetryManager.h"
#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/rules/PageFlow.h"

namespace pdx {

MessageResult BootstrapperDialog::OnCommand(int32_t id, int32_t notification) {
    if (notification != BN_CLICKED) return unhandled();
    const int32_t kind = Top().kind;
    switch (id) {
        case IDC_ACTION1:
            if (kind == pageWelcome || kind == pageOptions)
                OnStartInstall();
            else if (kind == pageOlderClient || kind == pagePrompt)
                AnswerPage(id);
            break;
        case IDC_ACTION2:
            if (kind == pageOptions)
                ReplacePage({.kind = pageWelcome});
            else
                AnswerPage(id);
            break;
        case IDC_ACTION3:
            AnswerPage(id);
            break;
        case IDC_CLOSE:
            Perform(closeDeeds(GetClosingFacts()).cross);
            break;
        case IDCANCEL:
            // Escape, or the system's own close command.
            Perform(closeDeeds(GetClosingFacts()).escape);
            break;
        case IDC_OPTIONS:
            app.telemetry().sendMeridianStartClick(startInstallOptions);
            ReplacePage({.kind = pageOptions});
            break;
        case IDC_BROWSE:
            OnBrowse();
            break;
        default:
            return unhandled();
    }
    return handled();
}

const wchar_t* BootstrapperDialog::InstallTitleKey() const {
    return app.isThinInstaller() ? L"installer_download_progress_title" : L"installer_install_progress_title";
}

void BootstrapperDialog::OnStartInstall() {
    const std::wstring folder = locationValue->GetText();
    if (!ValidateInstallFolder(folder)) return;
    const wchar_t* titleKey = InstallTitleKey();
    enableTelemetry();
    app.setInstallFolder(folder);
    app.engine()->SetVariableString(variable::desktopShortcut, shortcutCheck->IsChecked() ? L"1" : L"");
    app.telemetry().sendMeridianStartClick(startLetsGo);
    if (asksToRemoveBastion()) {
        const int32_t answer = OfferBastionUninstall();
        app.engine()->SetVariableNumeric(variable::uninstallBastion, answer == resultOk);
        if (answer == resultOk) app.telemetry().sendBastionOverlayClick(overlayUninstall);
        if (answer == resultCancel) app.telemetry().sendBastionOverlayClick(overlayNotNow);
        if (!IsWindow(hwnd)) return;
    }
    QuitOnFailure("Plan", app.engine()->Plan(app.action()));
    ShowProgressPage(titleKey);
}

ClosingFacts BootstrapperDialog::GetClosingFacts() const {
    const auto asks = [](const PageState& page) { return page.role == PageRole::closeQuestion; };
    return {.page = TopPage().role,
            .oneButton = hasOneButton(TopPage()),
            .closePromptOpen = std::any_of(pages.begin(), pages.end(), asks),
            .uninstalls = app.action() == BOOTSTRAPPER_ACTION_UNINSTALL,
            .asksUser = isPromptShown(app.display())};
}

void BootstrapperDialog::Perform(CloseDeed deed) {
    switch (deed) {
        case CloseDeed::nothing:
            break;
        case CloseDeed::firstButton:
            AnswerPage(IDC_ACTION1);
            break;
        case CloseDeed::ask:
            if (AskToClose()) StopInstaller();
            break;
        case CloseDeed::stop:
            StopInstaller();
            break;
        case CloseDeed::hide:
            Show(SW_HIDE);
            break;
    }
}

bool BootstrapperDialog::AskToClose() {
    if (Top().kind == pageOlderClient) app.telemetry().sendBastionOverlayClick(overlayClose);
    if (Top().kind == pageWelcome) app.telemetry().sendMeridianStartClick(startClose);
    return ShowPrompt(closePrompt) == resultCancel;
}

void BootstrapperDialog::StopInstaller() {
    // The flag makes every further callback answer a cancel: an apply that is under way ends in a rollback.
    app.PromptCancel(hwnd, TRUE, nullptr, nullptr);
    app.UpdateInstallStatus(hresultFromWin32(userExitCode));
    DestroyWindow(hwnd);
}

}  // namespace pdx
