// The system's facts of its drives and disks, and what its names and numbers mean.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pdx {

struct LogicalDiskId {
    std::string deviceId;  ///< "C:"
    std::string volumeName;
};

struct PhysicalDiskInfo {
    std::string friendlyName;
    std::string mediaType;  ///< what mediaTypeName gives; empty if the disk is not known
    std::wstring uniqueId;
    std::string deviceId;  ///< the disk's number
};

/// The number in the name of a partition: "1" of "Disk #1, Partition #0". Nothing if the name has another form.
std::optional<std::string> diskNumberOf(std::string_view partition);

/// The name of a MediaType of MSFT_PhysicalDisk.
constexpr const char* mediaTypeName(int32_t number) {
    struct Row {
        int32_t number;
        const char* name;
    };
    constexpr std::array<Row, 3> rows = {{
        {3, "HDD"},
        {4, "SSD"},
        {5, "SCM"},
    }};
    for (const Row& row : rows)
        if (row.number == number) return row.name;
    return "Unspecified";
}

}  // namespace pdx
