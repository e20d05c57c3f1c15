// The client's package: its names and codes in the bundle and in Windows Installer's records.
#pragma once

#include <string_view>

namespace pdx {

/// The package's id in the bundle.
inline constexpr const wchar_t* clientPackageId = L"PalisadeApp.msi";

/// The package's codes in the packed form of Windows Installer's key names.
inline constexpr const wchar_t* packedProductCode = L"A1B2C3D4E5F60718293A4B5C6D7E8F90";
inline constexpr const wchar_t* packedUpgradeCode = L"0F1E2D3C4B5A69788796A5B4C3D2E1F0";

/// Whether a display name is this product's, or one of its earlier names. Case-sensitive.
constexpr bool isProductName(std::wstring_view displayName) {
    for (const std::wstring_view name : {L"Bastion Beta", L"Palisade Desktop", L"Palisade app"})
        if (displayName == name) return true;
    return false;
}

}  // namespace pdx
