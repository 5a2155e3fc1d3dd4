// How a country writes numbers, dates and truth values, as far as the conversions of variants need it.
#pragma once

#include <array>
#include <string_view>

#include <wtypes.h>

namespace zul::runtime {

enum class DateOrder
{
    DayMonthYear,
    MonthDayYear,
    YearMonthDay
};

// A language's names; the short ones without the dot that may follow them.
struct LocaleWords
{
    std::array<std::u16string_view, 12> months;
    std::array<std::u16string_view, 12> shortMonths;
    std::array<std::u16string_view, 7> days; // from Monday
    std::array<std::u16string_view, 7> shortDays;
    std::u16string_view yes;
    std::u16string_view no;
};

const LocaleWords& englishWords() noexcept;

// What one country writes. The patterns are the system's: d, dd, M, MM, yyyy; h (of twelve), H, HH, mm, ss, tt.
struct LocaleStyle
{
    char16_t decimal = u'.';
    char16_t thousands = u',';
    std::u16string_view currency = u"$";
    std::u16string_view date = u"M/d/yyyy";
    std::u16string_view time = u"h:mm:ss tt";
    const LocaleWords* words = nullptr; // never null in a style that localeStyle() has given

    DateOrder dateOrder() const noexcept
    {
        return date.front() == u'd'   ? DateOrder::DayMonthYear
               : date.front() == u'M' ? DateOrder::MonthDayYear
                                      : DateOrder::YearMonthDay;
    }
    // Whether a dot parts the numbers of a day; elsewhere it parts those of a time.
    bool dotInDates() const noexcept { return date.find(u'.') != std::u16string_view::npos; }
};

// The style of a locale id. The user's and the system's default (also 0) take the language and the country from the
// environment, as every program of the user does: LC_ALL, else LC_NUMERIC for numbers and LC_TIME for dates and
// words, else LANG. The invariant locale writes 1,234.5 and 12/25/2003.
LocaleStyle localeStyle(LCID lcid) noexcept;

} // namespace zul::runtime
