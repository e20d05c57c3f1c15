// The one value that decides at the end of a run whether it is told as a success, a cancel or a failure. It holds the
// most telling code of the run: a later generic code must not hide an earlier exact one.
#pragma once

#include <cstdint>

#include <nlohmann/json.hpp>

#include "platform/rules/EngineTypes.h"

namespace pdx {

using Hresult = int32_t;

/// An HRESULT from an error type (the engine's, or PALISADE_ERROR_TYPE) and a code: 0xA0000000 or'ed with the type's
/// low 11 bits and the code's low 16. 1603 of Windows Installer is 0xA0010643, our own 1150 is 0xA7FF047E.
constexpr Hresult formError(BOOTSTRAPPER_ERROR_TYPE type, uint32_t code) {
    return static_cast<Hresult>(0xA0000000u | (static_cast<uint32_t>(type) & 0x7FFu) << 16 | (code & 0xFFFFu));
}

/// The low word under which an HRESULT carries its code.
constexpr uint32_t codeOf(Hresult hr) { return static_cast<uint32_t>(hr) & 0xFFFFu; }

/// The user has cancelled: ERROR_INSTALL_USEREXIT, whatever the facility.
constexpr uint32_t userExitCode = 1602;
/// ERROR_INSTALL_FAILURE, what Windows Installer says when it says nothing.
constexpr uint32_t genericFailureCode = 1603;

/// HRESULT of a Win32 error code that is not 0.
constexpr Hresult hresultFromWin32(uint32_t code) { return static_cast<Hresult>(0x80070000u | (code & 0xFFFFu)); }

/// Whether next says something that current does not: it differs, and either its sign differs too or its code is
/// exact (neither a user exit nor a generic failure).
constexpr bool isTellingChange(Hresult current, Hresult next) {
    if (next == current) return false;
    if ((next < 0) != (current < 0)) return true;
    const uint32_t code = codeOf(next);
    return code != userExitCode && code != genericFailureCode && code != 0xFFFF;
}

/// How a run is told.
enum class Outcome { succeeded, cancelled, failed };

constexpr Outcome outcomeOf(Hresult status) {
    if (status >= 0) return Outcome::succeeded;
    return codeOf(status) == userExitCode ? Outcome::cancelled : Outcome::failed;
}

/// What a run remembers of its errors, with the callback and the context in which the last one arose.
struct InstallStatus {
    Hresult status = 0;
    Hresult lastError = 0;
    bool errorShown = false;  ///< the error prompt was shown for the current error
    int32_t errorOperation = 0;
    nlohmann::json errorContext = nlohmann::json::object();

    /// Takes a callback's status in; operation and context are those of the moment. Returns whether status changed.
    bool update(Hresult hr, int32_t operation, const nlohmann::json& context) {
        if (hr >= 0) errorShown = false;
        if (!isTellingChange(status, hr)) return false;
        status = hr;
        if (hr < 0 && isTellingChange(lastError, hr)) {
            lastError = hr;
            errorOperation = operation;
            errorContext = context;
        }
        return true;
    }
};

}  // namespace pdx
