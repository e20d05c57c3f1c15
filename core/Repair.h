// A repair: the whole order of its steps, over both loads of the library.
#pragma once

#include "core/ErrorReporting.h"
#include "core/Migration.h"
#include "core/Run.h"

namespace pdx {

/// On the engine's thread. What it is made with outlives it.
class Repair {
  public:
    Repair(Run& repairRun, ErrorReporting& repairErrors, Migration& repairMigration)
        : run(repairRun), errors(repairErrors), migration(repairMigration) {}

    /// Asks what is to become of the installed client: it is started, or this run ends for a repair. Ends the run.
    void promptAlreadyInstalled();
    /// In the run that repairs, which is elevated or starts a copy that is: removes the client, then has the engine
    /// detect, which finds none. The start's result.
    HRESULT start();

  private:
    HRESULT performRepairCleanup();

    Run& run;
    ErrorReporting& errors;
    Migration& migration;
};

}  // namespace pdx
