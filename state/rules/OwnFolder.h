// Which recorded folder may be deleted whole.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace pdx {

/// Whether a folder can be a client's own: a full path below a drive or a share, with no part that leads elsewhere
/// ("..", "."), and neither one of the system's folders nor above one of them. A damaged record must not take a player's
/// drive down. Compares ASCII letters without regard to case.
bool isOwnFolder(std::wstring_view folder, std::span<const std::wstring> systemFolders);

}  // namespace pdx
