// The move from the older client, where the client is installed already: the whole order of its steps, over both loads
// of the library.
#pragma once

#include "core/ErrorReporting.h"
#include "core/Run.h"

namespace pdx {

/// On the engine's thread. What it is made with outlives it.
class Migration {
  public:
    Migration(Run& migrationRun, ErrorReporting& migrationErrors) : run(migrationRun), errors(migrationErrors) {}

    /// Asks what is to become of the older client: this run ends for its removal, or it stays and the client is
    /// started. Ends the run.
    void promptBastionUninstall();
    /// In the run that removes it, which is elevated or starts a copy that is: waits for the uninstallers, then starts
    /// the client, and ends the run. The start's result.
    HRESULT start();
    /// Starts the client, after the older one's removal where that is due.
    void launchInstalledClient();

  private:
    /// Starts no uninstaller after a cancel. One that runs is waited for without limit, and a cancel meanwhile changes
    /// nothing about that.
    void removeBastion();
    /// Not after a cancel.
    void launchClientToUpdate();

    Run& run;
    ErrorReporting& errors;
};

}  // namespace pdx
