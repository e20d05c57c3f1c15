// Disks and the operating system, from WMI.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/ComApartment.h"
#include "platform/rules/DiskFacts.h"
#include "platform/Wmi.h"

namespace pdx {

/// The storage of this machine by WMI; used on the thread that made it. On failure every result is empty. Each query
/// waits for the service without limit. Logs results and failures at INFO.
class SystemInfoProvider {
  public:
    explicit SystemInfoProvider(ConnectWmi connectTo = connectWmi) : connect(std::move(connectTo)) {}
    /// Whether all connections could be made; the other operations use those that could.
    bool initializeCom();
    /// The drives: "C:" and so on.
    std::vector<LogicalDiskId> getLogicalDiskIds();
    /// The system drive, as "C:".
    std::string getOperatingSystemInfo();
    /// The names of the partitions ("Disk #0, Partition #1") under a drive ("C:").
    std::vector<std::string> getDiskPartitionFromLogicalDrive(const std::string& letter);
    /// The disk's number in a partition's name; logs "Invalid DiskPartition format" if it has none.
    static std::string getDiskNumberFromDiskPartition(const std::string& partition);
    /// The disk with a number, such as "0".
    PhysicalDiskInfo getPhysicalDiskInfo(const std::string& deviceId);

  private:
    // Declared first, so that it is destroyed last.
    ComApartment apartment;
    ConnectWmi connect;
    std::shared_ptr<WmiServices> cimv2;
    std::shared_ptr<WmiServices> storage;
    /// Never queried, but without this connection the system counts as one without WMI.
    std::shared_ptr<WmiServices> wmi;
};

}  // namespace pdx
