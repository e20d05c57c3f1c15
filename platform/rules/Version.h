// Versions of four numbers, "12.37.0.5294", as one number of 64 bits with 16 a part, the first highest.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pdx {

/// Reads "a.b.c.d". What cannot be read, and all after it, is 0; a part keeps its low 16 bits.
uint64_t parseVersion64(std::string_view text);

/// "12.37.0.5294".
std::string versionText(uint64_t version);

/// Whether the first is above the second; a text that is no version counts as 0.0.0.0.
bool isNewerVersion(std::string_view version, std::string_view current);

}  // namespace pdx
