// Disks and the operating system, from the system's management service.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/ComApartment.h"
#include "platform/rules/DiskFacts.h"
#include "platform/Wmi.h"

namespace pdx {

/// What is asked about the storage of this machine. Every failure gives an empty result.
class SystemInfo {
  public:
    virtual ~SystemInfo() = default;
    /// Whether all connections could be made; what follows gives results without, as far as it can.
    virtual bool initializeCom() = 0;
    /// The drives: "C:" and so on.
    virtual std::vector<LogicalDiskId> getLogicalDiskIds() = 0;
    /// The drive of the system, as "C:".
    virtual std::string getOperatingSystemInfo() = 0;
    /// The names of the partitions ("Disk #0, Partition #1") under a drive ("C:").
    virtual std::vector<std::string> getDiskPartitionFromLogicalDrive(const std::string& letter) = 0;
    /// The disk's number in a partition's name; logs "Invalid DiskPartition format" if it has none.
    std::string getDiskNumberFromDiskPartition(const std::string& partition) const;
    /// The disk of a number, such as "0".
    virtual PhysicalDiskInfo getPhysicalDiskInfo(const std::string& deviceId) = 0;
};

/// Asks WMI; stays on the thread that made it. Each query waits for the service without limit. What was found and what
/// failed is logged at INFO.
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
    /// Nothing is asked of it; a system that cannot connect to it counts as one without WMI.
    std::shared_ptr<WmiServices> wmi;
};

}  // namespace pdx
