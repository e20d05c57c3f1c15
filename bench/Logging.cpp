#include <array>

#include "bench/Benchmarks.h"
#include "harness/programs/engine/SmallEngine.h"
#include "platform/Log.h"
#include "platform/Paths.h"

namespace pdx {

namespace {

constexpr int loggingRounds = 9;
constexpr int triplesARound = 6666;

/// Texts like those of an installation's log: a callback with its arguments, a variable with a path in the user's
/// profile, a status.
struct Lines {
    std::wstring package = L"PalisadeApp.msi";
    std::wstring path = getProfilePath() + L"\\AppData\\Local\\Temp\\Palisade_20240229120000_000_PalisadeApp.msi.log";
    std::string narrowPackage = toUtf8(package);
    std::string narrowPath = toUtf8(path);
};

constexpr const char* callbackFormat = "wzPackageId=%ls, hrStatus=%s, restart=%s, nRecommendation=%d";
constexpr const char* variableFormat = "variable=[%ls]; result=[%ls]";
constexpr const char* statusFormat = "Updating install status from %s (%08x) to %s (%08x)";
constexpr const char* status = "The operation completed successfully.";
constexpr const char* failure = "Fatal error during installation.";

constexpr uint32_t failureCode = 0x80070643;

void logLines(const Lines& lines) {
    for (int i = 0; i < triplesARound; ++i) {
        PDX_LOG(logTrace, "BootstrapperApplication::OnExecutePackageComplete", callbackFormat, lines.package, status,
                "BOOTSTRAPPER_APPLY_RESTART_NONE", i);
        PDX_LOG(logInfo, "BootstrapperApplication::GetEngineVariable", variableFormat, lines.package, lines.path);
        PDX_LOG(logInfo, "BootstrapperApplication::UpdateInstallStatus", statusFormat, status, 0u, failure,
                failureCode);
    }
}

/// Formats the three lines of a round, and passes each text to a function.
template <typename Use>
void formatRound(const Lines& lines, int round, Use use) {
    std::array<char, 4096> buffer;
    const FormatArgument callback[] = {std::string_view(lines.narrowPackage), std::string_view(status),
                                       std::string_view("BOOTSTRAPPER_APPLY_RESTART_NONE"), round};
    const FormatArgument variable[] = {std::string_view(lines.narrowPackage), std::string_view(lines.narrowPath)};
    const FormatArgument change[] = {std::string_view(status), 0u, std::string_view(failure), failureCode};
    use(std::string_view(buffer.data(), formatPrintf(buffer, callbackFormat, callback)));
    use(std::string_view(buffer.data(), formatPrintf(buffer, variableFormat, variable)));
    use(std::string_view(buffer.data(), formatPrintf(buffer, statusFormat, change)));
}

void formatLines(const Lines& lines) {
    for (int i = 0; i < triplesARound; ++i) formatRound(lines, i, [](std::string_view) {});
}

void scrubLines(const std::vector<std::wstring>& messages) {
    for (int i = 0; i < triplesARound; ++i)
        for (const auto& message : messages) scrubProfilePath(message);
}

}  // namespace

Measurements measureLogging() {
    const Lines lines;
    std::vector<std::wstring> messages;
    formatRound(lines, 7, [&](std::string_view text) { messages.push_back(toWide(text)); });
    SmallEngine engine;
    engine.keepRecords(false);
    g_logger.set(std::make_shared<BootstrapperLogger>(&engine));
    const double log = medianSeconds(loggingRounds, [&] { logLines(lines); });
    g_logger.clear();
    const double format = medianSeconds(loggingRounds, [&] { formatLines(lines); });
    const double scrubbing = medianSeconds(loggingRounds, [&] { scrubLines(messages); });
    constexpr double toNanoseconds = 1e9 / (3 * triplesARound);
    return {
        {"log_line", log * toNanoseconds, "ns", "a log line, to the engine's Log"},
        {"log_line_ratio", log / format, "x", "that to formatting alone"},
        {"scrub", scrubbing * toNanoseconds, "ns", "scrubProfilePath of a log line's text"},
        {"scrub_ratio", scrubbing / format, "x", "that to formatting alone"},
        {"format", format * toNanoseconds, "ns", "formatting a log line alone"},
    };
}

}  // namespace pdx
