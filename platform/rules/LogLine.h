// The format of a log line: the levels, their words, the engine's level for each, and the line's fields.
#pragma once

#include <string>
#include <string_view>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// The library's levels. A level above the logger's threshold is dropped.
enum LogLevel : int32_t {
    logError = 0,
    logWarning = 1,
    logInfo = 2,
    logDebug = 3,
    logTrace = 4,
};

/// The word for a level, always five characters, and the engine's level.
struct LogLevelFacts {
    std::wstring_view word;
    BOOTSTRAPPER_LOG_LEVEL engineLevel;
};

/// The facts of a level; a level outside 0 to 3 counts as the trace level.
LogLevelFacts logLevelFacts(int32_t level);

/// "PDXBA{marker} {word} ({function}:{line}) {message}"; the marker is "*" in an elevated process.
std::wstring formatLogLine(wchar_t marker, std::wstring_view word, std::wstring_view function, int32_t line,
                           std::wstring_view message);

}  // namespace pdx
