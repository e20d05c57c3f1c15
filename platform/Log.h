// One process-wide logger writes all diagnostics to the engine's log; the library has no log file.
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

/// Receives the log lines.
class Logger {
  public:
    virtual ~Logger() = default;
    /// Writes a message of a function, with its source line. Both texts are UTF-8.
    virtual void write(int32_t level, const char* function, int32_t line, const char* message) = 0;
};

/// Writes each line to the engine's log, without the user's profile path and name. Takes no lock of its own after
/// the first line, and throws only std::bad_alloc.
class BootstrapperLogger : public Logger {
  public:
    /// Holds a reference to the engine, so that the engine outlives a line that is being written. With a null engine
    /// lines are dropped.
    explicit BootstrapperLogger(IBootstrapperEngine* bootstrapperEngine)
        : engine(ComPtr<IBootstrapperEngine>::share(bootstrapperEngine)) {}
    void write(int32_t level, const char* function, int32_t line, const char* message) override;

  private:
    ComPtr<IBootstrapperEngine> engine;
    /// All levels are written, because a failed run is analysed by its log; the configuration's logging.logLevel is
    /// ignored.
    int32_t maxLevel = logTrace;
};

/// The logger, null until the application object has made it.
extern ServiceHolder<Logger> g_logger;

/// The logger of an engine. Lines that workers log during a reload, between two engines, are lost.
struct LoggerLife : ServiceLife<Logger> {
    explicit LoggerLife(IBootstrapperEngine* engine)
        : ServiceLife(g_logger, std::make_shared<BootstrapperLogger>(engine)) {}
};

/// The texts that scrubbing searches for and their replacements.
const ScrubTexts& userScrubTexts();

/// The text without the user's profile path and name: "C:\Users\ann\x" becomes "C:\Users\####\x".
std::wstring scrubProfilePath(std::wstring text);

namespace log_detail {

/// Converts an argument for the formatter; called only if there is a logger, because wide text is copied.
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

/// Formats a message (printf format in UTF-8; "%s" for narrow, "%ls" for wide text) and passes it to the logger. A
/// message is cut after 4095 bytes. Without a logger the arguments are not converted.
template <typename... Types>
void logMessage(int32_t level, const char* function, int32_t line, const char* format, const Types&... arguments) {
    const auto logger = g_logger.get();
    if (!logger) return;
    log_detail::formatAndWrite(*logger, level, function, line, format, {log_detail::captured(arguments)...});
}

}  // namespace pdx

/// Logs with the source line of the call. The function's name is a literal, with its class where it has one.
#define PDX_LOG(level, function, ...) ::pdx::logMessage(level, function, __LINE__, __VA_ARGS__)
