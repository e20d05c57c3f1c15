// The move from the older client, where the client is installed already: the whole order of its steps, over both loads
// of the library.
#pragma once

#include "core/ErrorReporting.h"
#include "core/Run.h"

namespace pdx {

/// Used on the engine's thread. The constructor's arguments outlive the object.
class Migration {
  public:
    Migration(Run& migrationRun, ErrorReporting& migrationErrors) : run(migrationRun), errors(migrationErrors) {}

    /// Asks whether to uninstall the older client. Requests a reload that does, or starts the client. Ends the run.
    void promptBastionUninstall();
    /// After the reload: starts an elevated copy if needed, else removes the older client, starts the client and ends
    /// the run. Returns the start's result.
    HRESULT start();
    /// Starts the client; removes the older client first if the user has chosen that.
    void launchInstalledClient();

  private:
    /// Does nothing after a cancel. Waits without limit for an uninstaller that runs, also after a later cancel.
    void removeBastion();
    /// Does nothing after a cancel.
    void launchClientToUpdate();

    Run& run;
    ErrorReporting& errors;
};

}  // namespace pdx
