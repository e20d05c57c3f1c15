// Where a package's log is found, and what of it a report takes along.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pdx {

/// The engine's variable that holds a package's log path, forward or in rollback: "WixBundleRollbackLog_app.msi".
std::wstring packageLogVariable(std::wstring_view packageId, bool forward);

/// A log path without its ending: a package's log may roll over to several files, and a report takes every file that
/// begins so. The cut is at the last ".log"; nothing for a path of fewer than five characters.
std::optional<std::wstring> reportFileStem(std::wstring_view logPath);

}  // namespace pdx
