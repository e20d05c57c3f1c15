#include "core/rules/RunEvents.h"

#include <fmt/format.h>

#include <optional>
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

/// Reads one argument of a command line as the system splits it: a quote opens and closes anywhere in it, an odd number
/// of backslashes ahead of a quote makes it a character, and so does the third quote that counts together.
class ArgumentReader {
  public:
    /// False for the blank behind the argument.
    bool take(wchar_t c) {
        if (c == L'"') {
            const bool escaped = backslashes % 2 == 1;
            backslashes = 0;
            if (!escaped && ++quotes < 3) return true;
            if (!escaped) quotes = 0;
        } else {
            if (quotes != 1 && (c == L' ' || c == L'\t')) return false;
            if (quotes == 2) quotes = 0;
            backslashes = c == L'\\' ? backslashes + 1 : 0;
        }
        read += c;
        return true;
    }

    /// What the program gets, but for the backslashes ahead of a quote, which all stay.
    [[nodiscard]] std::wstring_view text() const { return read; }
    [[nodiscard]] bool quoted() const { return quotes == 1; }
    /// What was taken last is a closing quote.
    [[nodiscard]] bool closed() const { return quotes == 2; }

  private:
    std::wstring read;
    size_t backslashes = 0;
    int quotes = 0;
};

/// The program ahead of the arguments, in which only the next quote ends what a quote has begun.
size_t programLength(std::wstring_view commandLine) {
    const bool quoted = commandLine.starts_with(L'"');
    const size_t last = quoted ? commandLine.find(L'"', 1) : commandLine.find_first_of(L" \t");
    if (last == std::wstring_view::npos) return commandLine.size();
    return quoted ? last + 1 : last;
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
    // Of an empty payload this is no number, and is told as it stands.
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

TelemetryEvent installStarted(const RunKind& run) { return tallyRun({}, "start", installKindOf(run.repair)); }

TelemetryEvent installRecorded(const InstallTelemetry& record) {
    Json attributes = Json::object();
    for (const InstallTelemetryField& field : installTelemetryFields) attributes[field.attribute] = record.*field.value;
    // The group stays "inst" in a repair too.
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

EventPair runCancelled(const RunKind& run, const char* word) {
    return {tallyRun(run, "cancel", word), brisk(eventName("inst.{group}.canc", run), {{"cnst", word}})};
}

TelemetryEvent runFailed(const RunKind& run, const std::string& code) { return tallyRun(run, "error", code); }

TelemetryEvent runMetError(const RunKind& run, const std::string& code) {
    return tally(tallyNameOf(run), {{"status", "error"}, {"status_code", code}});
}

TelemetryEvent errorEvent(std::string name, const ErrorFacts& error, const Json& extra) {
    const ErrorGroup group = errorGroup(error.code);
    Json attributes = {{"ecod", error.code},
                       {"emsg", group.group},
                       {"estr", error.message},
                       {"einv", group.invalid},
                       {"eopr", error.operation}};
    for (size_t i = 0; i < runtimeVersions.size(); ++i) attributes[runtimeVersions[i].attribute] = error.runtimes[i];
    if (extra.is_object()) attributes.update(extra);
    if (error.context.is_object()) attributes["ectx"] = error.context;
    return brisk(std::move(name), std::move(attributes));
}

std::wstring hideAuthcode(std::wstring_view commandLine) {
    constexpr std::wstring_view name = L"KESTREL_AUTHCODE=";
    constexpr std::wstring_view hidden = L"####";
    size_t begin = programLength(commandLine);
    std::wstring told(commandLine.substr(0, begin));
    while (begin < commandLine.size()) {
        ArgumentReader argument;
        size_t end = begin;
        std::optional<size_t> value;
        bool quotedWhole = false;
        for (; end < commandLine.size() && argument.take(commandLine[end]); ++end) {
            if (value || !argument.text().ends_with(name)) continue;
            value = end + 1;
            quotedWhole = argument.quoted();
        }
        // The quotes around the whole argument stay.
        const size_t valueEnd = quotedWhole && argument.closed() ? end - 1 : end;
        if (value && *value < valueEnd) {
            told += commandLine.substr(begin, *value - begin);
            told += hidden;
            begin = valueEnd;
        }
        // With the blank that ended the argument.
        told += commandLine.substr(begin, end + 1 - begin);
        begin = end + 1;
    }
    return told;
}

}  // namespace pdx
