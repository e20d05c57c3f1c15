// What the buttons do.
#include <algorithm>

#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/rules/PageFlow.h"

namespace pdx {

MessageResult BootstrapperDialog::OnCommand(int32_t id, int32_t notification) {
    if (notification != BN_CLICKED) return unhandled();
    const PageKind kind = Top().kind;
    switch (id) {
        case IDC_ACTION1:
            if (kind == pageWelcome || kind == pageOptions)
                OnStartInstall();
            else if (kind == pageBastion || kind == pagePrompt)
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
            Close(closeActions(GetClosingFacts()).cross);
            break;
        case IDCANCEL:
            // Escape, or the system's own close command.
            Close(closeActions(GetClosingFacts()).escape);
            break;
        case IDC_OPTIONS:
            run.telemetry().sendMeridianStartClick(startInstallOptions);
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
    return run.isThinInstaller() ? L"installer_download_progress_title" : L"installer_install_progress_title";
}

void BootstrapperDialog::OnStartInstall() {
    const std::wstring folder = locationValue->GetText();
    if (!ValidateInstallFolder(folder)) return;
    const wchar_t* titleKey = InstallTitleKey();
    run.enableSending();
    run.setInstallFolder(folder);
    run.setDesktopShortcut(shortcutCheck->IsChecked());
    run.telemetry().sendMeridianStartClick(startLetsGo);
    if (run.asksAboutBastion()) {
        const int32_t answer = OfferBastionUninstall();
        run.setBastionRemoval(answer == resultOk);
        if (answer == resultOk) run.telemetry().sendBastionOverlayClick(overlayUninstall);
        if (answer == resultCancel) run.telemetry().sendBastionOverlayClick(overlayNotNow);
        if (!IsWindow(hwnd)) return;
    }
    run.plan();
    ShowProgressPage(titleKey);
}

ClosingFacts BootstrapperDialog::GetClosingFacts() const {
    const auto asks = [](const PageState& page) { return page.role == PageRole::closeQuestion; };
    return {.page = TopPage().role,
            .oneButton = hasOneButton(TopPage()),
            .closePromptOpen = std::any_of(pages.begin(), pages.end(), asks),
            .uninstalls = run.action() == BOOTSTRAPPER_ACTION_UNINSTALL,
            .asksUser = isPromptShown(run.display())};
}

void BootstrapperDialog::Close(CloseAction action) {
    switch (action) {
        case CloseAction::nothing:
            break;
        case CloseAction::firstButton:
            AnswerPage(IDC_ACTION1);
            break;
        case CloseAction::ask:
            if (AskToClose()) StopInstaller();
            break;
        case CloseAction::stop:
            StopInstaller();
            break;
        case CloseAction::hide:
            Show(SW_HIDE);
            break;
    }
}

bool BootstrapperDialog::AskToClose() {
    if (Top().kind == pageBastion) run.telemetry().sendBastionOverlayClick(overlayClose);
    if (Top().kind == pageWelcome) run.telemetry().sendMeridianStartClick(startClose);
    return ShowPrompt(closePrompt) == resultCancel;
}

void BootstrapperDialog::StopInstaller() {
    run.cancel(hwnd);
    DestroyWindow(hwnd);
}

}  // namespace pdx
