#include "core/Repair.h"

#include "core/Elevation.h"
#include "state/RepairCleanup.h"

namespace pdx {
namespace {

/// By RepairStep.
constexpr Operation repairOperations[] = {Operation::repairStopService, Operation::repairDeleteService,
                                          Operation::repairDeleteFolder};

}  // namespace

// 1. The question. The dialog's question in an uninstall can request the same reload.
void Repair::promptAlreadyInstalled() {
    const InstalledChoice choice = run.ui->askInstalled();
    if (!run.isCancelled()) {
        if (choice == InstalledChoice::launch) migration.launchInstalledClient();
        if (choice == InstalledChoice::repair) run.requestReload(ReloadPurpose::repair);
    }
    // The second request to quit after "repair", which is harmless.
    run.quit(0);
}

// 2. The engine loads the library anew, and the new object finds PDX_REPAIR in the environment. Without elevated rights
// it starts an elevated copy, which starts here too.
HRESULT Repair::start() {
    if (!run.hooks.isElevated()) return relaunchElevated(run, errors);
    run.ui->showRepairBeginning();
    return performRepairCleanup();
}

// 3. The clean-up. 4. The detection; from here on the run is an install.
HRESULT Repair::performRepairCleanup() {
    RepairRun steps;
    steps.providerKey = run.variables.get(variable::providerKey);
    steps.isCancelled = [this] { return run.isCancelledAfterQuestions(); };
    steps.begin = [this](RepairStep step) {
        const Operation operation = repairOperations[static_cast<size_t>(step)];
        if (step == RepairStep::stopService)
            run.context.begin(operation);
        else
            run.context.setOperation(operation);
    };
    steps.omitDesktopShortcut = [this] { run.variables.set(variable::desktopShortcut, L""); };
    steps.keepInstallFolder = [this](const std::wstring& folder) {
        run.variables.setInstallFolder(folder);
        SetEnvironmentVariableW(variable::installLocation, folder.c_str());
    };
    const RepairResult result = removeInstalledClient(steps);
    if (result == RepairResult::failed) return errors.fail(errorRepairIncomplete);
    // Also after a cancel that was too late for the clean-up: the engine would detect before it ends the run.
    if (result == RepairResult::cancelled || run.isCancelled()) {
        run.quit(0);
        return S_OK;
    }
    // A fixed pause of the product's sequence; it waits for no known condition.
    Sleep(1000);
    return run.detect();
}

}  // namespace pdx
