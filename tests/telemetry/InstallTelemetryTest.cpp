#include "telemetry/InstallTelemetry.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

/// A machine with the drives of a test; logs nothing of its own.
struct FakeSystem : SystemInfo {
    bool works = true;
    std::vector<LogicalDiskId> disks = {{"C:", "System"}, {"D:", "Games"}, {"E:", "Both"}};
    std::map<std::string, std::vector<std::string>> partitions = {
        {"C:", {"Disk #0, Partition #1", "Disk #0, Partition #2"}},
        {"D:", {"Disk #1, Partition #0"}},
        {"E:", {"Disk #0, Partition #3", "no name", "Disk #1, Partition #1"}}};
    std::map<std::string, std::string> media = {{"0", "SSD"}, {"1", "HDD"}};

    bool initializeCom() override { return works; }
    std::vector<LogicalDiskId> getLogicalDiskIds() override { return disks; }
    std::string getOperatingSystemInfo() override { return "C:"; }
    std::vector<std::string> getDiskPartitionFromLogicalDrive(const std::string& letter) override {
        return partitions[letter];
    }
    PhysicalDiskInfo getPhysicalDiskInfo(const std::string& deviceId) override {
        return {"", media[deviceId], L"", deviceId};
    }
};

TEST(InstallTelemetry, HoldsDriveAndMediaThatTheSystemKnows) {
    using Change = std::function<void(FakeSystem&)>;
    const Change none = [](FakeSystem&) {};
    const Change noWmi = [](FakeSystem& system) { system.works = false; };
    const Change noMedia = [](FakeSystem& system) { system.media.clear(); };
    const Change noDrives = [](FakeSystem& system) { system.disks.clear(); };
    const Change noParts = [](FakeSystem& system) { system.partitions.clear(); };
    const struct {
        const char* name;
        const wchar_t* folder;
        Change change;
        const char *driveType, *diskMedia, *log;  ///< the messages, each after a bar
    } rows[] = {
        {"two partitions of one disk", L"C:\\Palisade", none, "system", "SSD,SSD", "|Install Root: C:"},
        {"another drive", L"D:\\Games", none, "data", "HDD", "|Install Root: D:"},
        {"two disks and one without a number", L"E:\\Games", none, "data", "SSD,HDD",
         "|Install Root: E:|Invalid DiskPartition format"},
        {"a disk that is not known", L"D:\\Games", noMedia, "data", "", "|Install Root: D:"},
        {"no WMI", L"C:\\Palisade", noWmi, "", "", "|Error initializing WMI"},
        {"no drives", L"C:\\Palisade", noDrives, "system", "", "|Could not get logical disks on system."},
        {"no partitions", L"C:\\Palisade", noParts, "system", "",
         "|Install Root: C:|Could not get disk partitions on system."},
        {"another case", L"c:\\games", none, "data", "", "|Could not get disk partitions on system."},
    };
    for (const auto& row : rows) {
        FakeSystem system;
        row.change(system);
        const CapturedLog log;
        const InstallTelemetry record = installTelemetry({"now", false, row.folder, L"C:\\Palisade"}, system);
        SCOPED_TRACE(row.name);
        EXPECT_EQ(record.driveType, row.driveType);
        EXPECT_EQ(record.diskMedia, row.diskMedia);
        std::string messages;
        for (const LogEntry& entry : log.take()) messages += "|" + entry.message;
        EXPECT_EQ(messages, row.log);
    }
}

}  // namespace
}  // namespace pdx
