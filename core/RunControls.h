// The operations of a run for its user interface.
#pragma once

#include <string>

#include "core/RunTelemetry.h"
#include "platform/Engine.h"

namespace pdx {

/// Any thread.
class RunControls {
  public:
    [[nodiscard]] virtual BOOTSTRAPPER_ACTION action() const = 0;
    /// The display towards the user; differs from the engine's where this run is embedded in another.
    [[nodiscard]] virtual BOOTSTRAPPER_DISPLAY display() const = 0;
    [[nodiscard]] virtual bool isThinInstaller() const = 0;
    [[nodiscard]] virtual bool isRepair() const = 0;
    /// Whether the user has cancelled, and the engine is not rolling back.
    [[nodiscard]] virtual bool isStopped() const = 0;
    /// Whether to ask the user about the older client.
    [[nodiscard]] virtual bool asksAboutBastion() const = 0;
    [[nodiscard]] virtual std::wstring installFolder() const = 0;
    /// For the clicks and the pages shown.
    [[nodiscard]] virtual const RunTelemetry& telemetry() const = 0;

    virtual void setInstallFolder(const std::wstring& folder) = 0;
    virtual void setDesktopShortcut(bool wanted) = 0;
    virtual void setBastionRemoval(bool wanted) = 0;
    virtual void setReportConsent(bool given) = 0;

    /// Lets telemetry be sent from now on, because the user has begun the work.
    virtual void enableSending() = 0;
    /// Asks the engine to plan the action, or to apply the plan. Ends the run if it refuses.
    virtual void plan() = 0;
    virtual void apply(HWND window) = 0;
    /// Makes the engine end the run with that code. The engine still completes a detection that is running; its result
    /// is then ignored.
    virtual void quit(DWORD code) = 0;
    /// Ends the run with 1, because the dialog failed to start the run's next step.
    virtual void quitAfterDialogFault() = 0;
    /// Cancels: every further callback answers with a cancel, and a running apply ends in a rollback.
    virtual void cancel(HWND window) = 0;
    /// Ends this run and has the engine load the library anew for a repair.
    virtual void requestRepair() = 0;
    virtual void noteLogout() = 0;

  protected:
    ~RunControls() = default;
};

}  // namespace pdx
