// Taking the installed client apart, so that the engine detects a machine without it and installs it anew.
#pragma once

#include <functional>
#include <string>

namespace pdx {

/// The steps of a clean-up that can fail, in their order.
enum class RepairStep { stopService, deleteService, deleteFolder };

/// How a clean-up ended.
enum class RepairResult {
    done,
    failed,     ///< the folder was refused, or the service or the folder stays
    cancelled,  ///< nothing was deleted
};

/// What a clean-up asks of the run that it is part of.
struct RepairRun {
    std::wstring providerKey;  ///< the running bundle's own key among the installed programs
    /// Whether the user has cancelled. Asked before anything is changed, and again before the service step.
    std::function<bool()> isCancelled;
    /// A step that can fail begins.
    std::function<void(RepairStep step)> begin;
    /// A repaired client gets no new desktop shortcut.
    std::function<void()> omitDesktopShortcut;
    /// The folder that the client was in and shall be installed to again.
    std::function<void(const std::wstring& folder)> keepInstallFolder;
};

/// Sends the repair's begin with the versions of the client's programs, then removes its processes, its service, its
/// folder, its protocols and all records of it. Needs elevated rights; blocks the thread, for a locked file for 5
/// seconds. Steps that cannot fail the repair are only logged.
///
/// The recorded folder is judged first (isOwnFolder, FoundFolder): a refused one fails the step deleteFolder with the
/// machine as it was. One that is a link is emptied and stays, so that the new install lands where the user put it. If
/// the service or the folder stays, nothing after that step was touched. A cancel that is heard before the first change
/// leaves the machine as it was. One that is heard at the service step leaves the client whole, with its programs
/// ended, its uninstall commands restored and marked unavailable, as a failed service step does. A later cancel is not
/// heard: a client without its service or its files has to be installed again.
RepairResult cleanUpForRepair(const RepairRun& run);

}  // namespace pdx
