// Removes the installed client, so that the engine detects a machine without it and installs it anew.
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

/// What a clean-up needs of its run.
struct RepairRun {
    std::wstring providerKey;  ///< the running bundle's key among the installed programs
    /// Whether the user has cancelled. Called before the first change, and again before the service step.
    std::function<bool()> isCancelled;
    /// Called before each step that can fail.
    std::function<void(RepairStep step)> begin;
    /// Prevents a new desktop shortcut for the repaired client.
    std::function<void()> omitDesktopShortcut;
    /// Sets the client's folder as the folder of the new install.
    std::function<void(const std::wstring& folder)> keepInstallFolder;
};

/// Sends the repair's begin with the versions of the client's programs. Then ends these, and removes its service, its
/// folder, its protocols and all records of it. Needs elevated rights. Steps that cannot fail the repair are only
/// logged.
///
/// Blocks the thread. The wait for the end of the client's programs has no bound. Stopping the service takes up to 2
/// seconds, deleting it about 4. Each file or folder that cannot be deleted takes some seconds of tries. RemovalBounds
/// limits the failed tries of all entries and the whole deletion. The check of the folder takes a minute at most.
///
/// The recorded folder is checked before files, processes, the service or the registry are changed (isOwnFolder,
/// FoundFolder). A refused one is logged at ERROR as "The recorded install folder is not deleted: "%ls"" and fails the
/// step deleteFolder. By then the begin was sent and the desktop shortcut omitted; nothing else has changed. A folder
/// that is a link is emptied and kept, so that the new install uses the user's place.
///
/// If the service or the folder cannot be deleted, no later step runs; such a folder may have lost any part of its
/// content. After a cancel before the first change, the machine is as after a refused folder. After a cancel at the
/// service step the client is whole and marked unavailable. Its programs have then ended, and its uninstall commands
/// are restored. A later cancel has no effect: a client without its service or its files must be installed again.
RepairResult removeInstalledClient(const RepairRun& run);

}  // namespace pdx
