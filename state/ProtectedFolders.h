// The folders of this machine that are never the client's.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "state/rules/OwnFolder.h"

namespace pdx {

/// The system's folders, the shared folders of programs, and for every account its profile with the folders of
/// documents and of program data. The account with the elevated rights is not always the player's. Spelt as recorded.
///
/// Folders that an account has moved are known only while its registry is loaded: while it is signed in or runs a
/// program. Loading the registry of another account could keep its owner from signing in.
std::vector<SystemFolder> protectedFolders();
/// The same folders with their final paths (VOLUME_NAME_NT). The path is empty for a missing folder, and for one that
/// does not begin at a drive. An account can name a server, to which this process would sign in with elevated rights.
/// Returns nothing once the bound is over: an account can name folders that are slow to reach.
std::optional<std::vector<SystemFolder>> withFinalPaths(std::vector<SystemFolder> folders,
                                                        std::chrono::milliseconds bound = std::chrono::minutes(1));

}  // namespace pdx
