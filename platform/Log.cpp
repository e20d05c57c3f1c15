#include "platform/Log.h"

#include <atomic>

#include "platform/Paths.h"
#include "platform/Processes.h"

namespace pdx {

constinit ServiceHolder<Logger> g_logger;

namespace {

/// The user's texts, looked up once for the process: the look-ups are slow, and the results do not change.
struct UserTexts {
    ScrubTexts texts;
    bool profileMissing = false;
    bool userNameMissing = false;
    bool shortPathMissing = false;
    std::wstring profileBack;
};

const UserTexts& userTexts() {
    static const UserTexts user = [] {
        UserTexts made;
        const std::wstring profile = getProfilePath();
        const std::wstring name = getUserName();
        made.profileMissing = profile.empty();
        made.userNameMissing = name.empty();
        if (!profile.empty()) made.profileBack = profile + L'\\';
        const std::wstring shortPath = profile.empty() ? profile : getShortPathName(made.profileBack);
        made.shortPathMissing = !profile.empty() && shortPath.empty();
        made.texts = makeScrubTexts(made.profileBack, shortPath, name, equalsIgnoreCase);
        return made;
    }();
    return user;
}

/// Logs once what could not be looked up. After the look-up, because a line logged during it would wait for it.
void reportMissingTexts(const UserTexts& user) {
    static std::atomic<bool> reported = false;
    if (reported.exchange(true)) return;
    if (user.userNameMissing) PDX_LOG(logInfo, "getUserName", "Unable to retrieve username!");
    if (user.profileMissing)
        PDX_LOG(logInfo, "getProfilePath", "There was a problem getting the current user's profile path");
    if (user.shortPathMissing)
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
    const wchar_t marker = elevationMarker();
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
