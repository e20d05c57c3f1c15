// The installer's own version, as every service is told it.
#pragma once

namespace pdx {

inline constexpr const char* installerVersion = "12.37.0.5294";

}  // namespace pdx
