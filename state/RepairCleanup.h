// Removing the installed client piece by piece, so that the engine detects a machine without it and installs it anew.
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
/// folder, its protocols and all records of it. Needs elevated rights. Steps that cannot fail the repair are only
/// logged.
///
/// Blocks the thread: without a bound until the client's programs have ended; up to 2 seconds to stop the service and
/// some 4 to delete it; for each file or folder that stays 50 tries with 100 ms after each, and two minutes of such
/// tries for all of them together (RemovalBounds). The deleting itself takes as long as the disk needs.
///
/// The recorded folder is judged before files, processes, the service or the registry are touched (isOwnFolder,
/// FoundFolder). A refused one is logged at ERROR as "The recorded install folder is not deleted: "%ls"" and fails the
/// step deleteFolder; by then the begin was sent and the desktop shortcut omitted, and nothing else has changed. A
/// folder that is a link is emptied and stays, so that the new install lands where the user put it. If the service or
/// the folder stays, nothing after that step was touched; a folder that stays can have lost any part of what was in it.
/// A cancel that is heard before the first change leaves the machine like a refused folder does. One that is heard at
/// the service step leaves the client whole, with its programs ended, its uninstall commands restored and marked
/// unavailable, as a failed service step does. A later cancel is not heard: a client without its service or its files
/// has to be installed again.
RepairResult removeInstalledClient(const RepairRun& run);

}  // namespace pdx
