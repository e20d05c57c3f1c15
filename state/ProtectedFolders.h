// The folders of this machine that no client can have been installed to.
#pragma once

#include <string>
#include <vector>

#include "state/rules/OwnFolder.h"

namespace pdx {

/// The system's folders, the shared folders of programs, and for every account of the machine its profile with the
/// folders of documents and of programs' data in it: who gave the elevated rights is not always who plays. As they are
/// spelt.
std::vector<SystemFolder> protectedFolders();
/// The same folders by their final paths (VOLUME_NAME_NT); empty where there is no such folder.
std::vector<SystemFolder> byVolume(std::vector<SystemFolder> folders);

}  // namespace pdx
