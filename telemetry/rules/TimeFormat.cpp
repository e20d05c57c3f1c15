#include "telemetry/rules/TimeFormat.h"

#include <fmt/chrono.h>

#include <chrono>
#include <ctime>

#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

constexpr int64_t secondsFrom1601To1970 = 11'644'473'600;
constexpr std::chrono::sys_seconds calendarEnd = std::chrono::sys_days(std::chrono::year(3001) / 1 / 1);

std::tm brokenDown(std::chrono::sys_seconds time) {
    using namespace std::chrono;
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    std::tm tm{};
    tm.tm_year = static_cast<int>(date.year()) - 1900;
    tm.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    tm.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    tm.tm_wday = static_cast<int>(weekday(day).c_encoding());
    tm.tm_yday = static_cast<int>((day - sys_days(date.year() / 1 / 1)).count());
    tm.tm_hour = static_cast<int>(clock.hours().count());
    tm.tm_min = static_cast<int>(clock.minutes().count());
    tm.tm_sec = static_cast<int>(clock.seconds().count());
    return tm;
}

}  // namespace

std::string formatTime(uint64_t fileTime, std::string_view pattern) {
    const std::chrono::sys_seconds time(
        std::chrono::seconds(static_cast<int64_t>(fileTime / (1000 * fileTimePerMillisecond)) - secondsFrom1601To1970));
    if (time < std::chrono::sys_seconds() || time >= calendarEnd) return {};
    const std::tm tm = brokenDown(time);
    return fmt::vformat(
        pattern, fmt::make_format_args(fmt::arg("tm", tm), fmt::arg("ms", fileTime / fileTimePerMillisecond % 1000),
                                       fmt::arg("sec", tm.tm_sec), fmt::arg("min", tm.tm_min),
                                       fmt::arg("hour", tm.tm_hour), fmt::arg("day", tm.tm_mday),
                                       fmt::arg("month", tm.tm_mon + 1), fmt::arg("year", tm.tm_year + 1900)));
}

std::string briskTime(uint64_t fileTime) { return formatTime(fileTime, "{tm:%Y-%m-%dT%H:%M:%S}.{ms:03d}"); }

std::string tallyTime(uint64_t fileTime) { return formatTime(fileTime, "{tm:%Y-%m-%dT%H:%M:%S}Z"); }

}  // namespace pdx
