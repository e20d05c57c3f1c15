// The programs of the client and of the older client.
#pragma once

#include <string_view>

namespace pdx {

inline constexpr const wchar_t* desktopProgram = L"PalisadeDesktop.exe";
inline constexpr const wchar_t* launcherProgram = L"PalisadeLauncher.exe";
inline constexpr const wchar_t* launchHelperProgram = L"PalisadeLaunchHelper.exe";
inline constexpr const wchar_t* serviceProgram = L"PalisadeBackgroundService.exe";
inline constexpr const wchar_t* connectProgram = L"PalisadeConnect_microsoft.exe";

/// The name of the client's service.
inline constexpr const wchar_t* clientService = L"PalisadeBackgroundService";

/// The programs that may run from the client's folder. The service's program is missing on purpose: stopService ends
/// it.
inline constexpr std::wstring_view clientProcesses[] = {
    desktopProgram,
    launcherProgram,
    launchHelperProgram,
    L"PalisadeErrorReporter.exe",
    L"PalisadeCrashReporter.exe",
    connectProgram,
    L"PalisadeDestager.exe",
    L"GateLink.exe",
    L"PalisadeLocalHostSvc.exe",
    L"PalisadeGlue.exe",
    L"PalisadeSteamProxy.exe",
    L"PalisadeUninstall.exe",
};

inline constexpr const wchar_t* bastionProgram = L"Bastion.exe";
inline constexpr const wchar_t* bastionUninstaller = L"BastionUninstall.exe";

}  // namespace pdx
