// The groups into which error codes are sorted for telemetry.
#pragma once

#include <string_view>

namespace pdx {

struct ErrorGroup {
    std::string_view group;
    bool invalid;  ///< sent as `einv`
};

/// The group of a code given as eight lower-case hexadecimal digits; "unknown" and true for a code that is not listed.
ErrorGroup errorGroup(std::string_view code);

}  // namespace pdx
