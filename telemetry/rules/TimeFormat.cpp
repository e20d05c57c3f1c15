#include "telemetry/rules/TimeFormat.h"

#include <fmt/format.h>

#include <chrono>

#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

constexpr int64_t secondsFrom1601To1970 = 11'644'473'600;

/// "2024-02-29T23:59:58". Not by the C library, whose seconds can have 32 bits.
std::string dateAndTime(uint64_t fileTime) {
    using namespace std::chrono;
    constexpr sys_seconds calendarEnd = sys_days(year(3001) / 1 / 1);
    const auto since1601 = static_cast<int64_t>(fileTime / (1000 * fileTimePerMillisecond));
    const sys_seconds time(seconds(since1601 - secondsFrom1601To1970));
    if (time < sys_seconds() || time >= calendarEnd) return {};
    const auto midnight = floor<days>(time);
    const year_month_day date(midnight);
    const hh_mm_ss clock(time - midnight);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", static_cast<int>(date.year()),
                       static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), clock.hours().count(),
                       clock.minutes().count(), clock.seconds().count());
}

}  // namespace

std::string briskTime(uint64_t fileTime) {
    const std::string text = dateAndTime(fileTime);
    return text.empty() ? text : fmt::format("{}.{:03}", text, fileTime / fileTimePerMillisecond % 1000);
}

std::string tallyTime(uint64_t fileTime) {
    const std::string text = dateAndTime(fileTime);
    return text.empty() ? text : text + 'Z';
}

}  // namespace pdx
