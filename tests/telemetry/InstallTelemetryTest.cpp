#include "telemetry/InstallTelemetry.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/platform/CapturedLog.h"
#include "tests/platform/ScriptedWmi.h"

namespace pdx {
namespace {

constexpr const wchar_t* drivesQuery = L"SELECT DeviceId, volumeName FROM Win32_LogicalDisk";

/// A machine with three drives on two disks.
struct Machine {
    ScriptedAnswers general = {
        {L"SELECT * FROM Win32_OperatingSystem", {{{L"SystemDrive", wmiText(L"C:")}}}},
        {drivesQuery,
         {{{L"DeviceId", wmiText(L"C:")}}, {{L"DeviceId", wmiText(L"D:")}}, {{L"DeviceId", wmiText(L"E:")}}}},
        partitions(L"C:", {L"Disk #0, Partition #1", L"Disk #0, Partition #2"}),
        partitions(L"D:", {L"Disk #1, Partition #0"}),
        partitions(L"E:", {L"Disk #0, Partition #3", L"no name", L"Disk #1, Partition #1"}),
    };
    ScriptedAnswers storage = {disk(L"0", 4), disk(L"1", 3)};
    WmiConnection last = answering();

    static ScriptedAnswers::value_type partitions(const std::wstring& drive, std::vector<std::wstring> names) {
        std::vector<ScriptedRow> rows;
        for (const std::wstring& name : names) rows.push_back({{L"Name", wmiText(name)}});
        return {L"Associators of {Win32_LogicalDisk.DeviceID='" + drive + L"'} WHERE ResultClass=Win32_DiskPartition",
                rows};
    }
    static ScriptedAnswers::value_type disk(const std::wstring& number, int32_t media) {
        return {L"SELECT * FROM MSFT_PhysicalDisk WHERE DeviceId = '" + number + L"'",
                {{{L"MediaType", wmiNumber(media)}}}};
    }
};

TEST(InstallTelemetry, HoldsDriveAndMediaThatTheSystemKnows) {
    using Change = std::function<void(Machine&)>;
    const Change none = [](Machine&) {};
    const Change noWmi = [](Machine& machine) { machine.last = {}; };
    const Change noMedia = [](Machine& machine) { machine.storage.clear(); };
    const Change noDrives = [](Machine& machine) { machine.general.erase(drivesQuery); };
    const Change noParts = [](Machine& machine) {
        std::erase_if(machine.general, [](const auto& answer) { return answer.first.starts_with(L"Associators"); });
    };
    const struct {
        const char* name;
        const wchar_t* folder;
        Change change;
        const char *driveType, *diskMedia, *log;  ///< the record's messages, each after a bar
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
        Machine machine;
        row.change(machine);
        const CapturedLog log;
        const InstallTelemetry record =
            installTelemetry({"now", false, row.folder, L"C:\\Palisade"},
                             scriptedWmi({{L"ROOT\\CIMV2", answering(machine.general)},
                                          {L"Root\\Microsoft\\Windows\\Storage", answering(machine.storage)},
                                          {L"Root\\wmi", machine.last}}));
        SCOPED_TRACE(row.name);
        EXPECT_EQ(record.driveType, row.driveType);
        EXPECT_EQ(record.diskMedia, row.diskMedia);
        std::string messages;
        for (const LogEntry& entry : log.take())
            if (entry.function == "installTelemetry" || entry.message == "Invalid DiskPartition format")
                messages += "|" + entry.message;
        EXPECT_EQ(messages, row.log);
    }
}

}  // namespace
}  // namespace pdx
