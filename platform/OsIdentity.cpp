#include "platform/OsIdentity.h"

#include <windows.h>

#include <vector>

#include "platform/Log.h"

namespace pdx {
namespace {

constexpr uint8_t workstation = VER_NT_WORKSTATION;
constexpr uint8_t server = VER_NT_SERVER;

template <typename Function>
Function systemFunction(const char* name) {
    const HMODULE library = GetModuleHandleW(L"ntdll.dll");
    return library ? reinterpret_cast<Function>(GetProcAddress(library, name)) : nullptr;
}

bool isWorkstation() {
    OSVERSIONINFOEXW wanted{};
    wanted.dwOSVersionInfoSize = sizeof wanted;
    wanted.wProductType = workstation;
    return VerifyVersionInfoW(&wanted, VER_PRODUCT_TYPE, VerSetConditionMask(0, VER_PRODUCT_TYPE, VER_EQUAL));
}

osInfoValue osInfo() {
    if (const auto wineVersion = systemFunction<const char*(CDECL*)()>("wine_get_version"))
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
    const auto getVersion = systemFunction<GetVersion>("RtlGetVersion");
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
    constexpr const wchar_t* library = L"kernel32.dll";
    constexpr DWORD signature = 0xFEEF04BD;
    DWORD unused = 0;
    std::vector<std::byte> version(GetFileVersionInfoSizeW(library, &unused));
    if (version.empty() || !GetFileVersionInfoW(library, 0, static_cast<DWORD>(version.size()), version.data()))
        return std::nullopt;
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT size = 0;
    static_assert(sizeof *fixed == 52);
    if (!VerQueryValueW(version.data(), L"\\", reinterpret_cast<void**>(&fixed), &size) || size != sizeof *fixed ||
        fixed->dwSignature != signature)
        return std::nullopt;
    return OsInfo{HIWORD(fixed->dwProductVersionMS), LOWORD(fixed->dwProductVersionMS),
                  HIWORD(fixed->dwProductVersionLS), isWorkstation() ? workstation : server};
}

}  // namespace pdx
