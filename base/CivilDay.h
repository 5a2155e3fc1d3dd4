#pragma once
// Days of the calendar, and days counted as automation and the databases count them.
#include <chrono>
#include <compare>
#include <cstdint>

namespace zul {

/// A day of the proleptic Gregorian calendar.
struct CivilDay
{
    int year = 1899;
    int month = 12;
    int day = 30;

    // The tool takes the comparison with 0 that the compiler makes here for one of ours.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    auto operator<=>(const CivilDay&) const = default;
};

/// Day 0 of automation's dates.
inline constexpr std::chrono::sys_days automationDayZero{std::chrono::year{1899} / 12 / 30};

/// Whether there is such a day in the years 1 to 9999; any numbers may be asked about.
constexpr bool isDay(const CivilDay& day)
{
    using namespace std::chrono;
    // The calendar's own types keep a byte of month and day only.
    if (day.year < 1 || day.year > 9999 || day.month < 1 || day.month > 12 || day.day < 1 || day.day > 31) {
        return false;
    }
    return year_month_day{year{day.year}, month{static_cast<unsigned>(day.month)},
                          std::chrono::day{static_cast<unsigned>(day.day)}}
        .ok();
}

/// Days since 1899-12-30, negative before it. The year lies between -32767 and 32767.
constexpr std::int64_t daysFromCivil(const CivilDay& day)
{
    using namespace std::chrono;
    const year_month_day date{year{day.year}, month{static_cast<unsigned>(day.month)},
                              std::chrono::day{static_cast<unsigned>(day.day)}};
    return (sys_days{date} - automationDayZero).count();
}

/// The day of such a count; its year lies between -32767 and 32767.
constexpr CivilDay civilFromDays(std::int64_t days)
{
    using namespace std::chrono;
    const year_month_day date{automationDayZero + std::chrono::days{days}};
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day()))};
}

} // namespace zul
