#pragma once
// Dates as automation counts them: a number of days since 1899-12-30, the time of day as the fraction, which
// before that day still counts forward: -1.25 is 1899-12-29 06:00. Resolution here is the millisecond.
#include <cstdint>

#include "base/CivilDay.h"

namespace zul {

inline constexpr std::int64_t millisecondsPerDay = 86'400'000;

/// The first and the last day that a date may have here: 0001-01-01 and 9999-12-31.
inline constexpr std::int64_t firstAutomationDay = daysFromCivil({1, 1, 1});
inline constexpr std::int64_t lastAutomationDay = daysFromCivil({9999, 12, 31});

/// An automation date taken apart.
struct DayAndTime
{
    std::int64_t day = 0;          ///< since 1899-12-30, negative before it
    std::int64_t milliseconds = 0; ///< of the day, 0 to 86'399'999

    bool operator==(const DayAndTime&) const = default;
};

/// Takes a date apart; a time that rounds up to midnight is the next day's. Any number may be given: what is
/// no number is day 0, and a day too large to count stays the largest (10^15 and its negative).
DayAndTime splitDate(double date);

/// The same, with the nearest bound for a date outside the years 1 to 9999.
DayAndTime splitDateInRange(double date);

/// Puts a date together. @p milliseconds lies between 0 and those of a day.
double joinDate(std::int64_t day, std::int64_t milliseconds);

/// The day of a date, its time of day dropped; a date outside the years 1 to 9999 gives the nearest bound.
CivilDay civilFromDate(double date);

/// The current local time as an automation date.
double currentDate();

} // namespace zul
