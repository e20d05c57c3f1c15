#include "core/Elevation.h"

#include "core/rules/Relaunch.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/Processes.h"

namespace pdx {

HRESULT lockElevatedBinaries(Run& run, ErrorReporting& errors, const std::wstring& folder,
                             const std::wstring& executable) {
    if (run.hooks.lockElevated(run.lockedFiles, folder, executable)) return S_OK;
    return errors.fail(errorFilesNotLocked);
}

HRESULT relaunchElevated(Run& run, ErrorReporting& errors) {
    const std::wstring program = getProcessFilePath();
    if (const HRESULT hr = lockElevatedBinaries(run, errors, removeFileSpec(program), getProcessFileName()); FAILED(hr))
        return hr;
    const auto valueOf = [&run](const wchar_t* name) { return run.variables.get(name); };
    const ProgramStart copy = {
        .verb = L"runas", .file = program, .parameters = relaunchParameters(valueOf), .show = SW_SHOW};
    if (!run.hasUserCancelled()) {
        // The copy is to take it.
        run.mutex.release();
        run.hooks.startProgram(copy);
    }
    run.quit(0);
    return S_OK;
}

}  // namespace pdx
