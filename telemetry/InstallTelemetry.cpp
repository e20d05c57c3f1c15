#include "telemetry/InstallTelemetry.h"

#include "platform/Log.h"
#include "platform/SystemInfoProvider.h"
#include "platform/Text.h"

namespace pdx {
namespace {

/// The media of the partitions' disks, in their order and with repetitions.
std::string mediaOf(const std::vector<std::string>& partitions, SystemInfoProvider& system) {
    std::string media;
    for (const std::string& partition : partitions) {
        const std::string number = system.getDiskNumberFromDiskPartition(partition);
        if (!number.empty()) media += system.getPhysicalDiskInfo(number).mediaType + ",";
    }
    if (!media.empty()) media.pop_back();
    return media;
}

}  // namespace

InstallTelemetry installTelemetry(const InstallFacts& facts, const ConnectWmi& connect) {
    SystemInfoProvider system(connect);
    constexpr const char* function = "installTelemetry";
    InstallTelemetry record;
    record.installTime = facts.time;
    record.installStatus = installKindOf(facts.repair);
    record.path = pathKindOf(facts.folder, facts.defaultFolder);
    if (!system.initializeCom()) {
        PDX_LOG(logInfo, function, "Error initializing WMI");
        return record;
    }
    const std::string folder = toUtf8(facts.folder);
    record.driveType = driveTypeOf(folder, system.getOperatingSystemInfo());

    const std::vector<LogicalDiskId> disks = system.getLogicalDiskIds();
    if (disks.empty()) {
        PDX_LOG(logInfo, function, "Could not get logical disks on system.");
        return record;
    }
    const std::string root = installRootOf(folder, disks);
    if (!root.empty()) PDX_LOG(logInfo, function, "Install Root: %s", root);

    const std::vector<std::string> partitions = system.getDiskPartitionFromLogicalDrive(root);
    if (partitions.empty()) {
        PDX_LOG(logInfo, function, "Could not get disk partitions on system.");
        return record;
    }
    record.diskMedia = mediaOf(partitions, system);
    return record;
}

}  // namespace pdx
