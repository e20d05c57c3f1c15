// What a start decides before anything is detected.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// Codes of the library's own errors.
enum ProgramError : uint32_t {
    errorLogFileTaken = 32,  ///< somebody else has the client package's log
    errorSystemTooOld = 1150,
    errorSecondInstance = 1152,
};

/// The facts of the system that the start asks for.
struct SystemFacts {
    bool is64Bit;
    uint32_t major;
    uint32_t minor;
};

/// Whether the client runs on that system: 64-bit from 6.3 on, and from 6.1 on where that is allowed.
constexpr bool isSystemAccepted(const SystemFacts& system, bool allowWindows7) {
    const auto atLeast = [&](uint32_t major, uint32_t minor) {
        return system.major > major || (system.major == major && system.minor >= minor);
    };
    return system.is64Bit && (atLeast(6, 3) || (atLeast(6, 1) && allowWindows7));
}

enum class StartupStep {
    detect,
    launchClientFromDisc,  ///< hand over to the client with the disc's parameters, then quit
    quit,                  ///< end at once and with success
    promptOlderClient,     ///< offer to remove the older client
    promptAlreadyInstalled,
};

/// The facts by which a run that is neither a repair nor a migration chooses its first step.
struct StartupFacts {
    int32_t action = BOOTSTRAPPER_ACTION_INSTALL;
    bool installed = false;  ///< an install location is recorded
    bool fromDisc = false;
    bool ignoreAlreadyInstalled = false;  ///< IGNORE_ALREADY_INSTALLED is "1"
    bool olderClientToPrompt = false;     ///< migration with its prompt is on, asked for, and the older client there
    bool olderClientRecorded = false;     ///< the older client's ClientPath is not empty
    bool gatelinkRegistered = false;      ///< the gatelink protocol has a command
};

StartupStep chooseStartupStep(const StartupFacts& facts);

/// Whether the library's package turns up during detection although no install location was recorded. The id is
/// compared exactly, and every state but ABSENT counts, UNKNOWN too.
bool isClientPackagePresent(int32_t action, std::wstring_view packageId, BOOTSTRAPPER_PACKAGE_STATE state);

/// A command line argument as a bundle variable: nothing if it begins with "-" or "/" or holds no "=", else the text
/// before and behind its first "=".
std::optional<std::pair<std::wstring, std::wstring>> variableOfArgument(std::wstring_view argument);

/// The display that a run has towards the user. A newer installer that takes the place of another is always given an
/// embedded one, also when that was started quietly, and would wait for a user who is not there: of such a run the
/// engine's own quiet and passive switches on the command line decide, the last of them. The arguments are those behind
/// the program.
BOOTSTRAPPER_DISPLAY displayTowardsUser(BOOTSTRAPPER_DISPLAY display, BOOTSTRAPPER_RELATION_TYPE relation,
                                        std::span<const std::wstring> arguments);

/// The client's package of the bundle.
inline constexpr std::wstring_view clientPackageId = L"PalisadeApp.msi";

}  // namespace pdx
