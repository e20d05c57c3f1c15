// What the callbacks tell of the run: the facts behind its events, and the way to the two services.
#include <utility>

#include "core/BootstrapperApplication.h"
#include "core/engine/CallbackFacts.h"
#include "core/rules/ErrorGroups.h"
#include "platform/Errors.h"
#include "platform/HttpClient.h"
#include "platform/Log.h"
#include "platform/rules/CommandLine.h"
#include "state/OlderClient.h"
#include "telemetry/InstallTelemetry.h"
#include "telemetry/Locale.h"
#include "telemetry/rules/TimeFormat.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

constexpr uint64_t unitsAMillisecond = 10000;

void send(TelemetryEvent event) {
    sendTelemetry(event.sender, std::move(event.name), std::move(event.params), event.urgent);
}

void send(EventPair pair) {
    send(std::move(pair.tally));
    send(std::move(pair.brisk));
}

std::string now() { return TelemetryManager::timestamp(briskSender); }

/// When the machine was started.
std::string bootTime() { return briskTime(currentFileTime() - GetTickCount64() * unitsAMillisecond); }

}  // namespace

RunKind BootstrapperApplication::runKind() const {
    return {.uninstall = m_action == BOOTSTRAPPER_ACTION_UNINSTALL, .repair = isRepair()};
}

DownloadFacts BootstrapperApplication::downloadFacts() const {
    return {m_downloadId, m_downloadStart, m_downloadLink, m_downloadProgress, m_downloadTotal};
}

void BootstrapperApplication::startTelemetry(TelemetryFactory make) {
    m_startTime = now();
    m_telemetry.begin(make);
    const auto variable = [this](const wchar_t* name) { return toUtf8(GetEngineVariable(name, false)); };
    SessionFacts facts;
    facts.boot = bootTime();
    facts.commandLine = toUtf8(hideAuthcode(scrubProfilePath(GetCommandLineW())));
    facts.autopatch = m_command->relationType == BOOTSTRAPPER_RELATION_UPDATE;
    facts.elevated = m_hooks.isElevated();
    facts.action = m_action;
    facts.repair = variable(L"PDX_REPAIR");
    facts.harrier = variable(L"HARRIER_ENABLE");
    facts.ignoreInstalled = variable(L"IGNORE_ALREADY_INSTALLED");
    facts.launch = variable(L"PDX_LAUNCH_CLIENT");
    facts.withAuthcode = !variable(L"KESTREL_AUTHCODE").empty();
    send(sessionStarted(facts));
    if (facts.withAuthcode && isBastionInstalled()) enableTelemetry();
}

void BootstrapperApplication::tellDownloadStarted() { send(downloadStarted(runKind(), downloadFacts())); }

void BootstrapperApplication::tellDownloadFinished() { send(downloadFinished(runKind(), downloadFacts(), now())); }

void BootstrapperApplication::tellDownloadCancelled() {
    send(downloadCancelled(downloadFacts(), downloadCancelWord(isNetworkConnected())));
}

void BootstrapperApplication::tellDownloadFailed(HRESULT hr, const Json& extra) {
    const std::string code = contextStatus(hr);
    send(downloadFailed(downloadFacts(), code));
    const State last = state();
    logBriskError("inst.dnld.erro", code, describeError(hr), last.lastOperation, last.context, extra);
}

void BootstrapperApplication::tellExecutionStarted() {
    const RunKind run = runKind();
    const std::wstring folder = GetEngineVariable(L"InstallFolder", true);
    const std::wstring defaultFolder = GetEngineVariable(L"DefaultInstallFolder", true);
    if (run.uninstall) {
        send(uninstallStarted(now(), pathKindOf(folder, defaultFolder)));
        return;
    }
    send(installStarted(run));
    const InstallTelemetry record = installTelemetry({now(), run.repair, folder, defaultFolder});
    for (const InstallTelemetryField& field : installTelemetryFields)
        PDX_LOG(logInfo, "BootstrapperApplication::OnExecuteBegin", field.logFormat, record.*field.value);
    send(installRecorded(record));
}

void BootstrapperApplication::tellError(HRESULT hr, const std::string& message) {
    const RunKind run = runKind();
    const std::string code = contextStatus(hr);
    send(errorRaised(run, code));
    const State last = state();
    logBriskError("inst.{group}.erro", code, message, last.lastOperation, last.context);
}

void BootstrapperApplication::tellExecutionFailed(HRESULT hr) {
    const std::string code = contextStatus(hr);
    send(runFailed(runKind(), code));
    const State last = state();
    logBriskError("inst.{group}.erro", code, describeError(hr), last.lastOperation, last.context);
}

void BootstrapperApplication::tellRunFinished() { send(runFinished(runKind(), m_startTime, now())); }

void BootstrapperApplication::tellRunCancelled(const char* word, const std::string& reportId) {
    send(runCancelled(runKind(), word, reportId));
}

void BootstrapperApplication::tellRunFailed(const std::string& reportId) {
    const InstallStatus status = state().status;
    const std::string code = contextStatus(status.lastError);
    send(runFailed(runKind(), code));
    logBriskError("inst.{group}.fail", code, describeError(status.lastError), status.errorOperation,
                  status.errorContext, reportId.empty() ? Json() : Json({{"report_id", reportId}}));
}

void BootstrapperApplication::tellSessionStopped() { send(sessionStopped()); }

void BootstrapperApplication::logBriskError(std::string_view name, const std::string& code, const std::string& message,
                                            Operation operation, const Json& context, const Json& extra) {
    ErrorFacts error = {code, message, operation, {}, context};
    for (size_t i = 0; i < runtimeVersions.size(); ++i)
        error.runtimes[i] = toUtf8(GetEngineVariable(runtimeVersions[i].variable, false));
    PDX_LOG(logInfo, "BootstrapperApplication::logBriskError", "ecod[%s], estr[%s], einv[%s]", code, message,
            errorGroup(code).invalid ? "true" : "false");
    send(errorEvent(eventName(name, runKind()), error, extra));
}

// ---- The move from the older client

void BootstrapperApplication::sendMeridianMessages(std::span<const char* const> ids, const MessagePlace& place,
                                                   const char* status) const {
    const std::string cohort = toUtf8(GetEngineVariable(L"PDX_MERIDIAN_COHORT", false));
    for (const char* id : ids) sendMeridianMessageEvent(id, place.destination, place.page, status, cohort);
}

void BootstrapperApplication::sendMeridianStartClick(const char* id) const {
    sendMeridianMessages({&id, 1}, startPage, statusClick);
}

void BootstrapperApplication::sendMeridianStartImpressions() const {
    sendMeridianMessages(startOffers, startPage, statusImpression);
}

void BootstrapperApplication::sendBastionOverlayClick(const char* id) const {
    sendMeridianMessages({&id, 1}, bastionOverlay, statusClick);
}

void BootstrapperApplication::sendBastionOverlayImpressions() const {
    sendMeridianMessages(overlayOffers, bastionOverlay, statusImpression);
}

void BootstrapperApplication::sendMeridianCompleted() const {
    sendMeridianMessages({&completedUninstall, 1}, completion, statusImpression);
}

}  // namespace pdx
