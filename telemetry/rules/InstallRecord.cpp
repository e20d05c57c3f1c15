#include "telemetry/rules/InstallRecord.h"

namespace pdx {

const char* driveTypeOf(std::string_view folder, std::string_view systemDrive) {
    return folder.starts_with(systemDrive) ? "system" : "data";
}

std::string installRootOf(std::string_view folder, const std::vector<LogicalDiskId>& disks) {
    for (const LogicalDiskId& disk : disks)
        if (folder.starts_with(disk.deviceId)) return disk.deviceId;
    return {};
}

}  // namespace pdx
