// The operating system: its true version for the start-up check, and its name for telemetry.
#pragma once

#include <optional>
#include <string>

#include "platform/rules/OsNames.h"

namespace pdx {

/// The system's name, "Win 10" or "Wine 8": the version of Wine itself, or of Windows' kernel32.dll, which no
/// compatibility setting changes. Empty for a system without a name, which logs "Invalid OS info enum value [%d]" at
/// ERROR.
std::string getOsVersion();

/// The machine's architecture, "AMD64", also in an emulated process. "Unknown" for a number without a name, which logs
/// "Invalid processor architecture value [%d]" at ERROR.
std::string getProcessorArchitecture();

/// The version that the system reports (RtlGetVersion), unlike GetVersionExW not changed by a missing manifest.
/// Under Wine this is the version that the prefix is set to; the version of kernel32.dll is another. All zero on
/// failure.
OsInfo systemVersion();
/// Whether the system has 64 bits; this process has 32.
bool isSystem64Bit();

/// The version in the fixed version information of kernel32.dll, and whether this is a workstation.
std::optional<OsInfo> kernelVersion();

}  // namespace pdx
