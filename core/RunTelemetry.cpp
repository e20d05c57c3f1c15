#include "core/RunTelemetry.h"

#include <utility>

#include "core/rules/ErrorGroups.h"
#include "platform/Clock.h"
#include "platform/Errors.h"
#include "platform/HttpClient.h"
#include "platform/Log.h"
#include "platform/rules/CommandLine.h"
#include "state/Bastion.h"
#include "telemetry/InstallTelemetry.h"
#include "telemetry/rules/TimeFormat.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

void send(TelemetryEvent event) {
    sendTelemetry(event.sender, std::move(event.name), std::move(event.params), event.urgent);
}

void send(EventPair pair) {
    send(std::move(pair.tally));
    send(std::move(pair.brisk));
}

std::string now() { return TelemetryManager::timestamp(briskSender); }

std::string bootTime() { return briskTime(currentFileTime() - GetTickCount64() * fileTimePerMillisecond); }

}  // namespace

RunKind RunTelemetry::kind() const {
    return {.uninstall = action == BOOTSTRAPPER_ACTION_UNINSTALL, .repair = variables.isRepair()};
}

void RunTelemetry::start(TelemetryFactory make, bool autopatch, bool elevated) {
    startTime = now();
    life.begin(make);
    const auto text = [this](const wchar_t* name) { return toUtf8(variables.get(name)); };
    SessionFacts facts;
    facts.boot = bootTime();
    facts.commandLine = toUtf8(hideAuthcode(scrubProfilePath(GetCommandLineW())));
    facts.autopatch = autopatch;
    facts.elevated = elevated;
    facts.action = action;
    facts.repair = text(variable::repair);
    facts.harrier = text(variable::harrier);
    facts.ignoreInstalled = text(variable::ignoreInstalled);
    facts.launch = text(variable::launchClient);
    facts.withAuthcode = !text(variable::authCode).empty();
    send(sessionStarted(facts));
    // Such a start waits for no click on install, like a repair or a migration.
    if (facts.withAuthcode && isBastionInstalled()) enableTelemetry();
}

void RunTelemetry::sendSessionStopped() const { send(sessionStopped()); }

void RunTelemetry::sendDownloadStarted(const DownloadFacts& download) const { send(downloadStarted(kind(), download)); }

void RunTelemetry::sendDownloadFinished(const DownloadFacts& download) const {
    send(downloadFinished(kind(), download, now()));
}

void RunTelemetry::sendDownloadCancelled(const DownloadFacts& download) const {
    send(downloadCancelled(download, downloadCancelWord(isNetworkConnected())));
}

void RunTelemetry::sendDownloadFailed(const DownloadFacts& download, HRESULT hr, const Json& extra) const {
    send(downloadFailed(download, contextStatus(hr)));
    const RunContext::State last = context.state();
    logBriskError("inst.dnld.erro", hr, describeError(hr), last.lastOperation, last.context, extra);
}

void RunTelemetry::sendExecutionStarted() const {
    const RunKind run = kind();
    const std::wstring folder = variables.get(variable::installFolder, true);
    const std::wstring defaultFolder = variables.get(variable::defaultInstallFolder, true);
    if (run.uninstall) {
        send(uninstallStarted(now(), pathKindOf(folder, defaultFolder)));
        return;
    }
    // Sent separately: the record is slow and must not delay Tally.
    send(installStarted(run));
    const InstallTelemetry record = installTelemetry({now(), run.repair, folder, defaultFolder});
    for (const InstallTelemetryField& field : installTelemetryFields)
        PDX_LOG(logInfo, "BootstrapperApplication::OnExecuteBegin", field.logFormat, record.*field.value);
    send(installRecorded(record));
}

void RunTelemetry::sendError(HRESULT hr, const std::string& message) const {
    send(errorOccurred(kind(), contextStatus(hr)));
    const RunContext::State last = context.state();
    logBriskError("inst.{group}.erro", hr, message, last.lastOperation, last.context);
}

void RunTelemetry::sendExecutionFailed(HRESULT hr) const {
    send(runFailed(kind(), contextStatus(hr)));
    const RunContext::State last = context.state();
    logBriskError("inst.{group}.erro", hr, describeError(hr), last.lastOperation, last.context);
}

void RunTelemetry::sendRunFinished() const { send(runFinished(kind(), startTime, now())); }

void RunTelemetry::sendRunCancelled(const char* word, const std::string& reportId) const {
    send(runCancelled(kind(), word, reportId));
}

void RunTelemetry::sendRunFailed(const std::string& reportId) const {
    const InstallStatus status = context.state().status;
    send(runFailed(kind(), contextStatus(status.lastError)));
    logBriskError("inst.{group}.fail", status.lastError, describeError(status.lastError), status.errorOperation,
                  status.errorContext, reportId.empty() ? Json() : Json({{"report_id", reportId}}));
}

void RunTelemetry::logBriskError(std::string_view name, HRESULT hr, const std::string& message, Operation operation,
                                 const Json& errorContext, const Json& extra) const {
    const std::string code = contextStatus(hr);
    ErrorFacts error = {code, message, operation, {}, errorContext};
    for (size_t i = 0; i < runtimeVersions.size(); ++i)
        error.runtimes[i] = toUtf8(variables.get(runtimeVersions[i].variable));
    PDX_LOG(logInfo, "BootstrapperApplication::logBriskError", "ecod[%s], estr[%s], einv[%s]", code, message,
            errorGroup(code).invalid ? "true" : "false");
    send(errorEvent(eventName(name, kind()), error, extra));
}

void RunTelemetry::sendMeridianMessages(std::span<const char* const> ids, const MessagePlace& place,
                                        const char* status) const {
    const std::string cohort = toUtf8(variables.get(variable::meridianCohort));
    for (const char* id : ids) sendMeridianMessageEvent(id, place.destination, place.page, status, cohort);
}

void RunTelemetry::sendMeridianStartClick(const char* id) const {
    sendMeridianMessages({&id, 1}, startPage, statusClick);
}

void RunTelemetry::sendMeridianStartImpressions() const {
    sendMeridianMessages(startOffers, startPage, statusImpression);
}

void RunTelemetry::sendBastionOverlayClick(const char* id) const {
    sendMeridianMessages({&id, 1}, bastionOverlay, statusClick);
}

void RunTelemetry::sendBastionOverlayImpressions() const {
    sendMeridianMessages(overlayOffers, bastionOverlay, statusImpression);
}

void RunTelemetry::sendMeridianCompleted() const {
    sendMeridianMessages({&completedUninstall, 1}, completion, statusImpression);
}

}  // namespace pdx
