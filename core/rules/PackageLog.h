// Where a package's log is, and which of its files an error report contains.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pdx {

/// The engine's variable that holds a package's log path, forward or in rollback: "WixBundleRollbackLog_app.msi".
std::wstring packageLogVariable(std::wstring_view packageId, bool forward);

/// A log path cut at the last ".log". A package's log may roll over to several files; a report contains every file that
/// begins so. Nothing for a path of fewer than five characters.
std::optional<std::wstring> reportFileStem(std::wstring_view logPath);

}  // namespace pdx
