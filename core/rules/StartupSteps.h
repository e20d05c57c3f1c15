// What a start decides before anything is detected.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// The facts of the system that a start checks.
struct SystemFacts {
    bool is64Bit;
    uint32_t major;
    uint32_t minor;
};

/// Whether the client runs on that system: 64-bit from version 6.3 on, or from 6.1 on where that is allowed.
constexpr bool isSystemAccepted(const SystemFacts& system, bool allowWindows7) {
    const auto atLeast = [&](uint32_t major, uint32_t minor) {
        return system.major > major || (system.major == major && system.minor >= minor);
    };
    return system.is64Bit && (atLeast(6, 3) || (atLeast(6, 1) && allowWindows7));
}

enum class StartupStep {
    detect,
    launchClientFromDisc,    ///< start the client with the disc's parameters, then quit
    quit,                    ///< end at once and with success
    promptBastionUninstall,  ///< offer to remove the older client
    promptAlreadyInstalled,
};

/// The facts by which a run that is neither a repair nor a migration chooses its first step. Those that read the
/// registry, which logs missing keys, are functions: a row of the table calls them only if it needs them.
struct StartupFacts {
    int32_t action = BOOTSTRAPPER_ACTION_INSTALL;
    bool installed = false;  ///< an install location is recorded
    bool fromDisc = false;
    bool ignoreAlreadyInstalled = false;  ///< IGNORE_ALREADY_INSTALLED is "1"
    std::function<bool()>
        bastionToPrompt;  ///< migration and its prompt are on and requested, and the older client is installed
    std::function<bool()> bastionRecorded;     ///< the older client's ClientPath is not empty
    std::function<bool()> gatelinkRegistered;  ///< the gatelink protocol has a command
};

StartupStep chooseStartupStep(const StartupFacts& facts);

/// Whether the detection of an install found the client's package although no install location was recorded. The id is
/// compared exactly, and every state except ABSENT counts, also UNKNOWN.
bool isClientPackagePresent(int32_t action, std::wstring_view packageId, BOOTSTRAPPER_PACKAGE_STATE state);

}  // namespace pdx
