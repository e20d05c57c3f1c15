#include "platform/rules/LogLine.h"

namespace pdx {
namespace {

constexpr LogLevelFacts facts[] = {
    {L"ERROR", BOOTSTRAPPER_LOG_LEVEL_ERROR},    {L"WARN ", BOOTSTRAPPER_LOG_LEVEL_STANDARD},
    {L"INFO ", BOOTSTRAPPER_LOG_LEVEL_STANDARD}, {L"DEBUG", BOOTSTRAPPER_LOG_LEVEL_DEBUG},
    {L"TRACE", BOOTSTRAPPER_LOG_LEVEL_VERBOSE},
};

}  // namespace

LogLevelFacts logLevelFacts(int32_t level) { return level >= 0 && level < logTrace ? facts[level] : facts[logTrace]; }

std::wstring formatLogLine(wchar_t marker, std::wstring_view word, std::wstring_view function, int32_t line,
                           std::wstring_view message) {
    std::wstring text = L"PDXBA";
    text.append(1, marker).append(1, L' ').append(word).append(L" (").append(function).append(1, L':');
    return text.append(std::to_wstring(line)).append(L") ").append(message);
}

}  // namespace pdx
