// Which system this is: for the start-up test by its true version, for telemetry by a name.
#pragma once

#include <optional>
#include <string>

#include "platform/rules/OsNames.h"

namespace pdx {

/// The system's name, "Win 10" or "Wine 8": the version of Wine itself, or of Windows' kernel32.dll, which no
/// compatibility setting changes. A name that is not in the table logs "Invalid OS info enum value [%d]" at ERROR and
/// gives the empty text.
std::string getOsVersion();

/// The machine's architecture, "AMD64", also where this process is emulated. A number without a name logs "Invalid
/// processor architecture value [%d]" at ERROR and gives "Unknown".
std::string getProcessorArchitecture();

/// The version that the system reports (RtlGetVersion), unlike GetVersionExW not changed by a missing manifest.
/// Under Wine this is the version set for the prefix, which kernel32.dll's own is not. All zero on failure.
OsInfo systemVersion();
/// Whether the system is a 64-bit one; this process may be a 32-bit one.
bool isSystem64Bit();

/// The version in the fixed version information of kernel32.dll, and whether this is a workstation.
std::optional<OsInfo> kernelVersion();

}  // namespace pdx
