// Gathers the record that is sent when an install begins.
#pragma once

#include <string>

#include "platform/Wmi.h"
#include "telemetry/rules/InstallRecord.h"

namespace pdx {

/// The run's facts of the install.
struct InstallFacts {
    std::string time;  ///< now, in the Brisk service's format
    bool repair = false;
    std::wstring folder;  ///< both folders with their variables resolved
    std::wstring defaultFolder;
};

/// The record. A fact that is unavailable leaves its field empty and is logged at INFO. Waits for WMI on the calling
/// thread.
InstallTelemetry installTelemetry(const InstallFacts& facts, const ConnectWmi& connect = connectWmi);

}  // namespace pdx
