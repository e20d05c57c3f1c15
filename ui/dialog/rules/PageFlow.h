// What the dialog does with a message of the application, as far as it is a decision.
#pragma once

#include <cstdint>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// Whether a prompt is shown at all; where it is not, it answers with its default, which lets a silent run go on.
constexpr bool isPromptShown(BOOTSTRAPPER_DISPLAY display) {
    return display == BOOTSTRAPPER_DISPLAY_EMBEDDED || display == BOOTSTRAPPER_DISPLAY_FULL;
}

/// What the connection prompt's button makes of a failed download.
constexpr int32_t connectionAnswer(int32_t button) { return button == resultOk ? resultRetry : resultCancel; }

/// Whether the user is asked to restart the machine.
constexpr bool isRestartWanted(int32_t restart) {
    return restart == BOOTSTRAPPER_APPLY_RESTART_REQUIRED || restart == BOOTSTRAPPER_APPLY_RESTART_INITIATED;
}

/// The exit code that the dialog gives the engine after applying.
constexpr uint32_t exitCodeOf(int32_t applyStatus) { return applyStatus < 0 ? 1 : 0; }

}  // namespace pdx
