// The installed client: what its package recorded, its logs, and its start.
#pragma once

#include <string>

#include "platform/Handles.h"

namespace pdx {

/// A value that the client's package recorded (productKey, 64-bit view), such as "InstallLocation"; empty without one.
std::wstring clientText(const std::wstring& name);
/// A value that the older client recorded (bastionKey, 32-bit view), such as "ClientPath"; empty without one.
std::wstring bastionText(const std::wstring& name);

/// A file in the client's log folder below the common application data.
std::wstring getLogFilePath(const std::wstring& name);

/// The version of a program of the client that is installed at a location (getFileVersion). Empty for the empty
/// location, and for one that is too long for the system's paths.
std::string getProgramVersion(const std::wstring& installLocation, const std::wstring& file);

/// Starts the client with the parameters: the recorded program LauncherAppPath in the folder InstallLocation. The
/// handle is that of the new process, if the system gave one; without a recorded program nothing is started.
Handle launchClient(const std::wstring& parameters);

}  // namespace pdx
