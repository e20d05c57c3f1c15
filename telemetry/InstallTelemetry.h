// Gathers what is reported of an install when it begins.
#pragma once

#include <string>

#include "platform/SystemInfoProvider.h"
#include "telemetry/rules/InstallRecord.h"

namespace pdx {

/// What the run knows of the install.
struct InstallFacts {
    std::string time;  ///< now, in the form of the events' own time
    bool repair = false;
    std::wstring folder;  ///< both folders resolved
    std::wstring defaultFolder;
};

/// The record; a fact that the system does not give leaves its field empty and is logged at INFO. Waits for WMI on the
/// calling thread.
InstallTelemetry installTelemetry(const InstallFacts& facts);
/// The same with another source.
InstallTelemetry installTelemetry(const InstallFacts& facts, SystemInfo& system);

}  // namespace pdx
