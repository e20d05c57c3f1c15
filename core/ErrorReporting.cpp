#include "core/ErrorReporting.h"

#include "core/rules/PackageLog.h"

namespace pdx {

void ErrorReporting::addLog(const std::wstring& path) {
    if (const auto stem = reportFileStem(path)) stems.push_back(*stem);
}

std::string ErrorReporting::submit(const std::function<void()>& beforeUpload) {
    // The dialog writes the variable from the error prompt's box.
    if (variables.get(variable::submitReport) != L"1") return {};
    beforeUpload();
    for (const std::wstring& stem : stems) addFilesOfStem(files, stem);
    return hooks.sendReport(files);
}

}  // namespace pdx
