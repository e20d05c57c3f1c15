// The messages that the run sends to its dialog. Each is sent synchronously, so that a callback can wait for the user's
// answer. The callback at position p of the engine's table, counted from 0 with the three of IUnknown, has the message
// WM_APP + (p - 6). Those from WM_APP + 51 on belong to no callback.
#pragma once

#include <windows.h>

namespace pdx {

enum AppMessage : UINT {
    WM_BA_DETECT_UPDATE_BEGIN = WM_APP + 2,          // 0, 0
    WM_BA_DETECT_COMPLETE = WM_APP + 12,             // status, 0
    WM_BA_PLAN_COMPLETE = WM_APP + 20,               // status, 0
    WM_BA_ERROR = WM_APP + 25,                       // pointer to ErrorInfo, 0; answers with the button's result
    WM_BA_CACHE_BEGIN = WM_APP + 28,                 // 0, 0
    WM_BA_CACHE_ACQUIRE_BEGIN = WM_APP + 30,         // operation, wzSource
    WM_BA_CACHE_ACQUIRE_PROGRESS = WM_APP + 31,      // overall percentage, 0
    WM_BA_CACHE_ACQUIRE_COMPLETE = WM_APP + 33,      // status, recommendation; answers retry, cancel or 0
    WM_BA_EXECUTE_BEGIN = WM_APP + 38,               // number of packages, 0
    WM_BA_EXECUTE_PACKAGE_BEGIN = WM_APP + 39,       // fExecute, package id
    WM_BA_EXECUTE_PROGRESS = WM_APP + 41,            // package percentage, overall percentage
    WM_BA_APPLY_COMPLETE = WM_APP + 48,              // status, restart state; answers restart or 0
    WM_BA_PROMPT_ALREADY_INSTALLED = WM_APP + 51,    // 0, 0; answers with the button's result
    WM_BA_REPAIR_INITIALIZING = WM_APP + 52,         // 0, 0
    WM_BA_SENDING_ERROR_REPORT = WM_APP + 53,        // 0, 0
    WM_BA_PROMPT_BASTION_UNINSTALL = WM_APP + 54,    // 0, 0; answers with the button's result
    WM_BA_UNINSTALLING_BASTION_TITLE = WM_APP + 55,  // 0, 0
    WM_BA_UNINSTALLING_BASTION = WM_APP + 56,        // 0, 0
    WM_BA_REFRESH_PAGE = WM_APP + 57,                // 0, 0; the dialog posts it to itself
};

/// Whether the dialog may ask the user before it answers.
constexpr bool mayAsk(UINT message) {
    constexpr UINT asking[] = {WM_BA_DETECT_COMPLETE,          WM_BA_ERROR,
                               WM_BA_CACHE_ACQUIRE_COMPLETE,   WM_BA_APPLY_COMPLETE,
                               WM_BA_PROMPT_ALREADY_INSTALLED, WM_BA_PROMPT_BASTION_UNINSTALL};
    for (const UINT one : asking)
        if (one == message) return true;
    return false;
}

}  // namespace pdx
