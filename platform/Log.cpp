#include "platform/Log.h"

#include <atomic>

#include "platform/Paths.h"
#include "platform/Processes.h"

namespace pdx {

constinit ServiceHolder<Logger> g_logger;

namespace {

/// The user's texts, looked up once for the process: the look-ups are slow, and the results do not change. Empty if the
/// system does not name them.
struct UserTexts {
    std::wstring userName = getUserName();
    std::wstring profileBack;
    std::wstring profileShort;
    ScrubTexts texts;
};

const UserTexts& userTexts() {
    static const UserTexts user = [] {
        UserTexts made;
        made.profileBack = getProfilePath();
        if (!made.profileBack.empty()) {
            made.profileBack += L'\\';
            made.profileShort = getShortPathName(made.profileBack);
        }
        made.texts = makeScrubTexts(made.profileBack, made.profileShort, made.userName, equalsIgnoreCase);
        return made;
    }();
    return user;
}

/// Logs once what could not be looked up. After the look-up, because a line logged during it would wait for it.
void reportMissingTexts(const UserTexts& user) {
    static std::atomic<bool> reported = false;
    if (reported.exchange(true)) return;
    if (user.userName.empty()) PDX_LOG(logInfo, "getUserName", "Unable to retrieve username!");
    if (user.profileBack.empty())
        PDX_LOG(logInfo, "getProfilePath", "There was a problem getting the current user's profile path");
    else if (user.profileShort.empty())
        PDX_LOG(logInfo, "getShortPathName", "Failed to get short path name for %ls", user.profileBack);
}

wchar_t elevationMarker() {
    static const wchar_t marker = isElevated() ? L'*' : L' ';
    return marker;
}

}  // namespace

const ScrubTexts& userScrubTexts() {
    const UserTexts& user = userTexts();
    reportMissingTexts(user);
    return user.texts;
}

std::wstring scrubProfilePath(std::wstring text) { return scrub(userScrubTexts(), std::move(text)); }

void BootstrapperLogger::write(int32_t level, const char* function, int32_t line, const char* message) {
    const wchar_t marker = elevationMarker();  // before the level decides: the first line of any level fixes it
    if (level > maxLevel) return;
    const LogLevelFacts facts = logLevelFacts(level);
    const std::wstring text =
        formatLogLine(marker, facts.word, toWide(function), line, scrubProfilePath(toWide(message)));
    if (engine) engine->Log(facts.engineLevel, text.c_str());
}

void log_detail::formatAndWrite(Logger& logger, int32_t level, const char* function, int32_t line, const char* format,
                                std::initializer_list<FormatArgument> arguments) {
    char buffer[4096];
    formatPrintf(buffer, format, {arguments.begin(), arguments.size()});
    logger.write(level, function, line, buffer);
}

}  // namespace pdx
