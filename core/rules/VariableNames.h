// The bundle variables that this library reads or writes, and those of them that cross a reload in the environment.
#pragma once

namespace pdx::variable {

inline constexpr const wchar_t* repair = L"PDX_REPAIR";                         // text; "0" is off
inline constexpr const wchar_t* meridianMode = L"PDX_MERIDIAN_MODE";            // text or number; "0" is off
inline constexpr const wchar_t* meridianEnable = L"PDX_MERIDIAN_ENABLE";        // number
inline constexpr const wchar_t* meridianCohort = L"PDX_MERIDIAN_COHORT";        // text
inline constexpr const wchar_t* meridianUpgrade = L"PDX_MERIDIAN_UPGRADE";      // text; "1" is on
inline constexpr const wchar_t* uninstallBastion = L"PDX_UNINSTALL_BASTION";    // number
inline constexpr const wchar_t* allowWindows7 = L"PDX_ALLOW_WINDOWS_7";         // number
inline constexpr const wchar_t* launchClient = L"PDX_LAUNCH_CLIENT";            // text
inline constexpr const wchar_t* msiStatus = L"PDX_MSI_STATUS";                  // text, a decimal number
inline constexpr const wchar_t* submitReport = L"PDX_SUBMIT_ERROR_REPORT";      // number
inline constexpr const wchar_t* shortcutName = L"PDX_SHORTCUT_NAME";            // text
inline constexpr const wchar_t* productName = L"PRODUCT_DISPLAY_NAME";          // text
inline constexpr const wchar_t* ignoreInstalled = L"IGNORE_ALREADY_INSTALLED";  // text; "1" is on
inline constexpr const wchar_t* harrier = L"HARRIER_ENABLE";                    // text, passed on unchanged
inline constexpr const wchar_t* authCode = L"KESTREL_AUTHCODE";                 // text, a login code
inline constexpr const wchar_t* installFolder = L"InstallFolder";
inline constexpr const wchar_t* defaultInstallFolder = L"DefaultInstallFolder";
inline constexpr const wchar_t* desktopShortcut = L"CreateDesktopShortcut";  // text; empty is off
inline constexpr const wchar_t* thickInstaller = L"IsThickInstaller";        // text; "no" is the thin variant
inline constexpr const wchar_t* bundleExecutable = L"BundleExecutableName";  // preset by the bundle
inline constexpr const wchar_t* reporterShortcut = L"INSTALLER_ERROR_REPORTER_SHORTCUT_TITLE";
inline constexpr const wchar_t* recoveryShortcut = L"INSTALLER_RECOVERY_HELPER_SHORTCUT_TITLE";

// The engine's variables.
inline constexpr const wchar_t* bundleLog = L"WixBundleLog";
inline constexpr const wchar_t* bundleFolder = L"WixBundleSourceProcessFolder";  // ends in a separator
inline constexpr const wchar_t* providerKey = L"WixBundleProviderKey";

/// In the environment only.
inline constexpr const wchar_t* installLocation = L"PDX_INSTALL_LOCATION";

}  // namespace pdx::variable
