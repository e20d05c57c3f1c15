// The dialog's decisions about the run's messages.
#pragma once

#include <cstdint>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// Whether a prompt is shown. One that is not answers with its default, so that a silent run continues.
constexpr bool isPromptShown(BOOTSTRAPPER_DISPLAY display) {
    return display == BOOTSTRAPPER_DISPLAY_EMBEDDED || display == BOOTSTRAPPER_DISPLAY_FULL;
}

enum class DetectFlow {
    uninstall,  ///< wait for the client to end, confirm, plan
    welcome,    ///< the user takes over
    install,    ///< continue without a question
    update,     ///< show the download and continue
    plan,       ///< continue and keep telemetry disabled: the engine's own /repair
};

/// What follows a detection.
constexpr DetectFlow afterDetection(BOOTSTRAPPER_ACTION action, BOOTSTRAPPER_DISPLAY display, bool repair) {
    switch (action) {
        case BOOTSTRAPPER_ACTION_UNINSTALL:
            return DetectFlow::uninstall;
        case BOOTSTRAPPER_ACTION_INSTALL:
            return isPromptShown(display) && !repair ? DetectFlow::welcome : DetectFlow::install;
        case BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED:
            return DetectFlow::update;
        default:
            return DetectFlow::plan;
    }
}

/// Whether the dialog hides, because a newer installer shows its own.
constexpr bool hidesForUpdate(BOOTSTRAPPER_ACTION action) {
    return action == BOOTSTRAPPER_ACTION_UPDATE_REPLACE || action == BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED;
}

/// The answer to a failed download for a button of the connection prompt.
constexpr int32_t connectionAnswer(int32_t button) { return button == resultOk ? resultRetry : resultCancel; }

/// Whether the user is asked to restart the machine.
constexpr bool isRestartWanted(int32_t restart) {
    return restart == BOOTSTRAPPER_APPLY_RESTART_REQUIRED || restart == BOOTSTRAPPER_APPLY_RESTART_INITIATED;
}

/// The exit code that the dialog gives the engine after applying.
constexpr uint32_t exitCodeOf(int32_t applyStatus) { return applyStatus < 0 ? 1 : 0; }

}  // namespace pdx
