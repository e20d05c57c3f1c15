#include "core/rules/RunEvents.h"

#include <fmt/format.h>

#include <utility>

#include "core/rules/ErrorGroups.h"

namespace pdx {
namespace {

using Json = nlohmann::json;

constexpr const char* product = "kestrel_client";
constexpr const char* platform = "pc";
constexpr std::string_view groupMark = "{group}";

const char* groupOf(const RunKind& run) {
    if (run.uninstall) return "uinst";
    return run.repair ? "repr" : "inst";
}

const char* tallyNameOf(const RunKind& run) { return run.uninstall ? "uninstall" : "install"; }
const char* typeKeyOf(const RunKind& run) { return run.uninstall ? "uninstallation_type" : "installation_type"; }

TelemetryEvent tally(const char* name, Json attributes) {
    return {tallySender, name, std::move(attributes), false, false};
}
TelemetryEvent brisk(std::string name, Json attributes) {
    return {briskSender, std::move(name), std::move(attributes), false, false};
}

TelemetryEvent tallyDownload(const DownloadFacts& download, const char* status, const std::string& statusCode) {
    return tally(
        "download",
        {{"status", status}, {"status_code", statusCode}, {"item_platform", platform}, {"download_id", download.id}});
}

TelemetryEvent tallyRun(const RunKind& run, const char* status, const std::string& statusCode) {
    return tally(tallyNameOf(run), {{typeKeyOf(run), product}, {"status", status}, {"status_code", statusCode}});
}

}  // namespace

std::string eventName(std::string_view name, const RunKind& run) {
    std::string filled(name);
    if (const size_t mark = filled.find(groupMark); mark != std::string::npos)
        filled.replace(mark, groupMark.size(), groupOf(run));
    return filled;
}

TelemetryEvent sessionStarted(const SessionFacts& facts) {
    return brisk("inst.sess.strt", {{"boot", facts.boot},
                                    {"cmd", facts.commandLine},
                                    {"autopatch", facts.autopatch},
                                    {"elevated", facts.elevated},
                                    {"action", facts.action},
                                    {"repair", facts.repair},
                                    {"harrier", facts.harrier},
                                    {"ignore_installed", facts.ignoreInstalled},
                                    {"launch", facts.launch},
                                    {"with_authcode", facts.withAuthcode}});
}

TelemetryEvent sessionStopped() { return brisk("inst.sess.stop", Json::object()); }

EventPair downloadStarted(const RunKind& run, const DownloadFacts& download) {
    EventPair pair = {
        tallyDownload(download, "start", installKindOf(run.repair)),
        brisk("inst.dnld.strt",
              {{"strt", download.start}, {"stst", installKindOf(run.repair)}, {"link", download.link}, {"byte", 0}})};
    pair.tally.params["percent"] = 0;
    return pair;
}

EventPair downloadFinished(const RunKind& run, const DownloadFacts& download, const std::string& now) {
    // Not a number (0/0) for an empty payload; sent unchanged.
    const double percent = 100.0 * static_cast<double>(download.progress) / static_cast<double>(download.total);
    EventPair pair = {tallyDownload(download, "finish", "success"),
                      brisk("inst.dnld.succ", {{"strt", download.start},
                                               {"stst", installKindOf(run.repair)},
                                               {"endt", now},
                                               {"enst", "success"},
                                               {"link", download.link},
                                               {"pct", fmt::format("{:0.4f}", percent)},
                                               {"byte", download.total}})};
    pair.tally.params["percent"] = percent;
    return pair;
}

EventPair downloadCancelled(const DownloadFacts& download, const char* word) {
    return {tallyDownload(download, "cancel", word), brisk("inst.dnld.canc", {{"cnst", word}})};
}

TelemetryEvent downloadFailed(const DownloadFacts& download, const std::string& code) {
    return tallyDownload(download, "error", code);
}

// Not the run's own kind: an uninstall sends uninstallStarted.
TelemetryEvent installStarted(const RunKind& run) { return tallyRun({}, "start", installKindOf(run.repair)); }

TelemetryEvent installRecorded(const InstallTelemetry& record) {
    Json attributes = Json::object();
    for (const InstallTelemetryField& field : installTelemetryFields) attributes[field.attribute] = record.*field.value;
    // The group is "inst" in a repair too.
    return brisk("inst.inst.strt", std::move(attributes));
}

EventPair uninstallStarted(const std::string& now, const char* pathKind) {
    return {tally("uninstall", {{"status", "start"}, {typeKeyOf({.uninstall = true}), product}}),
            brisk("inst.uinst.strt", {{"uitm", now}, {"path", pathKind}})};
}

EventPair runFinished(const RunKind& run, const std::string& start, const std::string& now) {
    return {
        tallyRun(run, "finish", "success"),
        brisk(eventName("inst.{group}.succ", run),
              {{"strt", start}, {"stst", installKindOf(run.repair)}, {"endt", now}, {"enst", "success"}}),
    };
}

EventPair runCancelled(const RunKind& run, const char* word, const std::string& reportId) {
    Json attributes = {{"cnst", word}};
    if (!reportId.empty()) attributes["report_id"] = reportId;
    return {tallyRun(run, "cancel", word), brisk(eventName("inst.{group}.canc", run), std::move(attributes))};
}

TelemetryEvent runFailed(const RunKind& run, const std::string& code) { return tallyRun(run, "error", code); }

TelemetryEvent errorOccurred(const RunKind& run, const std::string& code) {
    return tally(tallyNameOf(run), {{"status", "error"}, {"status_code", code}});
}

TelemetryEvent errorEvent(std::string name, const ErrorFacts& error, const Json& extra) {
    const ErrorGroup group = errorGroup(error.code);
    Json attributes = {{"ecod", error.code},
                       {"emsg", group.group},
                       {"estr", error.message},
                       {"einv", group.invalid},
                       {"eopr", static_cast<int32_t>(error.operation)}};
    for (size_t i = 0; i < runtimeVersions.size(); ++i) attributes[runtimeVersions[i].attribute] = error.runtimes[i];
    if (extra.is_object()) attributes.update(extra);
    if (error.context.is_object()) attributes["ectx"] = error.context;
    return brisk(std::move(name), std::move(attributes));
}

}  // namespace pdx
