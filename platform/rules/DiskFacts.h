// The system's facts of drives and disks, and the meaning of their names and numbers.
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
    std::string mediaType;  ///< from mediaTypeName; empty if the disk is unknown
    std::wstring uniqueId;
    std::string deviceId;  ///< the disk's number
};

/// The number in the name of a partition: "1" of "Disk #1, Partition #0". Nothing if the name has another form.
std::optional<std::string> diskNumberOf(std::string_view partition);

/// The name of a MediaType value of MSFT_PhysicalDisk.
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
