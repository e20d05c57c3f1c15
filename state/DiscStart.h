// Starts from a game disc: which game content the client is to install.
#pragma once

#include <span>
#include <string>

namespace pdx {

/// Whether the run was started from a disc or with a disc's parameters. They are appended to itdParams as " -{}={}" and
/// kept for the client in the registry (the current user's pendingITDjob). A disc has "autorun.inf" and
/// "Autorun\thinsetup.json" in the bundle's folder, which ends in a separator. Its file is then the one parameter, and
/// the arguments (those after the program) are not read. Logs the result at INFO. A bare key throws std::out_of_range:
/// settled behaviour, which ends the run as a crash.
bool checkForITD(std::wstring& itdParams, const std::wstring& bundleFolder, std::span<const std::wstring> arguments);

}  // namespace pdx
