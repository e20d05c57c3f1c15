// The installer's version, as every service receives it.
#pragma once

namespace pdx {

inline constexpr const char* installerVersion = "12.37.0.5294";

}  // namespace pdx
