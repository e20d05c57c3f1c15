// The two clocks of the system.
#pragma once

#include <windows.h>

#include <chrono>
#include <cstdint>

namespace pdx {

/// The current time in units of 100 nanoseconds since 1601, UTC. Jumps when the clock is set.
inline uint64_t currentFileTime() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
}
inline constexpr uint64_t fileTimePerMillisecond = 10'000;

/// A time for measuring durations: never decreases.
inline std::chrono::milliseconds steadyTime() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace pdx
