// The callbacks of execution, and the messages that custom actions of the client's package send to this process.
#include "core/BootstrapperApplication.h"
#include "core/rules/MsiChannel.h"
#include "core/rules/PackageLog.h"
#include "platform/IoBound.h"
#include "platform/Log.h"
#include "platform/product/ClientPackage.h"
#include "platform/rules/Numbers.h"
#include "state/FileLocks.h"

namespace pdx {
namespace {

bool openClientLog(Run& run, const std::wstring& logPath) {
    const IoBound bound;
    std::wstring folder = getSessionTempPath();
    // Elsewhere no folder is trusted: with an empty prefix the whole path is compared.
    if (logPath.size() < folder.size() || !equalsIgnoreCase(logPath.substr(0, folder.size()), folder)) folder.clear();
    // Locked before Windows Installer opens it, so that no other program replaces it with a link or a file.
    return LockFile(run.lockedFiles, logPath, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    CREATE_NEW, GetFinalPath(folder)) != INVALID_HANDLE_VALUE;
}

/// The client's package reports its exact code in a variable.
HRESULT packageStatus(const RunVariables& variables, LPCWSTR wzPackageId, HRESULT hrStatus) {
    if (!equalsIgnoreCase(textOrEmpty(wzPackageId), clientPackageId)) return hrStatus;
    const uint32_t code = parseDecimal(variables.get(variable::msiStatus));
    return code == 0 ? hrStatus : formError(PALISADE_ERROR_TYPE, code);
}

}  // namespace

int BootstrapperApplication::OnExecuteBegin(DWORD cExecutingPackages) {
    m_context.record(Operation::executeBegin, {{"cExecutingPackages", "npkg", cExecutingPackages}});
    m_run.telemetry.sendExecutionStarted();
    return m_run.ui->executeBegin(cExecutingPackages);
}

int BootstrapperApplication::OnExecutePackageBegin(LPCWSTR wzPackageId, BOOL fExecute) {
    const bool forward = fExecute != FALSE;
    m_context.record(Operation::executePackageBegin,
                     {{"wzPackageId", "pkid", wzPackageId}, {"fExecute", "exec", forward}});
    beginPackage(wzPackageId, fExecute);
    const int answer = m_run.ui->executePackageBegin(forward, wzPackageId);

    const std::wstring packageId = textOrEmpty(wzPackageId);
    const std::wstring logPath = m_run.variables.get(packageLogVariable(packageId, forward));
    if (logPath.empty()) {
        // No failure: with logging off the engine names no path. The client's log is then not locked.
        PDX_LOG(logError, "BootstrapperApplication::OnExecutePackageBegin", "Unable to determine log path for %ls",
                packageId);
    } else if (packageId == clientPackageId) {
        if (!openClientLog(m_run, logPath)) {
            m_errors.fail(errorLogFileTaken);
            return answer;
        }
        m_errors.addFile(logPath);
    } else {
        m_errors.addLog(logPath);
    }
    m_executing = forward;
    return answer;
}

int BootstrapperApplication::OnExecuteProgress(LPCWSTR, DWORD dwProgressPercentage, DWORD dwOverallPercentage) {
    m_context.merge({{"ppct", dwProgressPercentage}, {"opct", dwOverallPercentage}});
    return m_run.ui->executeProgress(dwProgressPercentage, dwOverallPercentage);
}

int BootstrapperApplication::OnExecuteMsiMessage(LPCWSTR, int mt, UINT uiFlags, LPCWSTR wzMessage, DWORD cData,
                                                 LPCWSTR* rgwzData, int nRecommendation) {
    const std::wstring_view text = textOrEmpty(wzMessage);
    const MsiCommand command = parseMsiCommand(text);
    switch (command.kind) {
        case MsiCommandKind::setVariable:
            m_run.variables.set(std::wstring(command.name).c_str(), std::wstring(command.value));
            break;
        case MsiCommandKind::updateContext:
            m_context.merge({{toUtf8(command.name), toUtf8(command.value)}});
            break;
        case MsiCommandKind::malformed:
            break;
        case MsiCommandKind::none:
            if (const char* word = msiMessageWord(static_cast<uint32_t>(mt)))
                m_context.keepMsiMessage(word, mt, uiFlags, text, {cData, rgwzData}, nRecommendation);
            break;
    }
    if (m_run.action == BOOTSTRAPPER_ACTION_INSTALL) {
        if (text == bastionUninstallBegin) m_run.ui->showBastionTitle();
        if (text == bastionUninstallSuccess) m_run.telemetry.sendMeridianCompleted();
    }
    return cancelCheck(nRecommendation);
}

int BootstrapperApplication::OnExecutePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                      BOOTSTRAPPER_APPLY_RESTART restart, int nRecommendation) {
    // Before the record, so that an error keeps the context from before this callback's arguments.
    m_context.setOperation(Operation::executePackageComplete);
    HRESULT status = hrStatus;
    if (m_executing) {
        status = packageStatus(m_run.variables, wzPackageId, hrStatus);
        UpdateInstallStatus(status);
    }
    m_context.record(Operation::executePackageComplete, {{"wzPackageId", "pkid", wzPackageId},
                                                         {"hrStatus", "stat", Status{status}},
                                                         {"restart", "rstr", restart},
                                                         {"nRecommendation", "reco", nRecommendation}});
    // The engine's own status decides the answer.
    return packageAnswer(wzPackageId, hrStatus, nRecommendation);
}

void BootstrapperApplication::OnExecuteComplete(HRESULT hrStatus) {
    m_context.record(Operation::executeComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
    if (FAILED(hrStatus) && codeOf(hrStatus) != userExitCode && !m_run.isCancelled())
        m_run.telemetry.sendExecutionFailed(hrStatus);
}

}  // namespace pdx
