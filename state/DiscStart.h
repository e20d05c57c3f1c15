// Starts from a game disc, which names the game content that the client shall install.
#pragma once

#include <span>
#include <string>

namespace pdx {

/// Whether the run was started from a disc or with a disc's parameters. Appends them to itdParams as " -{}={}" and
/// stores them for the client in the registry (the current user's pendingITDjob). A disc has "autorun.inf" and
/// "Autorun\thinsetup.json" in the bundle's folder, which ends in a separator. That file is then the only parameter,
/// and the arguments (those after the program) are not read. Logs the result at INFO. A bare key throws
/// std::out_of_range, which ends the run as a crash, on purpose.
bool checkForITD(std::wstring& itdParams, const std::wstring& bundleFolder, std::span<const std::wstring> arguments);

}  // namespace pdx
