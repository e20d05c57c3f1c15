// Times as text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pdx {

/// A time in UTC, formatted by a pattern of the formatting library. Its named arguments are tm (a std::tm, for
/// strftime's directives), ms (0 to 999), sec, min, hour, day, month (from 1) and year. The time counts 100 nanoseconds
/// since 1601, as the system's file times do. Empty for a time that the C library does not support: before 1970 or
/// after the year 3000.
std::string formatTime(uint64_t fileTime, std::string_view pattern);

/// The Brisk service's format, "2024-02-29T23:59:58.007".
std::string briskTime(uint64_t fileTime);
/// The Tally service's format, "2024-02-29T23:59:58Z".
std::string tallyTime(uint64_t fileTime);

}  // namespace pdx
