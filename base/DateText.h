#pragma once
// Dates as the database keeps them ("YYYY-MM-DD HH:MM:SS.mmm") and as automation counts them.
//
// An automation date is a number of days since 1899-12-30; the time of day is the fraction, which before that
// day still counts forward: -1.25 is 1899-12-29 06:00. Resolution here is the millisecond.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace zul::host {

/// A day of the proleptic Gregorian calendar.
struct CivilDay
{
    int year = 1899;
    int month = 12;
    int day = 30;

    bool operator==(const CivilDay&) const = default;
    bool operator<(const CivilDay& other) const
    {
        return std::tie(year, month, day) < std::tie(other.year, other.month, other.day);
    }
};

/// Days since 1899-12-30, negative before it.
std::int64_t daysFromCivil(CivilDay day);
CivilDay civilFromDays(std::int64_t days);

/// The day of an automation date, its time of day dropped.
CivilDay civilFromDate(double date);

/// Reads "YYYY-MM-DD", with an optional time "HH:MM[:SS[.f…]]" behind a blank or a "T", or "YYYYMMDD".
/// Nothing when the text is no such date; years run from 1 to 9999.
std::optional<double> parseDate(std::string_view text);

/// The automation date of a day written as the number YYYYMMDD; nothing when there is no such day.
std::optional<double> dateFromDigits(std::int64_t yyyymmdd);

/// "YYYY-MM-DD HH:MM:SS.mmm"; a date outside the years 1 to 9999 gives the nearest bound.
std::string formatDate(double date);

/// The current local time as an automation date.
double currentDate();

} // namespace zul::host
