#include "core/Elevation.h"

#include "core/rules/Relaunch.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "state/ElevatedBinaries.h"

namespace pdx {

HRESULT lockBeforeElevation(Run& run, ErrorReporting& errors, const std::wstring& folder,
                            const std::wstring& executable) {
    if (run.hooks.lockElevated(run.lockedFiles, folder, executable)) return S_OK;
    return errors.fail(errorFilesNotLocked);
}

HRESULT relaunchElevated(Run& run, ErrorReporting& errors) {
    const std::wstring folder = removeFileSpec(getProcessFilePath());
    if (const HRESULT hr = lockBeforeElevation(run, errors, folder, getProcessFileName()); FAILED(hr)) return hr;
    const auto valueOf = [&run](const wchar_t* name) { return run.variables.get(name); };
    const ProgramStart start = {.verb = L"runas",
                                .file = lockedExecutable(run.lockedFiles),
                                .parameters = relaunchParameters(valueOf),
                                .show = SW_SHOW};
    if (!run.isCancelledAfterQuestions()) {
        // The elevated copy takes the mutex.
        run.mutex.release();
        const Handle copy = run.hooks.startProgram(start);
        // Not earlier: without a window of this process the elevation prompt could open in the background.
        run.ui->hideWindow();
        awaitElevatedStart(copy.get(), [&run] { return run.loggedOut.load(); });
    }
    run.quit(0);
    return S_OK;
}

}  // namespace pdx
