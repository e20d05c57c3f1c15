#include "platform/SystemInfoProvider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/CapturedLog.h"
#include "tests/platform/ScriptedWmi.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const wchar_t* cimv2 = L"ROOT\\CIMV2";
constexpr const wchar_t* storage = L"Root\\Microsoft\\Windows\\Storage";
constexpr const wchar_t* wmi = L"Root\\wmi";

TEST(SystemInfoProvider, ConnectsUntilTheFirstGap) {
    using Spaces = std::map<std::wstring, WmiConnection>;
    using enum WmiConnection::Step;
    const WmiConnection good = answering();
    const WmiConnection lacking{nullptr, createLocator, E_FAIL}, refused{nullptr, connect, E_ACCESSDENIED},
        unproxied{nullptr, setProxy, E_INVALIDARG};
    // What is logged; null where all goes well.
    const std::pair<Spaces, const char*> rows[] = {
        {{{cimv2, good}, {storage, good}, {wmi, good}}, nullptr},
        {{{cimv2, lacking}, {storage, good}, {wmi, good}},
         "Failed to create WbemLocator in namespace: ROOT\\CIMV2; hr=80004005"},
        {{{cimv2, good}},  // so that the third is not asked for
         "Failed to connect to server in namespace: Root\\Microsoft\\Windows\\Storage; hr=8004100e"},
        {{{cimv2, good}, {storage, good}, {wmi, refused}},
         "Failed to connect to server in namespace: Root\\wmi; hr=80070005"},
        {{{cimv2, unproxied}, {storage, good}, {wmi, good}},
         "Failed to set proxy to server in namespace: ROOT\\CIMV2; hr=80070057"},
    };
    for (const auto& [namespaces, message] : rows) {
        const CapturedLog log;
        SystemInfoProvider provider(scriptedWmi(namespaces));
        EXPECT_EQ(provider.initializeCom(), message == nullptr);
        std::vector<LogEntry> wanted;
        if (message) wanted.push_back({logInfo, "`anonymous-namespace'::setUpWmi", message});
        EXPECT_EQ(log.take(), wanted);
    }
}

TEST(SystemInfoProvider, ReadsAndLogsWhatTheServiceAnswers) {
    const ScriptedAnswers general = {
        {L"SELECT DeviceId, volumeName FROM Win32_LogicalDisk",
         {{{L"DeviceID", wmiText(L"C:")}, {L"VolumeName", wmiText(L"Größe")}},
          {{L"DeviceID", wmiText(L"D:")}, {L"VolumeName", wmiNull()}}}},
        {L"SELECT * FROM Win32_OperatingSystem",
         {{{L"SystemDrive", wmiText(L"C:")}}, {{L"SystemDrive", wmiText(L"E:")}}}},
        {L"Associators of {Win32_LogicalDisk.DeviceID='C:'} WHERE ResultClass=Win32_DiskPartition",
         {{{L"Name", wmiText(L"Disk #0, Partition #1")}}, {{L"Name", wmiNumber(3)}}}}};
    const ScriptedAnswers disks = {{L"SELECT * FROM MSFT_PhysicalDisk WHERE DeviceId = '0'",
                                    {{{L"FriendlyName", wmiText(L"Fast disk")},
                                      {L"UniqueId", wmiText(L"u-1")},
                                      {L"DeviceId", wmiText(L"0")},
                                      {L"SpindleSpeed", wmiNumber(0)},
                                      {L"MediaType", wmiNumber(4)}}}}};
    const CapturedLog log;
    SystemInfoProvider provider(
        scriptedWmi({{cimv2, answering(general)}, {storage, answering(disks)}, {wmi, answering()}}));
    ASSERT_TRUE(provider.initializeCom());

    const auto drives = provider.getLogicalDiskIds();
    ASSERT_EQ(drives.size(), 2u);
    EXPECT_EQ(drives[0].deviceId, "C:");
    EXPECT_EQ(drives[0].volumeName, "Größe");
    EXPECT_EQ(drives[1].volumeName, "");
    EXPECT_EQ(provider.getOperatingSystemInfo(), "C:");
    EXPECT_THAT(provider.getDiskPartitionFromLogicalDrive("C:"), ElementsAre("Disk #0, Partition #1", ""));
    const PhysicalDiskInfo disk = provider.getPhysicalDiskInfo("0");
    EXPECT_EQ(disk.friendlyName, "Fast disk");
    EXPECT_EQ(disk.mediaType, "SSD");
    EXPECT_EQ(disk.uniqueId, L"u-1");
    EXPECT_EQ(disk.deviceId, "0");
    EXPECT_EQ(provider.getDiskNumberFromDiskPartition("Disk #0, Partition #1"), "0");

    const auto line = [](const char* method, const char* message) {
        return LogEntry{logInfo, std::string("SystemInfoProvider::") + method, message};
    };
    EXPECT_THAT(log.take(),
                ElementsAre(line("getLogicalDiskIds", "Logical disk deviceId = C:, volumeName = Größe"),
                            line("getLogicalDiskIds", "Logical disk deviceId = D:, volumeName = "),
                            line("getOperatingSystemInfo",
                                 "Letter of the disk drive on which the operating system resides: C:"),
                            line("getDiskPartitionFromLogicalDrive", "DiskPartition name: Disk #0, Partition #1"),
                            line("getDiskPartitionFromLogicalDrive", "DiskPartition name: "),
                            line("getPhysicalDiskInfo", "PhysicalDiskInfo friendlyName = Fast disk, uniqueId = u-1"),
                            line("getPhysicalDiskInfo", "PhysicalDiskInfo mediaType = SSD, deviceId = 0")));

    EXPECT_THAT(provider.getDiskPartitionFromLogicalDrive(""), IsEmpty());
    EXPECT_EQ(provider.getPhysicalDiskInfo("").mediaType, "");
    EXPECT_EQ(provider.getDiskNumberFromDiskPartition("Partition #0"), "");
    EXPECT_EQ(provider.getPhysicalDiskInfo("7").mediaType, "");
    EXPECT_THAT(log.take(),
                ElementsAre(line("getDiskPartitionFromLogicalDrive", "Empty driveLetter"),
                            line("getPhysicalDiskInfo", "Empty deviceId"),
                            line("getDiskNumberFromDiskPartition", "Invalid DiskPartition format"),
                            LogEntry{logInfo, "`anonymous-namespace'::execWbemServicesQuery",
                                     "Query failed: [SELECT * FROM MSFT_PhysicalDisk WHERE DeviceId = '7']; "
                                     "hr=80041017"}));
}

}  // namespace
}  // namespace pdx
