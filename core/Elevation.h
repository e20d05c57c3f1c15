// How a run gets elevated rights: it locks the files, then starts an elevated copy of the program.
#pragma once

#include <string>

#include "core/ErrorReporting.h"
#include "core/Run.h"

namespace pdx {

/// Locks the files that are to run elevated until the run's object is destroyed. If that fails, reports the error and
/// returns the result with which the start fails.
HRESULT lockBeforeElevation(Run& run, ErrorReporting& errors, const std::wstring& folder,
                            const std::wstring& executable);

/// Starts an elevated copy of this program with the variables that cross over, and ends this run. It ends also if the
/// user refuses elevation, because it could not do the work. After a cancel no copy is started. Hides the window, then
/// holds the locks until the copy has loaded the files, within a bound (awaitElevatedStart).
HRESULT relaunchElevated(Run& run, ErrorReporting& errors);

}  // namespace pdx
