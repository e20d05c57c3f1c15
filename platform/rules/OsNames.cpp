#include "platform/rules/OsNames.h"

#include <cstdio>
#include <span>
#include <tuple>

namespace pdx {
namespace {

struct Name {
    osInfoValue value;
    std::string_view text;
};

constexpr Name names[] = {
    {osInfoValue::unknown, "Win Unknown"},
    {osInfoValue::old, "Win Old"},
    {osInfoValue::windows7, "Win 7"},
    {osInfoValue::windows8, "Win 8"},
    {osInfoValue::windows81, "Win 8.1"},
    {osInfoValue::windows10, "Win 10"},
    {osInfoValue::windows11, "Win 11"},
    {osInfoValue::server2022, "Win Server 2022"},
    {osInfoValue::server2019, "Win Server 2019"},
    {osInfoValue::server2016, "Win Server 2016"},
    {osInfoValue::server2012R2, "Win Server 2012 R2"},
    {osInfoValue::server2012, "Win Server 2012"},
    {osInfoValue::server2008R2, "Win Server 2008 R2"},
    {osInfoValue::server2008, "Win Server 2008"},
    {osInfoValue::serverOld, "Win Server Old"},
    {osInfoValue::wineUnknown, "Wine Unknown"},
    {osInfoValue::wineOld, "Wine Old"},
    {osInfoValue::wine7, "Wine 7"},
    {osInfoValue::wine7Development, "Wine 7 Development"},
    {osInfoValue::wine8, "Wine 8"},
};

/// The lowest version with a name.
struct Threshold {
    osInfoValue value;
    uint32_t major;
    uint32_t minor;
    uint32_t build;
};

constexpr Threshold workstations[] = {
    {osInfoValue::windows11, 10, 0, 22000}, {osInfoValue::windows10, 10, 0, 0}, {osInfoValue::windows81, 6, 3, 0},
    {osInfoValue::windows8, 6, 2, 0},       {osInfoValue::windows7, 6, 1, 0},
};

constexpr Threshold servers[] = {
    {osInfoValue::server2022, 10, 0, 20348}, {osInfoValue::server2019, 10, 0, 17763},
    {osInfoValue::server2016, 10, 0, 0},     {osInfoValue::server2012R2, 6, 3, 0},
    {osInfoValue::server2012, 6, 2, 0},      {osInfoValue::server2008R2, 6, 1, 0},
    {osInfoValue::server2008, 6, 0, 0},
};

constexpr Threshold wines[] = {
    {osInfoValue::wine8, 8, 0, 0},
    {osInfoValue::wine7Development, 7, 1, 0},
    {osInfoValue::wine7, 7, 0, 0},
    {osInfoValue::wineOld, 0, 9, 0},
};

/// The first row whose version is not above the system's.
osInfoValue choose(std::span<const Threshold> rows, const OsInfo& system, osInfoValue below) {
    for (const Threshold& row : rows)
        if (std::tie(system.major, system.minor, system.build) >= std::tie(row.major, row.minor, row.build))
            return row.value;
    return below;
}

/// In the order of the numbers 0 to 14.
constexpr std::string_view architectures[] = {
    "x86",          "MIPS",    "Alpha", "PowerPC",        "SHX",          "ARM", "Itanium", "Alpha64", "MSIL", "AMD64",
    "x86 on AMD64", "Neutral", "ARM64", "ARM32 on AMD64", "x86 on ARM64",
};

}  // namespace

std::optional<std::string_view> osName(osInfoValue value) {
    for (const Name& name : names)
        if (name.value == value) return name.text;
    return std::nullopt;
}

osInfoValue windowsName(const OsInfo& system) {
    constexpr uint8_t workstation = 1;
    return system.productType == workstation ? choose(workstations, system, osInfoValue::old)
                                             : choose(servers, system, osInfoValue::serverOld);
}

osInfoValue wineName(const OsInfo& wine) { return choose(wines, wine, osInfoValue::wineUnknown); }

OsInfo parseWineVersion(const char* text) {
    OsInfo version;
    if (!text || std::sscanf(text, "%u.%u.%u", &version.major, &version.minor, &version.build) != 3) return {};
    return version;
}

std::optional<std::string_view> architectureName(uint32_t number) {
    if (number >= std::size(architectures)) return std::nullopt;
    return architectures[number];
}

}  // namespace pdx
