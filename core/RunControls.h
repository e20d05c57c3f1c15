// What the user interface asks of a run, and what it has the run do.
#pragma once

#include <string>

#include "core/RunTelemetry.h"
#include "platform/Engine.h"

namespace pdx {

/// Any thread.
class RunControls {
  public:
    [[nodiscard]] virtual BOOTSTRAPPER_ACTION action() const = 0;
    /// The display towards the user, which is not the engine's own where this run is embedded in another.
    [[nodiscard]] virtual BOOTSTRAPPER_DISPLAY display() const = 0;
    [[nodiscard]] virtual bool isThinInstaller() const = 0;
    [[nodiscard]] virtual bool isRepair() const = 0;
    /// Whether the user has cancelled, and the engine is not rolling back.
    [[nodiscard]] virtual bool isStopped() const = 0;
    /// Whether the user has to be asked about the older client.
    [[nodiscard]] virtual bool asksAboutBastion() const = 0;
    [[nodiscard]] virtual std::wstring installFolder() const = 0;
    /// For the clicks and the pages shown.
    [[nodiscard]] virtual const RunTelemetry& telemetry() const = 0;

    virtual void setInstallFolder(const std::wstring& folder) = 0;
    virtual void setDesktopShortcut(bool wanted) = 0;
    virtual void setBastionRemoval(bool wanted) = 0;
    virtual void setReportConsent(bool given) = 0;

    /// The user has begun the work: from here on telemetry is sent.
    virtual void enableSending() = 0;
    /// Asks the engine to plan the action, or to apply the plan. Ends the run if it refuses.
    virtual void plan() = 0;
    virtual void apply(HWND window) = 0;
    /// Makes the engine end the run with that code. From then on detection leads to nothing: the engine finishes a
    /// detection that is under way and reports it all the same.
    virtual void quit(DWORD code) = 0;
    /// Ends a run whose next step failed in the user interface, with 1.
    virtual void quitAfterFault() = 0;
    /// Every further callback answers with a cancel: an apply that is under way ends in a rollback.
    virtual void cancel(HWND window) = 0;
    /// Ends this run and has the engine load the library anew for a repair.
    virtual void requestRepair() = 0;
    /// The Windows session ends under the window.
    virtual void noteLogout() = 0;

  protected:
    ~RunControls() = default;
};

}  // namespace pdx
