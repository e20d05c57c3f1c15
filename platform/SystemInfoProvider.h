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

/// The storage of this machine. On failure every result is empty.
class SystemInfo {
  public:
    virtual ~SystemInfo() = default;
    /// Whether all connections could be made; the other operations use those that could.
    virtual bool initializeCom() = 0;
    /// The drives: "C:" and so on.
    virtual std::vector<LogicalDiskId> getLogicalDiskIds() = 0;
    /// The system drive, as "C:".
    virtual std::string getOperatingSystemInfo() = 0;
    /// The names of the partitions ("Disk #0, Partition #1") under a drive ("C:").
    virtual std::vector<std::string> getDiskPartitionFromLogicalDrive(const std::string& letter) = 0;
    /// The disk's number in a partition's name; logs "Invalid DiskPartition format" if it has none.
    std::string getDiskNumberFromDiskPartition(const std::string& partition) const;
    /// The disk with a number, such as "0".
    virtual PhysicalDiskInfo getPhysicalDiskInfo(const std::string& deviceId) = 0;
};

/// The implementation by WMI; used on the thread that made it. Each query waits for the service without limit. Logs
/// results and failures at INFO.
class SystemInfoProvider : public SystemInfo {
  public:
    explicit SystemInfoProvider(ConnectWmi connectTo = connectWmi) : connect(std::move(connectTo)) {}
    bool initializeCom() override;
    std::vector<LogicalDiskId> getLogicalDiskIds() override;
    std::string getOperatingSystemInfo() override;
    std::vector<std::string> getDiskPartitionFromLogicalDrive(const std::string& letter) override;
    PhysicalDiskInfo getPhysicalDiskInfo(const std::string& deviceId) override;

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
