#include <array>

#include "bench/Benchmarks.h"
#include "harness/programs/engine/SmallEngine.h"
#include "platform/Log.h"
#include "platform/Paths.h"

namespace pdx {

namespace {

constexpr int loggingRounds = 9;
constexpr int linesARound = 20000;

/// The texts of lines as an installation logs them: a callback with its arguments, a variable that holds a path of the
/// user's, a status.
struct Lines {
    std::wstring package = L"PalisadeApp.msi";
    std::wstring path = queryProfilePath() + L"\\AppData\\Local\\Temp\\Palisade_20240229120000_000_PalisadeApp.msi.log";
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
    for (int i = 0; i < linesARound / 3; ++i) {
        PDX_LOG(logTrace, "BootstrapperApplication::OnExecutePackageComplete", callbackFormat, lines.package, status,
                "BOOTSTRAPPER_APPLY_RESTART_NONE", i);
        PDX_LOG(logInfo, "BootstrapperApplication::GetEngineVariable", variableFormat, lines.package, lines.path);
        PDX_LOG(logInfo, "BootstrapperApplication::UpdateInstallStatus", statusFormat, status, 0u, failure,
                failureCode);
    }
}

void formatLines(const Lines& lines) {
    std::array<char, 4096> buffer;
    for (int i = 0; i < linesARound / 3; ++i) {
        const FormatArgument callback[] = {std::string_view(lines.narrowPackage), std::string_view(status),
                                           std::string_view("BOOTSTRAPPER_APPLY_RESTART_NONE"), i};
        const FormatArgument variable[] = {std::string_view(lines.narrowPackage), std::string_view(lines.narrowPath)};
        const FormatArgument change[] = {std::string_view(status), 0u, std::string_view(failure), failureCode};
        formatPrintf(buffer, callbackFormat, callback);
        formatPrintf(buffer, variableFormat, variable);
        formatPrintf(buffer, statusFormat, change);
    }
}

void scrubLines(const std::array<std::wstring, 3>& messages) {
    for (int i = 0; i < linesARound / 3; ++i)
        for (const auto& message : messages) scrubProfilePath(message);
}

std::array<std::wstring, 3> finishedMessages(const Lines& lines) {
    return {L"wzPackageId=" + lines.package +
                L", hrStatus=The operation completed successfully., "
                L"restart=BOOTSTRAPPER_APPLY_RESTART_NONE, nRecommendation=7",
            L"variable=[" + lines.package + L"]; result=[" + lines.path + L"]",
            L"Updating install status from The operation completed successfully. (00000000) to Fatal error during "
            L"installation. (80070643)"};
}

}  // namespace

Measurements measureLogging() {
    const Lines lines;
    const auto messages = finishedMessages(lines);
    SmallEngine engine;
    engine.keepRecords(false);
    g_logger.set(std::make_shared<BootstrapperLogger>(&engine));
    const double log = medianSeconds(loggingRounds, [&] { logLines(lines); });
    g_logger.clear();
    const double format = medianSeconds(loggingRounds, [&] { formatLines(lines); });
    const double scrubbing = medianSeconds(loggingRounds, [&] { scrubLines(messages); });
    constexpr double toNanoseconds = 1e9 / (linesARound / 3 * 3);
    return {
        {"log_line", log * toNanoseconds, "ns", "a log line, to the engine's Log"},
        {"log_line_ratio", log / format, "x", "that to formatting alone"},
        {"scrub", scrubbing * toNanoseconds, "ns", "scrubProfilePath of its text"},
        {"scrub_ratio", scrubbing / format, "x", "that to formatting alone"},
        {"format", format * toNanoseconds, "ns", "formatting alone"},
    };
}

}  // namespace pdx
