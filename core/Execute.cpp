// The callbacks of execution, and the channel by which custom actions of the client's package reach this process.
#include <mutex>

#include "core/BootstrapperApplication.h"
#include "core/rules/MsiChannel.h"
#include "core/rules/PackageLog.h"
#include "platform/Log.h"
#include "platform/rules/ClientPackage.h"
#include "platform/rules/Numbers.h"
#include "state/FileLocks.h"

namespace pdx {

int BootstrapperApplication::OnExecuteBegin(DWORD cExecutingPackages) {
    record(Operation::executeBegin, {{"cExecutingPackages", "npkg", cExecutingPackages}});
    tellExecutionStarted();
    return sendAppMessage(WM_BA_EXECUTE_BEGIN, cExecutingPackages);
}

int BootstrapperApplication::OnExecutePackageBegin(LPCWSTR wzPackageId, BOOL fExecute) {
    record(Operation::executePackageBegin,
           {{"wzPackageId", "pkid", wzPackageId}, {"fExecute", "exec", fExecute != FALSE}});
    beginPackage(wzPackageId, fExecute);
    const int answer =
        sendAppMessage(WM_BA_EXECUTE_PACKAGE_BEGIN, fExecute != FALSE, reinterpret_cast<LPARAM>(wzPackageId));

    const std::wstring packageId = textOrEmpty(wzPackageId);
    const std::wstring logPath = GetEngineVariable(packageLogVariable(packageId, fExecute != FALSE), false);
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
        m_reportFiles.insert(logPath);
    } else if (const auto stem = reportFileStem(logPath)) {
        m_reportFileStems.push_back(*stem);
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
    record(Operation::executePatchTarget,
           {{"wzPackageId", "pkid", wzPackageId}, {"wzTargetProductCode", "pcod", wzTargetProductCode}});
    return cancelCheck();
}

int BootstrapperApplication::OnExecuteProgress(LPCWSTR, DWORD dwProgressPercentage, DWORD dwOverallPercentage) {
    mergeContext({{"ppct", dwProgressPercentage}, {"opct", dwOverallPercentage}});
    return sendAppMessage(WM_BA_EXECUTE_PROGRESS, dwProgressPercentage, static_cast<LPARAM>(dwOverallPercentage));
}

int BootstrapperApplication::OnExecuteMsiMessage(LPCWSTR, int mt, UINT uiFlags, LPCWSTR wzMessage, DWORD cData,
                                                 LPCWSTR* rgwzData, int nRecommendation) {
    const std::wstring_view text = textOrEmpty(wzMessage);
    const MsiCommand command = parseMsiCommand(text);
    switch (command.kind) {
        case MsiCommandKind::setVariable:
            m_engine->SetVariableString(std::wstring(command.name).c_str(), command.value.data());
            break;
        case MsiCommandKind::updateContext:
            mergeContext(Json{{toUtf8(command.name), toUtf8(command.value)}});
            break;
        case MsiCommandKind::malformed:
            break;
        case MsiCommandKind::none:
            if (const char* word = msiMessageWord(static_cast<uint32_t>(mt)))
                keepMsiMessage(word, mt, uiFlags, text, cData, rgwzData, nRecommendation);
            break;
    }
    if (m_action == BOOTSTRAPPER_ACTION_INSTALL) {
        if (text == bastionUninstallBegin) sendAppMessage(WM_BA_UNINSTALLING_BASTION_TITLE);
        if (text == bastionUninstallSuccess) sendMeridianCompleted();
    }
    return !m_fRollingBack && isCanceled() ? static_cast<int>(IDCANCEL) : nRecommendation;
}

void BootstrapperApplication::keepMsiMessage(const char* word, int mt, UINT uiFlags, std::wstring_view message,
                                             DWORD cData, LPCWSTR* rgwzData, int nRecommendation) {
    // Runs for every line of a long install: what the kind's object holds already is written over in place.
    const std::lock_guard guard(m_stateLock);
    Json& entry = m_context[word];
    if (!entry.is_object() || entry.size() != 5)
        entry = {{"imsg", 0}, {"flag", 0u}, {"mesg", ""}, {"args", ""}, {"reco", 0}};
    entry["imsg"] = mt;
    entry["flag"] = uiFlags;
    entry["reco"] = nRecommendation;
    assignUtf8(entry["mesg"].get_ref<std::string&>(), message);
    std::string& arguments = entry["args"].get_ref<std::string&>();
    if (cData == 0)
        arguments.clear();
    else
        assignUtf8(arguments, joinTexts(cData, rgwzData));
}

int BootstrapperApplication::OnExecuteFilesInUse(LPCWSTR wzPackageId, DWORD cFiles, LPCWSTR* rgwzFiles) {
    const Fact facts[] = {{"wzPackageId", nullptr, wzPackageId},
                          {"cFiles", nullptr, cFiles},
                          {"rgwzFiles", "fuse", TextList{cFiles, rgwzFiles}}};
    trace("BootstrapperApplication::OnExecuteFilesInUse", facts);
    mergeContext(contextOf(facts));
    return cancelCheck();
}

int BootstrapperApplication::OnExecutePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus,
                                                      BOOTSTRAPPER_APPLY_RESTART restart, int nRecommendation) {
    setOperation(Operation::executePackageComplete);
    HRESULT status = hrStatus;
    if (m_executing) {
        status = packageStatus(wzPackageId, hrStatus);
        UpdateInstallStatus(status);
    }
    record(Operation::executePackageComplete, {{"wzPackageId", "pkid", wzPackageId},
                                               {"hrStatus", "stat", Status{status}},
                                               {"restart", "rstr", restart},
                                               {"nRecommendation", "reco", nRecommendation}});
    return packageAnswer(wzPackageId, hrStatus, nRecommendation);
}

HRESULT BootstrapperApplication::packageStatus(LPCWSTR wzPackageId, HRESULT hrStatus) const {
    if (!equalsIgnoreCase(textOrEmpty(wzPackageId), clientPackageId)) return hrStatus;
    const uint32_t code = parseDecimal(GetEngineVariable(L"PDX_MSI_STATUS", false));
    return code == 0 ? hrStatus : formError(PALISADE_ERROR_TYPE, code);
}

void BootstrapperApplication::OnExecuteComplete(HRESULT hrStatus) {
    record(Operation::executeComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
    if (FAILED(hrStatus) && codeOf(hrStatus) != userExitCode && !isCanceled()) tellExecutionFailed(hrStatus);
}

}  // namespace pdx
