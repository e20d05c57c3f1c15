// Versions of four numbers, "12.37.0.5294", as one number of 64 bits: 16 bits for each part, the first part highest.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pdx {

/// Reads "a.b.c.d". A part that cannot be read and all later ones are 0; a part keeps its low 16 bits.
uint64_t parseVersion64(std::string_view text);

/// "12.37.0.5294".
std::string versionText(uint64_t version);

/// Whether the first is above the second. Each text counts as far as it can be read (parseVersion64).
bool isNewerVersion(std::string_view version, std::string_view current);

}  // namespace pdx
