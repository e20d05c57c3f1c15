#include "platform/OsIdentity.h"

#include <windows.h>

#include "platform/Log.h"
#include "platform/SystemFunction.h"
#include "platform/VersionInfo.h"

namespace pdx {
namespace {

constexpr uint8_t workstation = VER_NT_WORKSTATION;
constexpr uint8_t server = VER_NT_SERVER;

bool isWorkstation() {
    OSVERSIONINFOEXW wanted{};
    wanted.dwOSVersionInfoSize = sizeof wanted;
    wanted.wProductType = workstation;
    return VerifyVersionInfoW(&wanted, VER_PRODUCT_TYPE, VerSetConditionMask(0, VER_PRODUCT_TYPE, VER_EQUAL));
}

osInfoValue osInfo() {
    if (const auto wineVersion = systemFunction<const char*(CDECL*)()>(L"ntdll.dll", "wine_get_version"))
        return wineName(parseWineVersion(wineVersion()));
    if (const auto version = kernelVersion()) return windowsName(*version);
    const OsInfo version = systemVersion();
    return version.major > 0 ? windowsName(version) : osInfoValue::unknown;
}

}  // namespace

std::string getOsVersion() {
    const osInfoValue value = osInfo();
    if (const auto name = osName(value)) return std::string(*name);
    PDX_LOG(logError, "getOsVersion", "Invalid OS info enum value [%d]", value);
    return {};
}

std::string getProcessorArchitecture() {
    SYSTEM_INFO info{};
    GetNativeSystemInfo(&info);
    if (const auto name = architectureName(info.wProcessorArchitecture)) return std::string(*name);
    PDX_LOG(logError, "getProcessorArchitecture", "Invalid processor architecture value [%d]",
            info.wProcessorArchitecture);
    return "Unknown";
}

OsInfo systemVersion() {
    using GetVersion = LONG(WINAPI*)(OSVERSIONINFOEXW*);
    const auto getVersion = systemFunction<GetVersion>(L"ntdll.dll", "RtlGetVersion");
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof version;
    static_assert(sizeof version == 284);
    if (!getVersion || getVersion(&version) != 0) return {};
    return {version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber, version.wProductType};
}

bool isSystem64Bit() {
    if constexpr (sizeof(void*) == 8) return true;
    BOOL emulated = FALSE;
    return IsWow64Process(GetCurrentProcess(), &emulated) && emulated;
}

std::optional<OsInfo> kernelVersion() {
    const auto fixed = VersionInfo(L"kernel32.dll").fixed();
    if (!fixed) return std::nullopt;
    return OsInfo{HIWORD(fixed->dwProductVersionMS), LOWORD(fixed->dwProductVersionMS),
                  HIWORD(fixed->dwProductVersionLS), isWorkstation() ? workstation : server};
}

}  // namespace pdx
