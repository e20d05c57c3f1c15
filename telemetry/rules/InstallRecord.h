// The record that is sent when an install begins: the kind of storage that the client is installed to.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/rules/DiskFacts.h"

namespace pdx {

struct InstallTelemetry {
    std::string installTime;    ///< in the Brisk service's format
    std::string installStatus;  ///< "new" or "repair"
    std::string path;           ///< "default" or "custom"
    std::string diskMedia;      ///< the media under the install drive, such as "SSD" or "SSD,HDD"; empty if unknown
    std::string driveType;      ///< "system" or "data"; empty if unknown
};

struct InstallTelemetryField {
    const char* attribute;  ///< the event's
    const char* logFormat;
    std::string InstallTelemetry::*value;
};

/// In the order of the log lines.
inline constexpr std::array<InstallTelemetryField, 5> installTelemetryFields = {{
    {"dskm", "instTelemetry.diskMedia = %s", &InstallTelemetry::diskMedia},
    {"dtyp", "instTelemetry.driveType(system/data) = %s", &InstallTelemetry::driveType},
    {"inst", "instTelemetry.installStatus = %s", &InstallTelemetry::installStatus},
    {"intm", "instTelemetry.installTime = %s", &InstallTelemetry::installTime},
    {"path", "instTelemetry.path (custom/default) = %s", &InstallTelemetry::path},
}};

constexpr const char* installKindOf(bool repair) { return repair ? "repair" : "new"; }
/// Both folders with their variables resolved.
constexpr const char* pathKindOf(std::wstring_view folder, std::wstring_view defaultFolder) {
    return folder == defaultFolder ? "default" : "custom";
}

/// "system" if the folder is on the system's drive ("C:") or that is unknown, else "data". Case-sensitive.
const char* driveTypeOf(std::string_view folder, std::string_view systemDrive);

/// The first drive that the folder begins with, case-sensitive; empty if there is none.
std::string installRootOf(std::string_view folder, const std::vector<LogicalDiskId>& disks);

}  // namespace pdx
