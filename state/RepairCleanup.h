// Taking the installed client apart, so that the engine detects a machine without it and installs it anew.
#pragma once

#include <functional>
#include <string>

namespace pdx {

/// The steps of a clean-up that can fail, by the number under which an error report names each.
enum class RepairStep : int32_t {
    stopService = 49,
    deleteService = 50,
    deleteFolder = 51,
};

/// What a clean-up asks of the run that it is part of.
struct RepairRun {
    std::wstring providerKey;  ///< the running bundle's own key among the installed programs
    /// A step that can fail begins.
    std::function<void(RepairStep step)> begin;
    /// A repaired client gets no new desktop shortcut.
    std::function<void()> omitDesktopShortcut;
    /// The folder that the client was in and shall be installed to again.
    std::function<void(const std::wstring& folder)> keepInstallFolder;
};

/// Tells the repair's begin with the versions of the client's programs, then takes down its processes, its service, its
/// folder, its protocols and all records of it. False if the service or the folder stays: then nothing behind that step
/// was touched. A folder that cannot be the client's own (isOwnFolder) counts as one that stays. Needs raised rights;
/// blocks the thread, for a locked file for 5 seconds. Steps that cannot fail the repair are only logged.
bool cleanUpForRepair(const RepairRun& run);

/// The version of a program's file as "12.37.0.5294"; empty, and not logged, without one.
std::string getFileVersion(const std::wstring& path);

}  // namespace pdx
