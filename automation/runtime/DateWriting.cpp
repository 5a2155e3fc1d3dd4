// The calendar, and dates as texts.
#include <cmath>
#include <string>

#include "automation/runtime/Calendar.h"
#include "automation/runtime/VariantText.h"
#include "base/Utf8.h"

namespace zul::runtime {

namespace {

constexpr long secondsPerDay = 86400;
constexpr long epoch = 719468 - 25569; // from 0000-03-01 to 1899-12-30

struct TimeOfDay
{
    long hours;
    long minutes;
    long seconds;
};

void append(std::u16string& text, long number, std::size_t digits)
{
    const std::string plain = std::to_string(number);
    text.append(plain.size() < digits ? digits - plain.size() : 0, u'0');
    text += utf16FromUtf8(plain);
}

// A pattern of the system's with the numbers in it: "dd/MM/yyyy", "h:mm:ss tt".
std::u16string fill(std::u16string_view pattern, const Day& day, const TimeOfDay& time)
{
    std::u16string text;
    for (std::size_t i = 0; i < pattern.size();) {
        const char16_t c = pattern[i];
        const std::size_t end = std::min(pattern.find_first_not_of(c, i), pattern.size());
        const std::size_t count = end - i;
        i = end;
        switch (c) {
        case u'd':
            append(text, day.day, count);
            break;
        case u'M':
            append(text, day.month, count);
            break;
        case u'y':
            append(text, day.year, count);
            break;
        case u'h':
            append(text, (time.hours + 11) % 12 + 1, count);
            break;
        case u'H':
            append(text, time.hours, count);
            break;
        case u'm':
            append(text, time.minutes, count);
            break;
        case u's':
            append(text, time.seconds, count);
            break;
        case u't':
            text += time.hours < 12 ? u"AM" : u"PM";
            break;
        default:
            text.append(count, c);
            break;
        }
    }
    return text;
}

} // namespace

long dayNumber(const Day& day) noexcept
{
    const long year = day.year - (day.month <= 2 ? 1 : 0);
    const long era = (year >= 0 ? year : year - 399) / 400;
    const long yearOfEra = year - era * 400;
    const long dayOfYear = (153 * (day.month + (day.month > 2 ? -3 : 9)) + 2) / 5 + day.day - 1;
    const long dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - epoch;
}

Day dayOf(long number) noexcept
{
    const long z = number + epoch;
    const long era = (z >= 0 ? z : z - 146096) / 146097;
    const long dayOfEra = z - era * 146097;
    const long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long monthFromMarch = (5 * dayOfYear + 2) / 153;
    const long month = monthFromMarch + (monthFromMarch < 10 ? 3 : -9);
    return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month,
            dayOfYear - (153 * monthFromMarch + 2) / 5 + 1};
}

bool isDay(const Day& day) noexcept
{
    if (day.year < 100 || day.year > 9999 || day.month < 1 || day.month > 12 || day.day < 1 || day.day > 31) {
        return false;
    }
    const Day back = dayOf(dayNumber(day));
    return back.month == day.month && back.day == day.day;
}

std::u16string formatDate(DATE date, const LocaleStyle& style)
{
    double whole = std::trunc(date);
    long seconds = std::lround(std::fabs(date - whole) * static_cast<double>(secondsPerDay));
    if (seconds == secondsPerDay) {
        seconds = 0;
        whole += 1;
    }
    const Day day = dayOf(std::lround(whole));
    const TimeOfDay time{seconds / 3600, seconds / 60 % 60, seconds % 60};
    std::u16string text;
    if (whole != 0.0) {
        text = fill(style.date, day, time);
    }
    if (seconds != 0 || whole == 0.0) {
        text += text.empty() ? u"" : u" ";
        text += fill(style.time, day, time);
    }
    return text;
}

bool isDateInRange(double value) noexcept
{
    return value > lowestDate - 1 && value < beyondHighestDate;
}

} // namespace zul::runtime
