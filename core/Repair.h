// A repair: the whole order of its steps, over both loads of the library.
#pragma once

#include "core/ErrorReporting.h"
#include "core/Migration.h"
#include "core/Run.h"

namespace pdx {

/// Used on the engine's thread. The constructor's arguments outlive the object.
class Repair {
  public:
    Repair(Run& repairRun, ErrorReporting& repairErrors, Migration& repairMigration)
        : run(repairRun), errors(repairErrors), migration(repairMigration) {}

    /// Asks whether to start or repair the installed client. Starts it or requests a reload for the repair. Ends the
    /// run.
    void promptAlreadyInstalled();
    /// After the reload: starts an elevated copy if needed, else removes the client and has the engine detect a machine
    /// without it. Returns the start's result.
    HRESULT start();

  private:
    HRESULT performRepairCleanup();

    Run& run;
    ErrorReporting& errors;
    Migration& migration;
};

}  // namespace pdx
