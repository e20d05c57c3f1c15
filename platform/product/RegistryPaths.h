// Registry keys that more than one file reads or writes.
#pragma once

namespace pdx {

/// The installed product, under HKEY_LOCAL_MACHINE in both views (the client's values are in the 64-bit one), and for
/// the user under HKEY_CURRENT_USER.
inline constexpr const wchar_t* productKey = L"Software\\Corvane Works\\Palisade Desktop";
/// The older client, under HKEY_LOCAL_MACHINE, 32-bit view.
inline constexpr const wchar_t* bastionKey = L"Software\\Bastion";
/// A further product of the maker, under HKEY_LOCAL_MACHINE, 32-bit view.
inline constexpr const wchar_t* fenwickKey = L"Software\\Corvane Works\\Fenwick";

/// The installed programs, one key for each, under HKEY_LOCAL_MACHINE.
inline constexpr const wchar_t* uninstallKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
/// Windows' values with the folders of programs, under HKEY_LOCAL_MACHINE.
inline constexpr const wchar_t* windowsKey = L"Software\\Microsoft\\Windows\\CurrentVersion";

}  // namespace pdx
