// The two clocks of the system.
#pragma once

#include <windows.h>

#include <chrono>
#include <cstdint>

#include "platform/rules/Numbers.h"

namespace pdx {

/// A file time as one number.
inline uint64_t fileTimeOf(const FILETIME& time) { return uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime; }

/// The current time in units of 100 nanoseconds since 1601, UTC. Jumps when the clock is set.
inline uint64_t currentFileTime() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return fileTimeOf(now);
}

/// A time for measuring durations: never decreases.
inline std::chrono::milliseconds steadyTime() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace pdx
