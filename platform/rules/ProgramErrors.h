// How errors become one kind of number, and the library's own codes.
#pragma once

#include <cstdint>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// The platform's HRESULT, without its header.
using Hresult = int32_t;

/// Codes of the library's own errors, of the type PALISADE_ERROR_TYPE.
enum ProgramError : uint32_t {
    errorLogFileTaken = 32,     ///< another process has the client package's log
    errorFilesNotLocked = 577,  ///< the files that are to run elevated cannot be locked
    errorSystemTooOld = 1150,
    errorSecondInstance = 1152,
    errorRepairIncomplete = 3017,  ///< the installed client cannot be removed
};

/// An HRESULT from an error type (the engine's, or PALISADE_ERROR_TYPE) and a code: 0xA0000000 or'ed with the type's
/// low 11 bits and the code's low 16. 1603 of Windows Installer is 0xA0010643, our own 1150 is 0xA7FF047E.
constexpr Hresult formError(BOOTSTRAPPER_ERROR_TYPE type, uint32_t code) {
    return static_cast<Hresult>(0xA0000000u | (static_cast<uint32_t>(type) & 0x7FFu) << 16 | (code & 0xFFFFu));
}

/// The low word under which an HRESULT carries its code.
constexpr uint32_t codeOf(Hresult hr) { return static_cast<uint32_t>(hr) & 0xFFFFu; }

/// HRESULT of a Win32 error code that is not 0.
constexpr Hresult hresultFromWin32(uint32_t code) { return static_cast<Hresult>(0x80070000u | (code & 0xFFFFu)); }

/// The user has cancelled: ERROR_INSTALL_USEREXIT, whatever the facility.
constexpr uint32_t userExitCode = 1602;
/// ERROR_INSTALL_FAILURE, which Windows Installer returns for every failure without a code of its own.
constexpr uint32_t genericFailureCode = 1603;

}  // namespace pdx
