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

TEST(SystemInfoProvider, StopsConnectingAtTheFirstFailure) {
    using Spaces = std::map<std::wstring, WmiConnection>;
    using enum WmiConnection::Step;
    const WmiConnection good = answering(), lacking{nullptr, createLocator, E_FAIL},
                        refused{nullptr, connect, E_ACCESSDENIED}, unproxied{nullptr, setProxy, E_INVALIDARG};
    // The end of what is logged; null where all goes well.
    const std::pair<Spaces, const char*> rows[] = {
        {{{cimv2, good}, {storage, good}, {wmi, good}}, nullptr},
        {{{cimv2, lacking}, {storage, good}, {wmi, good}}, "create WbemLocator in namespace: ROOT\\CIMV2; hr=80004005"},
        {{{cimv2, good}},  // so that the third is not asked for
         "connect to server in namespace: Root\\Microsoft\\Windows\\Storage; hr=8004100e"},
        {{{cimv2, good}, {storage, good}, {wmi, refused}}, "connect to server in namespace: Root\\wmi; hr=80070005"},
        {{{cimv2, unproxied}, {storage, good}, {wmi, good}},
         "set proxy to server in namespace: ROOT\\CIMV2; hr=80070057"},
    };
    for (const auto& [namespaces, message] : rows) {
        const CapturedLog log;
        SystemInfoProvider provider(scriptedWmi(namespaces));
        EXPECT_EQ(provider.initializeCom(), message == nullptr);
        std::vector<std::string> wanted;
        if (message) wanted.push_back(std::string("2 `anonymous-namespace'::setUpWmi Failed to ") + message);
        EXPECT_EQ(log.takeTexts(), wanted);
    }
}

TEST(SystemInfoProvider, ReadsAndLogsWhatTheServiceReturns) {
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
                                      {L"MediaType", wmiNumber(4)}}}}};
    const CapturedLog log;
    SystemInfoProvider provider(
        scriptedWmi({{cimv2, answering(general)}, {storage, answering(disks)}, {wmi, answering()}}));
    ASSERT_TRUE(provider.initializeCom());

    // What it gives is also what it logs.
    EXPECT_EQ(provider.getLogicalDiskIds().size(), 2u);
    EXPECT_EQ(provider.getOperatingSystemInfo(), "C:");
    EXPECT_THAT(provider.getDiskPartitionFromLogicalDrive("C:"), ElementsAre("Disk #0, Partition #1", ""));
    EXPECT_EQ(provider.getPhysicalDiskInfo("0").mediaType, "SSD");
    EXPECT_EQ(provider.getDiskNumberFromDiskPartition("Disk #0, Partition #1"), "0");

    EXPECT_THAT(
        log.takeTexts(),
        ElementsAre(
            "2 SystemInfoProvider::getLogicalDiskIds Logical disk deviceId = C:, volumeName = Größe",
            "2 SystemInfoProvider::getLogicalDiskIds Logical disk deviceId = D:, volumeName = ",
            "2 SystemInfoProvider::getOperatingSystemInfo Letter of the disk drive on which the operating "
            "system resides: C:",
            "2 SystemInfoProvider::getDiskPartitionFromLogicalDrive DiskPartition name: Disk #0, Partition #1",
            "2 SystemInfoProvider::getDiskPartitionFromLogicalDrive DiskPartition name: ",
            "2 SystemInfoProvider::getPhysicalDiskInfo PhysicalDiskInfo friendlyName = Fast disk, uniqueId = u-1",
            "2 SystemInfoProvider::getPhysicalDiskInfo PhysicalDiskInfo mediaType = SSD, deviceId = 0"));

    EXPECT_THAT(provider.getDiskPartitionFromLogicalDrive(""), IsEmpty());
    EXPECT_EQ(provider.getPhysicalDiskInfo("").mediaType, "");
    EXPECT_EQ(provider.getDiskNumberFromDiskPartition("Partition #0"), "");
    EXPECT_EQ(provider.getPhysicalDiskInfo("7").mediaType, "");
    EXPECT_THAT(log.takeTexts(),
                ElementsAre("2 SystemInfoProvider::getDiskPartitionFromLogicalDrive Empty driveLetter",
                            "2 SystemInfoProvider::getPhysicalDiskInfo Empty deviceId",
                            "2 SystemInfoProvider::getDiskNumberFromDiskPartition Invalid DiskPartition format",
                            "2 `anonymous-namespace'::execWbemServicesQuery Query failed: [SELECT * FROM "
                            "MSFT_PhysicalDisk WHERE DeviceId = '7']; hr=80041017"));
}

}  // namespace
}  // namespace pdx
