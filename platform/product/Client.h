// The installed client: the values that its package recorded, its logs, and its start.
#pragma once

#include <string>

#include "platform/Handles.h"

namespace pdx {

/// A value that the client's package recorded (productKey, 64-bit view), such as "InstallLocation"; empty without one.
std::wstring clientText(const std::wstring& name);
/// A value that the older client recorded (bastionKey, 32-bit view), such as "ClientPath"; empty without one.
std::wstring bastionText(const std::wstring& name);

/// A file in the client's log folder below the common application data; empty on failure.
std::wstring getLogFilePath(const std::wstring& name);

/// The version of a program in the folder "Palisade Desktop" of an install location (getFileVersion). Empty if the
/// location is empty, relative or too long for the system's paths.
std::string getProgramVersion(const std::wstring& installLocation, const std::wstring& file);

/// Starts the client with the parameters: the recorded program LauncherAppPath in the folder InstallLocation. Returns
/// the handle of the new process, if there is one. Does nothing without a recorded program.
Handle launchClient(const std::wstring& parameters);

}  // namespace pdx
