#pragma once
// Dates as the database files hold them, and the server's date arithmetic on them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/CivilDay.h"

namespace zul::dialect {

/// A moment between 0001-01-01 and 9999-12-31 23:59:59.999.
struct Moment
{
    std::int64_t day = 0;         ///< days since 1899-12-30, as daysFromCivil counts them
    std::int64_t millisecond = 0; ///< of the day, 0 to 86399999

    friend bool operator==(const Moment&, const Moment&) = default;
};

enum class DatePart
{
    Year,
    Quarter,
    Month,
    DayOfYear,
    Day,
    Week,    ///< weeks start on Sunday
    WeekDay, ///< Sunday is 1
    Hour,
    Minute,
    Second,
    Millisecond
};

/// The part of a name or its abbreviation ("year", "yy", "yyyy" …), in any case.
std::optional<DatePart> datePartNamed(std::string_view name);
/// The part's full name, in small letters.
std::string_view nameOf(DatePart part);

/// Reads 'YYYY-MM-DD', 'YYYYMMDD', 'YYYY/MM/DD', each alone or followed by a blank or 'T' and a time
/// 'HH:MM[:SS[.fraction]] [AM|PM]'; a time alone is on 1900-01-01, as is an empty text. Blanks around do not
/// matter; a fraction is cut to milliseconds. Everything else, also a date whose order of day and month
/// depends on a server's language, is nothing.
std::optional<Moment> parseMoment(std::string_view text);

/// The stored form: 'YYYY-MM-DD HH:MM:SS.mmm'.
std::string formatMoment(const Moment& moment);
/// 'HH:MM:SS.mmm'
std::string formatTime(const Moment& moment);

/// A number as the server reads it where a date is needed: days since 1900-01-01, with a fraction of a day.
std::optional<Moment> momentOfNumber(double days);
double numberOfMoment(const Moment& moment);

/// The number of boundaries of the part crossed between two moments.
std::int64_t dateDifference(DatePart part, const Moment& from, const Moment& to);
/// Nothing when the result is out of range. A day past the end of the month becomes its last day.
std::optional<Moment> dateSum(DatePart part, std::int64_t number, const Moment& moment);
std::int64_t partOf(DatePart part, const Moment& moment);

/// A date as text in one of the server's numbered styles (0, 1 … 14, 20, 21, 100 … 114, 120, 121, 126, 130 is
/// not known); nothing for an unknown style.
std::optional<std::string> momentInStyle(const Moment& moment, int style);
/// Reads a text in one of the styles 101 to 105, 110, 111, 112 and their two-digit years; other styles read as
/// parseMoment.
std::optional<Moment> parseMomentInStyle(std::string_view text, int style);

} // namespace zul::dialect
