// Times as text, for the two services of telemetry.
#pragma once

#include <cstdint>
#include <string>

namespace pdx {

// Both are in UTC. The time counts 100 nanoseconds since 1601, as the system's file times do. Empty for a time before
// 1970 or after the year 3000.

/// The Brisk service's format, "2024-02-29T23:59:58.007".
std::string briskTime(uint64_t fileTime);
/// The Tally service's format, "2024-02-29T23:59:58Z".
std::string tallyTime(uint64_t fileTime);

}  // namespace pdx
