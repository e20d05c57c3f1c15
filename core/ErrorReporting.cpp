#include "core/ErrorReporting.h"

#include "core/rules/PackageLog.h"
#include "platform/Log.h"
#include "platform/Text.h"

namespace pdx {

int ErrorReporting::report(const EngineError& error) {
    const Fact facts[] = {{"errorType", nullptr, error.type},
                          {"wzPackageId", nullptr, error.package},
                          {"dwCode", nullptr, error.code},
                          {"wzError", nullptr, error.text},
                          {"uiFlags", nullptr, BoxStyle{error.uiFlags}},
                          {"cData", nullptr, error.data.count},
                          {"rgwzData", nullptr, error.data},
                          {"nRecommendation", nullptr, error.recommendation}};
    RunContext::trace("BootstrapperApplication::OnError", facts);
    const HRESULT hr = formError(error.type, error.code);
    run.context.updateStatus(hr);
    run.telemetry.sendError(hr, toUtf8(scrubProfilePath(textOrEmpty(error.text))));
    run.context.markErrorShown();
    return run.ui->showError({static_cast<DWORD>(error.type), error.code, error.uiFlags, error.recommendation});
}

HRESULT ErrorReporting::fail(ProgramError code) {
    report({PALISADE_ERROR_TYPE, nullptr, code, nullptr, 0, {}, resultOk});
    return formError(PALISADE_ERROR_TYPE, code);
}

void ErrorReporting::showFailure() {
    if (run.context.markErrorShown()) return;
    const auto code = static_cast<DWORD>(run.context.status());
    run.ui->showError({BOOTSTRAPPER_ERROR_TYPE_WINDOWS_INSTALLER, code, 0, resultOk});
}

void ErrorReporting::addLog(const std::wstring& path) {
    if (const auto stem = reportFileStem(path)) stems.push_back(*stem);
}

std::string ErrorReporting::submit() {
    // The dialog sets the variable from the check box of the error prompt.
    if (run.variables.get(variable::submitReport) != L"1") return {};
    run.ui->showReportUnderWay();
    // The user may start another run during the upload.
    run.mutex.release();
    for (const std::wstring& stem : stems) addFilesOfStem(files, stem);
    return run.hooks.sendReport(files);
}

}  // namespace pdx
