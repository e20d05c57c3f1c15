// The events of a run, its downloads and its errors: back end, name and attributes of each. The Tally events here are
// "download", "install" and "uninstall"; their attribute "status" names the step. The Brisk events have dotted names
// with short keys. Three more events are elsewhere: a crash (reporting/ExceptionHandler.cpp), a repair's begin
// (state/RepairCleanup.cpp), and the migration's messages (state/Bastion.cpp).
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "core/engine/rules/Operations.h"
#include "telemetry/rules/InstallRecord.h"
#include "telemetry/rules/TelemetryEvent.h"

namespace pdx {

/// The run that an event belongs to.
struct RunKind {
    bool uninstall = false;
    bool repair = false;
};

/// The name with its "{group}", if it has one, replaced by the run's: "uinst", "repr" or "inst".
std::string eventName(std::string_view name, const RunKind& run);

/// One occasion, reported to both services. The Tally event is sent first.
struct EventPair {
    TelemetryEvent tally;
    TelemetryEvent brisk;
};

struct SessionFacts {
    std::string boot;  ///< when the machine started, in the Brisk service's format
    std::string commandLine;
    bool autopatch = false;  ///< started as another installer's update
    bool elevated = false;
    int32_t action = 0;
    std::string repair;  ///< this and the next three are values of bundle variables
    std::string harrier;
    std::string ignoreInstalled;
    std::string launch;
    bool withAuthcode = false;
};
TelemetryEvent sessionStarted(const SessionFacts& facts);
TelemetryEvent sessionStopped();

/// One attempt of a download.
struct DownloadFacts {
    std::string id;
    std::string start;
    std::string link;
    uint64_t progress = 0;  ///< bytes
    uint64_t total = 0;
};
EventPair downloadStarted(const RunKind& run, const DownloadFacts& download);
EventPair downloadFinished(const RunKind& run, const DownloadFacts& download, const std::string& now);
EventPair downloadCancelled(const DownloadFacts& download, const char* word);
/// The Tally event only; errorEvent makes the Brisk event.
TelemetryEvent downloadFailed(const DownloadFacts& download, const std::string& code);
/// The word for a cancelled download, by whether the machine is connected. The two words look exchanged on purpose: the
/// service has always received them so.
constexpr const char* downloadCancelWord(bool connected) { return connected ? "user_offline" : "user_action"; }

/// The two halves of a pair, which are sent separately.
TelemetryEvent installStarted(const RunKind& run);
TelemetryEvent installRecorded(const InstallTelemetry& record);
EventPair uninstallStarted(const std::string& now, const char* pathKind);

EventPair runFinished(const RunKind& run, const std::string& start, const std::string& now);
/// A report's id is an attribute unless it is empty.
EventPair runCancelled(const RunKind& run, const char* word, const std::string& reportId);
/// Why a run counts as cancelled.
constexpr const char* runCancelWord(bool logoutExit) { return logoutExit ? "logout_exit" : "user_action"; }
// The next two make the Tally event only; errorEvent makes the Brisk event.
TelemetryEvent runFailed(const RunKind& run, const std::string& code);
/// An error that may not end the run. The event lacks the attribute for the run's type, unlike the others of that name.
TelemetryEvent errorOccurred(const RunKind& run, const std::string& code);

/// The runtimes whose versions every error event contains: attribute and bundle variable.
struct RuntimeVersion {
    const char* attribute;
    const wchar_t* variable;
};
inline constexpr std::array<RuntimeVersion, 5> runtimeVersions = {{
    {"vc10x86ver", L"VCRedist10X86InstalledVer"},
    {"vc11x86ver", L"VCRedist11X86InstalledVer"},
    {"vc12x86ver", L"VCRedist12X86InstalledVer"},
    {"vc14x86ver", L"VCRedist14X86InstalledVer"},
    {"vc14x64ver", L"VCRedist14X64InstalledVer"},
}};

struct ErrorFacts {
    std::string code;  ///< eight lower-case hexadecimal digits
    std::string message;
    Operation operation = Operation::none;  ///< in which the error occurred
    std::array<std::string, runtimeVersions.size()> runtimes;
    nlohmann::json context;  ///< the context of that callback; ignored unless it is an object
};
/// A Brisk event of an error. If extra is an object, its attributes replace all others but the context.
TelemetryEvent errorEvent(std::string name, const ErrorFacts& error, const nlohmann::json& extra);

}  // namespace pdx
