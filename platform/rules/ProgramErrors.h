// How errors become HRESULTs, and the library's error codes.
#pragma once

#include <cstdint>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// The platform's HRESULT, without its header.
using Hresult = int32_t;

/// Codes of the library's errors, of the type PALISADE_ERROR_TYPE.
enum ProgramError : uint32_t {
    errorLogFileTaken = 32,     ///< another process has opened the client package's log
    errorFilesNotLocked = 577,  ///< the files that are to run elevated cannot be locked
    errorSystemTooOld = 1150,
    errorSecondInstance = 1152,
    errorRepairIncomplete = 3017,  ///< the installed client cannot be removed
};

/// An HRESULT from an error type (the engine's, or PALISADE_ERROR_TYPE) and a code: 0xA0000000 with the type's low 11
/// bits and the code's low 16. Windows Installer's 1603 becomes 0xA0010643, the library's 1150 becomes 0xA7FF047E.
constexpr Hresult formError(BOOTSTRAPPER_ERROR_TYPE type, uint32_t code) {
    return static_cast<Hresult>(0xA0000000u | (static_cast<uint32_t>(type) & 0x7FFu) << 16 | (code & 0xFFFFu));
}

/// The code of an HRESULT, its low word.
constexpr uint32_t codeOf(Hresult hr) { return static_cast<uint32_t>(hr) & 0xFFFFu; }

/// HRESULT of a Win32 error code that is not 0.
constexpr Hresult hresultFromWin32(uint32_t code) { return static_cast<Hresult>(0x80070000u | (code & 0xFFFFu)); }

/// ERROR_INSTALL_USEREXIT: the user has cancelled. Compared with codeOf a result, so the facility does not matter.
constexpr uint32_t userExitCode = 1602;
/// ERROR_INSTALL_FAILURE, which Windows Installer returns for every failure without a specific code.
constexpr uint32_t genericFailureCode = 1603;

}  // namespace pdx
