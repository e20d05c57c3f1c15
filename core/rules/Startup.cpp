#include "core/rules/Startup.h"

namespace pdx {
namespace {

using Step = StartupStep;
using Facts = StartupFacts;

struct StartupRow {
    bool (*matches)(const Facts&);
    Step step;
};

/// The first row that matches decides.
constexpr StartupRow startupRows[] = {
    {[](const Facts& f) { return f.action != BOOTSTRAPPER_ACTION_INSTALL; }, Step::detect},
    {[](const Facts& f) { return f.installed && f.fromDisc; }, Step::launchClientFromDisc},
    {[](const Facts& f) { return f.installed && f.ignoreAlreadyInstalled; }, Step::quit},
    {[](const Facts& f) { return f.installed && f.olderClientToPrompt; }, Step::promptOlderClient},
    {[](const Facts& f) { return f.installed; }, Step::promptAlreadyInstalled},
    {[](const Facts& f) { return f.olderClientRecorded && f.ignoreAlreadyInstalled && f.gatelinkRegistered; },
     Step::quit},
    {[](const Facts&) { return true; }, Step::detect},
};

struct DisplaySwitch {
    std::wstring_view word;
    BOOTSTRAPPER_DISPLAY display;
};

/// As the engine takes them.
constexpr DisplaySwitch displaySwitches[] = {
    {L"q", BOOTSTRAPPER_DISPLAY_NONE},          {L"quiet", BOOTSTRAPPER_DISPLAY_NONE},
    {L"s", BOOTSTRAPPER_DISPLAY_NONE},          {L"silent", BOOTSTRAPPER_DISPLAY_NONE},
    {L"passive", BOOTSTRAPPER_DISPLAY_PASSIVE},
};

/// The word of "/Word" or "-Word" in lower case; empty for another argument.
std::wstring switchOf(std::wstring_view argument) {
    if (!argument.starts_with(L'-') && !argument.starts_with(L'/')) return {};
    std::wstring word(argument.substr(1));
    for (wchar_t& c : word)
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    return word;
}

}  // namespace

StartupStep chooseStartupStep(const StartupFacts& facts) {
    for (const StartupRow& row : startupRows)
        if (row.matches(facts)) return row.step;
    return Step::detect;
}

bool isClientPackagePresent(int32_t action, std::wstring_view packageId, BOOTSTRAPPER_PACKAGE_STATE state) {
    return action == BOOTSTRAPPER_ACTION_INSTALL && packageId == clientPackageId &&
           state != BOOTSTRAPPER_PACKAGE_STATE_ABSENT;
}

std::optional<std::pair<std::wstring, std::wstring>> variableOfArgument(std::wstring_view argument) {
    if (argument.starts_with(L'-') || argument.starts_with(L'/')) return std::nullopt;
    const size_t equals = argument.find(L'=');
    if (equals == std::wstring_view::npos) return std::nullopt;
    return std::pair(std::wstring(argument.substr(0, equals)), std::wstring(argument.substr(equals + 1)));
}

BOOTSTRAPPER_DISPLAY displayTowardsUser(BOOTSTRAPPER_DISPLAY display, BOOTSTRAPPER_RELATION_TYPE relation,
                                        std::span<const std::wstring> arguments) {
    if (relation != BOOTSTRAPPER_RELATION_UPDATE) return display;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring word = switchOf(arguments[i]);
        for (const DisplaySwitch& row : displaySwitches)
            if (word == row.word) display = row.display;
        if (word == L"l" || word == L"log") ++i;  // what follows is a file's name
    }
    return display;
}

}  // namespace pdx
