// The one value that decides at the end of a run whether it counts as a success, a cancel or a failure. It holds the
// most exact code of the run: a later generic code must not hide it.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>

#include "core/engine/rules/Operations.h"
#include "platform/rules/ProgramErrors.h"

namespace pdx {

/// Whether next replaces current: it differs, and either its sign differs too or its code is exact. Not exact are a
/// user exit, a generic failure, and 0xFFFF, the low word of E_UNEXPECTED.
constexpr bool replacesStatus(Hresult current, Hresult next) {
    if (next == current) return false;
    if ((next < 0) != (current < 0)) return true;
    const uint32_t code = codeOf(next);
    return code != userExitCode && code != genericFailureCode && code != 0xFFFF;
}

/// How a run counts.
enum class Outcome { succeeded, cancelled, failed };

constexpr Outcome outcomeOf(Hresult status) {
    if (status >= 0) return Outcome::succeeded;
    return codeOf(status) == userExitCode ? Outcome::cancelled : Outcome::failed;
}

/// The status and the last error of a run, with the callback and the context in which that error occurred.
struct InstallStatus {
    Hresult status = 0;
    Hresult lastError = 0;
    bool errorShown = false;  ///< the error prompt was shown for the current error
    Operation errorOperation = Operation::none;
    nlohmann::json errorContext = nlohmann::json::object();

    /// Updates with a callback's status, its operation and its context. Returns whether status changed.
    bool update(Hresult hr, Operation operation, const nlohmann::json& context) {
        if (hr >= 0) errorShown = false;
        if (!replacesStatus(status, hr)) return false;
        status = hr;
        if (hr < 0 && replacesStatus(lastError, hr)) {
            lastError = hr;
            errorOperation = operation;
            errorContext = context;
        }
        return true;
    }
};

}  // namespace pdx
