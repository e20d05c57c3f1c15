#include "core/Migration.h"

#include "core/Elevation.h"
#include "core/rules/Relaunch.h"
#include "platform/Log.h"
#include "platform/product/Client.h"
#include "state/Bastion.h"

namespace pdx {

void Migration::promptBastionUninstall() {
    const bool asks = !run.isCancelled();
    const BastionChoice choice = run.ui->askAboutBastion();
    const bool removes = choice == BastionChoice::uninstall;
    // Every other answer counts as "not now", also the closed window, which cancels the run.
    if (asks) run.telemetry.sendBastionOverlayClick(removes ? overlayUninstall : overlayNotNow);
    if (!run.isCancelled()) {
        if (removes) {
            run.variables.setNumber(variable::uninstallBastion, 1);
            run.requestReload(ReloadPurpose::migration);
        }
        if (choice == BastionChoice::notNow) {
            run.variables.setNumber(variable::uninstallBastion, 0);
            if (isBastionRunning()) {
                PDX_LOG(logInfo, "BootstrapperApplication::promptBastionUninstall",
                        "Bastion is running, attempting to close Bastion");
                quitBastion();
            }
            launchClientToUpdate();
        }
    }
    // The second request to quit after "uninstall", which is harmless.
    run.quit(0);
}

HRESULT Migration::start() {
    if (!run.hooks.isElevated()) return relaunchElevated(run, errors);
    if (run.variables.get(variable::uninstallBastion) == L"1") removeBastion();
    launchClientToUpdate();
    run.quit(0);
    return S_OK;
}

void Migration::launchInstalledClient() {
    if (run.variables.get(variable::uninstallBastion) == L"1") {
        removeBastion();
        launchClientToUpdate();
    } else {
        launchClient(L"/checkForUpdate");
    }
}

void Migration::removeBastion() {
    run.ui->showBastionRemoval();
    if (run.isCancelledAfterQuestions()) return;
    waitForBastionTempUninstallers();
    // A fixed pause of the product's sequence; it waits for no known condition.
    Sleep(1000);
    // After a cancel too: the older client has been removed.
    run.telemetry.sendMeridianCompleted();
}

void Migration::launchClientToUpdate() {
    if (run.isCancelledAfterQuestions()) return;
    launchClient(L"/checkForUpdate " + authArgument(run.variables.get(variable::authCode)));
}

}  // namespace pdx
