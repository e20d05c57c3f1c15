// The installer's own version, as it is sent to every service.
#pragma once

namespace pdx {

inline constexpr const char* installerVersion = "12.37.0.5294";

}  // namespace pdx
