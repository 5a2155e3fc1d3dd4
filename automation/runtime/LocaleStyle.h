// How a country writes numbers and dates, as far as the conversions of variants need it.
#pragma once

#include <wtypes.h>

namespace zul::runtime {

enum class DateOrder
{
    DayMonthYear,
    MonthDayYear,
    YearMonthDay
};

struct LocaleStyle
{
    char16_t decimal = u'.';
    char16_t thousands = u',';
    DateOrder dateOrder = DateOrder::MonthDayYear;
    bool italian = false; // names of months and of truth values
};

// The style of a locale id. The user's and the system's default (also 0) take the language from the
// environment, as every program of the user does: LC_ALL, else LC_NUMERIC for numbers and LC_TIME for dates,
// else LANG. The invariant locale writes 1,234.5 and 12/25/2003.
LocaleStyle localeStyle(LCID lcid) noexcept;

} // namespace zul::runtime
