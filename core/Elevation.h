// How a run that has not the rights it needs gets them: files locked, then an elevated copy of the program.
#pragma once

#include <string>

#include "core/ErrorReporting.h"
#include "core/Run.h"

namespace pdx {

/// Locks the files that are to run elevated for the life of the run's object. The result with which a start fails if
/// they cannot be locked; the error is reported then.
HRESULT lockElevatedBinaries(Run& run, ErrorReporting& errors, const std::wstring& folder,
                             const std::wstring& executable);

/// Starts an elevated copy of this program with the variables that cross over, and ends this run, whatever becomes of
/// the copy: a refusal by the user too, for nobody is there to do the work in its place. Not after a cancel. Holds the
/// files until the copy has loaded them, after the window has gone; not without limit.
HRESULT relaunchElevated(Run& run, ErrorReporting& errors);

}  // namespace pdx
