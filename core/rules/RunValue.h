// The value by which the client starts with Windows.
#pragma once

#include <string>
#include <string_view>

namespace pdx {

/// The Run value's name.
inline constexpr const wchar_t* runValueName = L"Fenwick";

/// Whether an uninstall deletes the Run value: it names something in the install folder. Both texts are lower-cased.
inline bool isRunValueOfFolder(std::wstring_view lowerValue, std::wstring_view lowerFolder) {
    return !lowerFolder.empty() && lowerValue.find(lowerFolder) != std::wstring_view::npos;
}

/// The command that starts the client silently.
inline std::wstring runCommand(std::wstring_view launcherPath) {
    return L"\"" + std::wstring(launcherPath) + L"\" -silent";
}

}  // namespace pdx
