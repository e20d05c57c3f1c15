// The callbacks of execution, and the channel by which custom actions of the client's package reach this process.
#include "core/BootstrapperApplication.h"
#include "core/rules/MsiChannel.h"
#include "core/rules/PackageLog.h"
#include "platform/Log.h"
#include "platform/product/ClientPackage.h"
#include "platform/rules/Numbers.h"
#include "state/FileLocks.h"

namespace pdx {

int BootstrapperApplication::OnExecuteBegin(DWORD cExecutingPackages) {
    m_run.record(Operation::executeBegin, {{"cExecutingPackages", "npkg", cExecutingPackages}});
    m_telemetry.sendExecutionStarted();
    return sendAppMessage(WM_BA_EXECUTE_BEGIN, cExecutingPackages);
}

int BootstrapperApplication::OnExecutePackageBegin(LPCWSTR wzPackageId, BOOL fExecute) {
    m_run.record(Operation::executePackageBegin,
                 {{"wzPackageId", "pkid", wzPackageId}, {"fExecute", "exec", fExecute != FALSE}});
    beginPackage(wzPackageId, fExecute);
    const int answer =
        sendAppMessage(WM_BA_EXECUTE_PACKAGE_BEGIN, fExecute != FALSE, reinterpret_cast<LPARAM>(wzPackageId));

    const std::wstring packageId = textOrEmpty(wzPackageId);
    const std::wstring logPath = m_variables.get(packageLogVariable(packageId, fExecute != FALSE));
    if (logPath.empty()) {
        // No package is failed for a log that the engine does not want: with logging off there is no path. The client's
        // log is not locked then, and the run goes on.
        PDX_LOG(logError, "BootstrapperApplication::OnExecutePackageBegin", "Unable to determine log path for %ls",
                packageId);
    } else if (packageId == clientPackageId) {
        if (!openClientLog(logPath)) {
            raiseError(errorLogFileTaken);
            return answer;
        }
        m_reporting.addFile(logPath);
    } else {
        m_reporting.addLog(logPath);
    }
    m_executing = fExecute != FALSE;
    return answer;
}

bool BootstrapperApplication::openClientLog(const std::wstring& logPath) {
    std::wstring folder = getSessionTempPath();
    if (logPath.size() < folder.size() || !equalsIgnoreCase(logPath.substr(0, folder.size()), folder)) folder.clear();
    // Held from the first byte on, so that nobody puts a link or a file of his own in its place.
    return LockFile(m_lockedFiles, logPath, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    CREATE_NEW, GetFinalPath(folder)) != INVALID_HANDLE_VALUE;
}

int BootstrapperApplication::OnExecutePatchTarget(LPCWSTR wzPackageId, LPCWSTR wzTargetProductCode) {
    m_run.record(Operation::executePatchTarget,
                 {{"wzPackageId", "pkid", wzPackageId}, {"wzTargetProductCode", "pcod", wzTargetProductCode}});
    return cancelCheck();
}

int BootstrapperApplication::OnExecuteProgress(LPCWSTR, DWORD dwProgressPercentage, DWORD dwOverallPercentage) {
    m_run.merge({{"ppct", dwProgressPercentage}, {"opct", dwOverallPercentage}});
    return sendAppMessage(WM_BA_EXECUTE_PROGRESS, dwProgressPercentage, static_cast<LPARAM>(dwOverallPercentage));
}

int BootstrapperApplication::OnExecuteMsiMessage(LPCWSTR, int mt, UINT uiFlags, LPCWSTR wzMessage, DWORD cData,
                                                 LPCWSTR* rgwzData, int nRecommendation) {
    const std::wstring_view text = textOrEmpty(wzMessage);
    const MsiCommand command = parseMsiCommand(text);
    switch (command.kind) {
        case MsiCommandKind::setVariable:
            m_variables.set(std::wstring(command.name).c_str(), std::wstring(command.value));
            break;
        case MsiCommandKind::updateContext:
            m_run.merge({{toUtf8(command.name), toUtf8(command.value)}});
            break;
        case MsiCommandKind::malformed:
            break;
        case MsiCommandKind::none:
            if (const char* word = msiMessageWord(static_cast<uint32_t>(mt)))
                m_run.keepMsiMessage(word, mt, uiFlags, text, {cData, rgwzData}, nRecommendation);
            break;
    }
    if (m_action == BOOTSTRAPPER_ACTION_INSTALL) {
        if (text == bastionUninstallBegin) sendAppMessage(WM_BA_UNINSTALLING_BASTION_TITLE);
        if (text == bastionUninstallSuccess) m_telemetry.sendMeridianCompleted();
    }
    return !m_fRollingBack && isCanceled() ? static_cast<int>(IDCANCEL) : nRecommendation;
}

int BootstrapperApplication::OnExecuteFilesInUse(LPCWSTR wzPackageId, DWORD cFiles, LPCWSTR* rgwzFiles) {
    const Fact facts[] = {{"wzPackageId", nullptr, wzPackageId},
                          {"cFiles", nullptr, cFiles},
                          {"rgwzFiles", "fuse", TextList{cFiles, rgwzFiles}}};
    RunContext::trace("BootstrapperApplication::OnExecuteFilesInUse", facts);
    m_run.merge(contextOf(facts));
    return cancelCheck();
}

int BootstrapperApplication::OnExecutePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                      BOOTSTRAPPER_APPLY_RESTART restart, int nRecommendation) {
    m_run.setOperation(Operation::executePackageComplete);
    HRESULT status = hrStatus;
    if (m_executing) {
        status = packageStatus(wzPackageId, hrStatus);
        UpdateInstallStatus(status);
    }
    m_run.record(Operation::executePackageComplete, {{"wzPackageId", "pkid", wzPackageId},
                                                     {"hrStatus", "stat", Status{status}},
                                                     {"restart", "rstr", restart},
                                                     {"nRecommendation", "reco", nRecommendation}});
    return packageAnswer(wzPackageId, hrStatus, nRecommendation);
}

HRESULT BootstrapperApplication::packageStatus(LPCWSTR wzPackageId, HRESULT hrStatus) const {
    if (!equalsIgnoreCase(textOrEmpty(wzPackageId), clientPackageId)) return hrStatus;
    const uint32_t code = parseDecimal(m_variables.get(variable::msiStatus));
    return code == 0 ? hrStatus : formError(PALISADE_ERROR_TYPE, code);
}

void BootstrapperApplication::OnExecuteComplete(HRESULT hrStatus) {
    m_run.record(Operation::executeComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
    if (FAILED(hrStatus) && codeOf(hrStatus) != userExitCode && !isCanceled())
        m_telemetry.sendExecutionFailed(hrStatus);
}

}  // namespace pdx
