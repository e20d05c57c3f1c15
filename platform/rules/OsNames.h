// The names of operating systems by their versions, and of processor architectures by their numbers.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace pdx {

/// The version of a system.
struct OsInfo {
    uint32_t major = 0;
    uint32_t minor = 0;
    uint32_t build = 0;
    uint8_t productType = 0;  ///< 1 is a workstation, everything else a server
};

enum class osInfoValue : int32_t {
    unknown = 0,
    old = 1,
    windows7 = 2,
    windows8 = 3,
    windows81 = 4,
    windows10 = 5,
    windows11 = 6,
    server2022 = 7,
    server2019 = 8,
    server2016 = 9,
    server2012R2 = 10,
    server2012 = 11,
    server2008R2 = 12,
    server2008 = 13,
    serverOld = 14,
    wineUnknown = 15,
    wineOld = 16,
    wine7 = 17,
    wine7Development = 18,
    wine8 = 19,
};

/// The text of a value for telemetry; nothing for an unknown number.
std::optional<std::string_view> osName(osInfoValue value);

/// The name of a Windows version and product type.
osInfoValue windowsName(const OsInfo& system);
/// The name of a Wine version.
osInfoValue wineName(const OsInfo& wine);
/// The three numbers at the start of Wine's version text, as "7.1.3"; all zero if the text is null or has fewer, as
/// "8.0".
OsInfo parseWineVersion(const char* text);

/// The name of an architecture by the system's number; nothing for an unknown number.
std::optional<std::string_view> architectureName(uint32_t number);

}  // namespace pdx
