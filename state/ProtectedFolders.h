// The folders of this machine that no client can have been installed to.
#pragma once

#include <string>
#include <vector>

#include "state/rules/OwnFolder.h"

namespace pdx {

/// The system's folders, the shared folders of programs, and for every account of the machine its profile with the
/// folders of documents and of programs' data in it: who gave the elevated rights is not always who plays. As they are
/// spelt.
/// Folders that an account has moved elsewhere are known while its registry is loaded, that is while it is signed in
/// or runs a program. Those of other accounts are not known: loading a registry could keep its owner from signing in.
std::vector<SystemFolder> protectedFolders();
/// The same folders by their final paths (VOLUME_NAME_NT); empty where there is no such folder, and for a path that
/// does not begin at a drive: an account can name a server as its folder, which would be signed in to with elevated
/// rights.
std::vector<SystemFolder> byVolume(std::vector<SystemFolder> folders);

}  // namespace pdx
