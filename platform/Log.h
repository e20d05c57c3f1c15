// All diagnostics go through one process-wide logger into the log of the engine; the library has no log file of its
// own.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "platform/ComPtr.h"
#include "platform/Engine.h"
#include "platform/rules/Format.h"
#include "platform/rules/LogLine.h"
#include "platform/rules/Scrub.h"
#include "platform/ServiceHolder.h"
#include "platform/Text.h"

namespace pdx {

/// The sink of log lines.
class Logger {
  public:
    virtual ~Logger() = default;
    /// Takes a finished message and the name and source line of the function that logs it, both texts UTF-8.
    virtual void write(int32_t level, const char* function, int32_t line, const char* message) = 0;
};

/// Writes each line to the engine's log, with the user's profile path and name taken out of the message. Never fails
/// towards its caller; takes no lock of its own.
class BootstrapperLogger : public Logger {
  public:
    /// Holds a reference on the engine, so that it outlives a line that is being written. A null one is allowed: lines
    /// are then made and thrown away.
    explicit BootstrapperLogger(IBootstrapperEngine* bootstrapperEngine)
        : engine(ComPtr<IBootstrapperEngine>::share(bootstrapperEngine)) {}
    void write(int32_t level, const char* function, int32_t line, const char* message) override;

  private:
    ComPtr<IBootstrapperEngine> engine;
    /// Every level in use passes: a failed run is read from its log, so nothing is left out and the configuration's
    /// logging.logLevel is not read.
    int32_t maxLevel = logTrace;
};

/// The logger, null until the application object has made it.
extern ServiceHolder<Logger> g_logger;

/// The logger of an engine. Over a reload workers log on between two engines; those lines are lost.
struct LoggerLife : ServiceLife<Logger> {
    explicit LoggerLife(IBootstrapperEngine* engine)
        : ServiceLife(g_logger, std::make_shared<BootstrapperLogger>(engine)) {}
};

/// What scrubbing searches for, and what replaces it: looked up once a process.
const ScrubTexts& userScrubTexts();

/// The text without the user's profile path and name: "C:\Users\ann\x" becomes "C:\Users\####\x".
std::wstring scrubProfilePath(std::wstring text);

namespace log_detail {

/// An argument as the formatter takes it; wide text is converted here, and only when there is a logger.
template <typename Type>
decltype(auto) captured(const Type& argument) {
    if constexpr (std::is_convertible_v<Type, const wchar_t*>) {
        const wchar_t* text = argument;
        return toUtf8(text ? text : L"(null)");
    } else if constexpr (std::is_convertible_v<Type, std::wstring_view>) {
        return toUtf8(argument);
    } else if constexpr (std::is_convertible_v<Type, const char*>) {
        const char* text = argument;
        return std::string_view(text ? text : "(null)");
    } else if constexpr (std::is_convertible_v<Type, std::string_view>) {
        return std::string_view(argument);
    } else if constexpr (std::is_enum_v<Type>) {
        return static_cast<std::underlying_type_t<Type>>(argument);
    } else {
        return Type(argument);
    }
}

void formatAndWrite(Logger& logger, int32_t level, const char* function, int32_t line, const char* format,
                    std::initializer_list<FormatArgument> arguments);

}  // namespace log_detail

/// Formats a message (printf format in UTF-8; "%s" for narrow, "%ls" for wide text) and gives it to the logger. A
/// message of more than 4095 bytes is cut there. Without a logger the arguments are not touched.
template <typename... Types>
void logMessage(int32_t level, const char* function, int32_t line, const char* format, const Types&... arguments) {
    const auto logger = g_logger.get();
    if (!logger) return;
    log_detail::formatAndWrite(*logger, level, function, line, format, {log_detail::captured(arguments)...});
}

}  // namespace pdx

/// Logs with the source line of the call. The function's name is a literal, with its class where it has one.
#define PDX_LOG(level, function, ...) ::pdx::logMessage(level, function, __LINE__, __VA_ARGS__)
