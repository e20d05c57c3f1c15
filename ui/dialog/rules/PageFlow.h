// What the dialog does with a message of the application, as far as it is a decision.
#pragma once

#include <cstdint>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// Whether a prompt is shown at all; where it is not, it answers with its default, which lets a silent run go on.
constexpr bool isPromptShown(BOOTSTRAPPER_DISPLAY display) {
    return display == BOOTSTRAPPER_DISPLAY_EMBEDDED || display == BOOTSTRAPPER_DISPLAY_FULL;
}

enum class DetectFlow {
    uninstall,  ///< wait for the client to end, confirm, plan
    welcome,    ///< the user takes over
    install,    ///< go on without a word
    update,     ///< show the download and go on
    plan,       ///< go on without a word, and leave telemetry held back: no run asks for such an action
};

/// What follows a detection.
constexpr DetectFlow afterDetection(BOOTSTRAPPER_ACTION action, BOOTSTRAPPER_DISPLAY display, bool repairIsOff) {
    switch (action) {
        case BOOTSTRAPPER_ACTION_UNINSTALL:
            return DetectFlow::uninstall;
        case BOOTSTRAPPER_ACTION_INSTALL:
            return isPromptShown(display) && repairIsOff ? DetectFlow::welcome : DetectFlow::install;
        case BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED:
            return DetectFlow::update;
        default:
            return DetectFlow::plan;
    }
}

/// Whether the dialog hides, for the newer installer's to show.
constexpr bool hidesForUpdate(BOOTSTRAPPER_ACTION action) {
    return action == BOOTSTRAPPER_ACTION_UPDATE_REPLACE || action == BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED;
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
