// The client's package of the bundle.
#pragma once

namespace pdx {

inline constexpr const wchar_t* clientPackageId = L"PalisadeApp.msi";

}  // namespace pdx
