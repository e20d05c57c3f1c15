// What the buttons do.
#include <algorithm>

#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/rules/PageFlow.h"

namespace pdx {

MessageResult BootstrapperDialog::OnCommand(int32_t id, int32_t notification) {
    if (notification != BN_CLICKED) return unhandled();
    const PageKind kind = topPage().kind;
    switch (id) {
        case IDC_ACTION1:
            if (kind == pageWelcome || kind == pageOptions)
                startInstall();
            else if (kind == pageBastion || kind == pagePrompt)
                answerPage(id);
            break;
        case IDC_ACTION2:
            if (kind == pageOptions)
                ReplacePage({.kind = pageWelcome});
            else
                answerPage(id);
            break;
        case IDC_ACTION3:
            answerPage(id);
            break;
        case IDC_CLOSE:
            close(closeActions(closingFacts()).cross);
            break;
        case IDCANCEL:
            // Escape, or the system's own close command.
            close(closeActions(closingFacts()).escape);
            break;
        case IDC_OPTIONS:
            run.telemetry().sendMeridianStartClick(startInstallOptions);
            ReplacePage({.kind = pageOptions});
            break;
        case IDC_BROWSE:
            browse();
            break;
        default:
            return unhandled();
    }
    return handled();
}

void BootstrapperDialog::startInstall() {
    const std::wstring folder = locationValue->GetText();
    if (!ValidateInstallFolder(folder)) return;
    const wchar_t* titleKey = installTitleKey();  // logs a variable, before the steps below log
    run.enableSending();
    run.setInstallFolder(folder);
    run.setDesktopShortcut(shortcutCheck->IsChecked());
    run.telemetry().sendMeridianStartClick(startLetsGo);
    if (run.asksAboutBastion()) {
        const int32_t answer = offerBastionUninstall();
        run.setBastionRemoval(answer == resultOk);
        if (answer == resultOk) run.telemetry().sendBastionOverlayClick(overlayUninstall);
        if (answer == resultCancel) run.telemetry().sendBastionOverlayClick(overlayNotNow);
        if (!IsWindow(hwnd)) return;
    }
    run.plan();
    showProgressPage(titleKey);
}

ClosingFacts BootstrapperDialog::closingFacts() const {
    const auto asks = [](const PageState& page) { return page.role == PageRole::closeQuestion; };
    return {.page = topPage().role,
            .oneButton = hasOneButton(topPage()),
            .closePromptOpen = std::any_of(pages.begin(), pages.end(), asks),
            .uninstalls = run.action() == BOOTSTRAPPER_ACTION_UNINSTALL,
            .asksUser = isPromptShown(run.display())};
}

void BootstrapperDialog::close(CloseAction action) {
    switch (action) {
        case CloseAction::nothing:
            break;
        case CloseAction::firstButton:
            answerPage(IDC_ACTION1);
            break;
        case CloseAction::ask:
            if (askToClose()) stopInstaller();
            break;
        case CloseAction::stop:
            stopInstaller();
            break;
        case CloseAction::hide:
            Show(SW_HIDE);
            break;
    }
}

bool BootstrapperDialog::askToClose() {
    if (topPage().kind == pageBastion) run.telemetry().sendBastionOverlayClick(overlayClose);
    if (topPage().kind == pageWelcome) run.telemetry().sendMeridianStartClick(startClose);
    return ShowPrompt(closePrompt) == resultCancel;
}

void BootstrapperDialog::stopInstaller() {
    run.cancel(hwnd);
    DestroyWindow(hwnd);
}

}  // namespace pdx
