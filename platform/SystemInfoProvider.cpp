#include "platform/SystemInfoProvider.h"

#include "platform/Log.h"
#include "platform/Text.h"

namespace pdx {
namespace {

/// Names for the log, by WmiConnection::Step.
constexpr const char* wmiSteps[] = {"create WbemLocator", "connect to server", "set proxy to server"};

std::shared_ptr<WmiServices> setUpWmi(const ConnectWmi& connect, const std::wstring& nameSpace) {
    WmiConnection connection = connect(nameSpace);
    if (connection.services) return std::move(connection.services);
    PDX_LOG(logInfo, "`anonymous-namespace'::setUpWmi", "Failed to %s in namespace: %ls; hr=%08x",
            wmiSteps[static_cast<size_t>(connection.lastStep)], nameSpace, connection.result);
    return {};
}

/// Calls nothing without a connection.
void execWbemServicesQuery(const std::shared_ptr<WmiServices>& services, const std::wstring& query,
                           const std::function<bool(const WmiRow& row)>& function) {
    if (!services) return;
    const HRESULT result = services->forEachRow(query, function);
    if (FAILED(result))
        PDX_LOG(logInfo, "`anonymous-namespace'::execWbemServicesQuery", "Query failed: [%ls]; hr=%08x", query, result);
}

/// Empty if the property is not a text.
std::string getWmiString(const WmiRow& row, const wchar_t* name) { return toUtf8(row(name).text); }

}  // namespace

std::string SystemInfoProvider::getDiskNumberFromDiskPartition(const std::string& partition) {
    const auto number = diskNumberOf(partition);
    if (!number) PDX_LOG(logInfo, "SystemInfoProvider::getDiskNumberFromDiskPartition", "Invalid DiskPartition format");
    return number.value_or(std::string());
}

bool SystemInfoProvider::initializeCom() {
    apartment.start();
    if (!apartment.usable()) {
        PDX_LOG(logInfo, "SystemInfoProvider::initializeCom", "Failed to initialize com connection");
        return false;
    }
    cimv2 = setUpWmi(connect, generalNamespace);
    if (cimv2) storage = setUpWmi(connect, L"Root\\Microsoft\\Windows\\Storage");
    if (storage) wmi = setUpWmi(connect, L"Root\\wmi");
    return static_cast<bool>(wmi);
}

std::vector<LogicalDiskId> SystemInfoProvider::getLogicalDiskIds() {
    std::vector<LogicalDiskId> disks;
    execWbemServicesQuery(cimv2, L"SELECT DeviceId, volumeName FROM Win32_LogicalDisk", [&](const WmiRow& row) {
        const LogicalDiskId& disk =
            disks.emplace_back(LogicalDiskId{getWmiString(row, L"deviceId"), getWmiString(row, L"volumeName")});
        PDX_LOG(logInfo, "SystemInfoProvider::getLogicalDiskIds", "Logical disk deviceId = %s, volumeName = %s",
                disk.deviceId, disk.volumeName);
        return true;
    });
    return disks;
}

std::string SystemInfoProvider::getOperatingSystemInfo() {
    std::string systemDrive;
    execWbemServicesQuery(cimv2, L"SELECT * FROM Win32_OperatingSystem", [&](const WmiRow& row) {
        systemDrive = getWmiString(row, L"systemDrive");
        PDX_LOG(logInfo, "SystemInfoProvider::getOperatingSystemInfo",
                "Letter of the disk drive on which the operating system resides: %s", systemDrive);
        return false;
    });
    return systemDrive;
}

std::vector<std::string> SystemInfoProvider::getDiskPartitionFromLogicalDrive(const std::string& letter) {
    constexpr const char* function = "SystemInfoProvider::getDiskPartitionFromLogicalDrive";
    std::vector<std::string> partitions;
    if (letter.empty()) {
        PDX_LOG(logInfo, function, "Empty driveLetter");
        return partitions;
    }
    const std::wstring query =
        L"Associators of {Win32_LogicalDisk.DeviceID='" + toWide(letter) + L"'} WHERE ResultClass=Win32_DiskPartition";
    execWbemServicesQuery(cimv2, query, [&](const WmiRow& row) {
        partitions.push_back(getWmiString(row, L"name"));
        PDX_LOG(logInfo, function, "DiskPartition name: %s", partitions.back());
        return true;
    });
    return partitions;
}

PhysicalDiskInfo SystemInfoProvider::getPhysicalDiskInfo(const std::string& deviceId) {
    constexpr const char* function = "SystemInfoProvider::getPhysicalDiskInfo";
    PhysicalDiskInfo info;
    if (deviceId.empty()) {
        PDX_LOG(logInfo, function, "Empty deviceId");
        return info;
    }
    const std::wstring query = L"SELECT * FROM MSFT_PhysicalDisk WHERE DeviceId = '" + toWide(deviceId) + L"'";
    execWbemServicesQuery(storage, query, [&](const WmiRow& row) {
        info = {getWmiString(row, L"FriendlyName"), mediaTypeName(row(L"MediaType").number), row(L"UniqueId").text,
                getWmiString(row, L"DeviceId")};
        PDX_LOG(logInfo, function, "PhysicalDiskInfo friendlyName = %s, uniqueId = %ls", info.friendlyName,
                info.uniqueId);
        PDX_LOG(logInfo, function, "PhysicalDiskInfo mediaType = %s, deviceId = %s", info.mediaType, info.deviceId);
        return true;
    });
    return info;
}

}  // namespace pdx
