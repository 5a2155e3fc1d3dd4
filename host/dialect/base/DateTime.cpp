#include "host/dialect/base/DateTime.h"

#include "base/AutomationDate.h"
#include "host/dialect/base/Words.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

namespace zul::dialect {

namespace {

constexpr std::int64_t day1900 = daysFromCivil({1900, 1, 1}); // a Monday

constexpr std::array<std::string_view, 12> monthNames = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::int64_t floorDivide(std::int64_t a, std::int64_t b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

// 0 is Sunday.
std::int64_t weekDayOf(std::int64_t day)
{
    const std::int64_t remainder = (day + 6) % 7;
    return remainder < 0 ? remainder + 7 : remainder;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return text;
}

// Reads up to 'most' digits; says how many there were.
int readDigits(std::string_view& text, int most, std::int64_t& number)
{
    int count = 0;
    number = 0;
    while (count < most && !text.empty() && text.front() >= '0' && text.front() <= '9') {
        number = number * 10 + (text.front() - '0');
        text.remove_prefix(1);
        ++count;
    }
    return count;
}

bool takeChar(std::string_view& text, char c)
{
    if (text.empty() || text.front() != c) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

// HH:MM[:SS[.fraction]] [AM|PM], or HH AM
std::optional<std::int64_t> readTime(std::string_view text)
{
    std::int64_t hour = 0;
    std::int64_t minute = 0;
    std::int64_t second = 0;
    std::int64_t millisecond = 0;
    if (readDigits(text, 2, hour) == 0) {
        return std::nullopt;
    }
    const bool minutes = takeChar(text, ':');
    if (minutes) {
        if (readDigits(text, 2, minute) != 2) {
            return std::nullopt;
        }
        if (takeChar(text, ':')) {
            if (readDigits(text, 2, second) != 2) {
                return std::nullopt;
            }
            if (takeChar(text, '.') || takeChar(text, ',')) {
                const int digits = readDigits(text, 3, millisecond);
                if (digits == 0) {
                    return std::nullopt;
                }
                for (int i = digits; i < 3; ++i) {
                    millisecond *= 10;
                }
                std::int64_t rest = 0;
                readDigits(text, 6, rest);
            }
        }
    }
    text = trimmed(text);
    const bool am = sameWord(text, "AM");
    const bool pm = sameWord(text, "PM");
    if (am || pm) {
        if (hour < 1 || hour > 12) {
            return std::nullopt;
        }
        hour = hour % 12 + (pm ? 12 : 0);
    } else if (!text.empty() || !minutes) {
        return std::nullopt;
    }
    if (hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return ((hour * 60 + minute) * 60 + second) * 1000 + millisecond;
}

// The date at the start of the text: YYYYMMDD, YYYY-MM-DD or YYYY/MM/DD.
bool readDate(std::string_view& text, std::int64_t& day)
{
    std::string_view rest = text;
    std::int64_t year = 0;
    std::int64_t month = 0;
    std::int64_t dayOfMonth = 0;
    if (readDigits(rest, 4, year) != 4) {
        return false;
    }
    const char separator = rest.empty() ? '\0' : rest.front();
    if (separator == '-' || separator == '/') {
        rest.remove_prefix(1);
        if (readDigits(rest, 2, month) == 0 || !takeChar(rest, separator) ||
            readDigits(rest, 2, dayOfMonth) == 0) {
            return false;
        }
    } else if (readDigits(rest, 2, month) != 2 || readDigits(rest, 2, dayOfMonth) != 2) {
        return false;
    }
    const CivilDay civil{static_cast<int>(year), static_cast<int>(month), static_cast<int>(dayOfMonth)};
    if (!isDay(civil)) {
        return false;
    }
    day = daysFromCivil(civil);
    text = rest;
    return true;
}

bool inRange(std::int64_t day)
{
    return day >= firstAutomationDay && day <= lastAutomationDay;
}

std::string formatted(const char* format, std::int64_t a, std::int64_t b, std::int64_t c)
{
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, static_cast<long long>(a), static_cast<long long>(b),
                  static_cast<long long>(c));
    return buffer.data();
}

std::string clock(const Moment& moment)
{
    const std::int64_t seconds = moment.millisecond / 1000;
    return formatted("%02lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

// "10:20AM", with seconds and milliseconds "10:20:30:123AM"
std::string halfDayClock(const Moment& moment, bool exact)
{
    const std::int64_t hour = moment.millisecond / 3'600'000;
    const std::int64_t shown = hour % 12 == 0 ? 12 : hour % 12;
    std::string text = formatted("%2lld:%02lld", shown, moment.millisecond / 60'000 % 60, 0);
    if (exact) {
        text += formatted(":%02lld:%03lld", moment.millisecond / 1000 % 60, moment.millisecond % 1000, 0);
    }
    return text + (hour < 12 ? "AM" : "PM");
}

} // namespace

std::optional<DatePart> datePartNamed(std::string_view name)
{
    static constexpr std::pair<std::string_view, DatePart> names[] = {
        {"year", DatePart::Year},       {"yy", DatePart::Year},
        {"yyyy", DatePart::Year},       {"quarter", DatePart::Quarter},
        {"qq", DatePart::Quarter},      {"q", DatePart::Quarter},
        {"month", DatePart::Month},     {"mm", DatePart::Month},
        {"m", DatePart::Month},         {"dayofyear", DatePart::DayOfYear},
        {"dy", DatePart::DayOfYear},    {"y", DatePart::DayOfYear},
        {"day", DatePart::Day},         {"dd", DatePart::Day},
        {"d", DatePart::Day},           {"week", DatePart::Week},
        {"wk", DatePart::Week},         {"ww", DatePart::Week},
        {"weekday", DatePart::WeekDay}, {"dw", DatePart::WeekDay},
        {"w", DatePart::WeekDay},       {"hour", DatePart::Hour},
        {"hh", DatePart::Hour},         {"minute", DatePart::Minute},
        {"mi", DatePart::Minute},       {"n", DatePart::Minute},
        {"second", DatePart::Second},   {"ss", DatePart::Second},
        {"s", DatePart::Second},        {"millisecond", DatePart::Millisecond},
        {"ms", DatePart::Millisecond}};
    for (const auto& [known, part] : names) {
        if (sameWord(known, name)) {
            return part;
        }
    }
    return std::nullopt;
}

std::string_view nameOf(DatePart part)
{
    static constexpr std::array<std::string_view, 11> names = {"year",   "quarter", "month",      "dayofyear",
                                                               "day",    "week",    "weekday",    "hour",
                                                               "minute", "second",  "millisecond"};
    return names[static_cast<std::size_t>(part)];
}

std::optional<Moment> parseMoment(std::string_view text)
{
    text = trimmed(text);
    Moment moment{day1900, 0};
    if (text.empty()) {
        return moment;
    }
    if (!readDate(text, moment.day)) {
        const auto time = readTime(text);
        if (!time) {
            return std::nullopt;
        }
        moment.millisecond = *time;
        return moment;
    }
    if (text.empty()) {
        return moment;
    }
    if (!takeChar(text, ' ') && !takeChar(text, 'T')) {
        return std::nullopt;
    }
    const auto time = readTime(trimmed(text));
    if (!time) {
        return std::nullopt;
    }
    moment.millisecond = *time;
    return moment;
}

std::string formatMoment(const Moment& moment)
{
    const CivilDay date = civilFromDays(moment.day);
    return formatted("%04lld-%02lld-%02lld", date.year, date.month, date.day) + " " + formatTime(moment);
}

std::string formatTime(const Moment& moment)
{
    return clock(moment) + formatted(".%03lld", moment.millisecond % 1000, 0, 0);
}

std::optional<Moment> momentOfNumber(double days)
{
    if (!(days >= static_cast<double>(firstAutomationDay - day1900) &&
          days < static_cast<double>(lastAutomationDay - day1900 + 1))) {
        return std::nullopt;
    }
    const double whole = std::floor(days);
    Moment moment{day1900 + static_cast<std::int64_t>(whole),
                  std::llround((days - whole) * static_cast<double>(millisecondsPerDay))};
    if (moment.millisecond >= millisecondsPerDay) {
        ++moment.day;
        moment.millisecond -= millisecondsPerDay;
    }
    if (!inRange(moment.day)) {
        return std::nullopt;
    }
    return moment;
}

double numberOfMoment(const Moment& moment)
{
    return static_cast<double>(moment.day - day1900) +
           static_cast<double>(moment.millisecond) / static_cast<double>(millisecondsPerDay);
}

std::int64_t dateDifference(DatePart part, const Moment& from, const Moment& to)
{
    const std::int64_t days = to.day - from.day;
    const auto months = [](const Moment& moment) {
        const CivilDay date = civilFromDays(moment.day);
        return date.year * 12 + date.month - 1;
    };
    const auto units = [&](std::int64_t unit) {
        return days * (millisecondsPerDay / unit) + to.millisecond / unit - from.millisecond / unit;
    };
    switch (part) {
    case DatePart::Year:
        return civilFromDays(to.day).year - civilFromDays(from.day).year;
    case DatePart::Quarter:
        return months(to) / 3 - months(from) / 3;
    case DatePart::Month:
        return months(to) - months(from);
    case DatePart::DayOfYear:
    case DatePart::Day:
    case DatePart::WeekDay:
        return days;
    case DatePart::Week:
        return floorDivide(to.day + 6, 7) - floorDivide(from.day + 6, 7);
    case DatePart::Hour:
        return units(3'600'000);
    case DatePart::Minute:
        return units(60'000);
    case DatePart::Second:
        return units(1000);
    case DatePart::Millisecond:
        return units(1);
    }
    return 0;
}

std::optional<Moment> dateSum(DatePart part, std::int64_t number, const Moment& moment)
{
    // Far beyond every result that is in range, and small enough that no step below overflows.
    constexpr std::int64_t limit = 400'000'000'000'000'000;
    if (number > limit || number < -limit) {
        return std::nullopt;
    }
    const auto plusMonths = [&](std::int64_t count) -> std::optional<Moment> {
        if (count > 200'000 || count < -200'000) {
            return std::nullopt;
        }
        const CivilDay date = civilFromDays(moment.day);
        const std::int64_t months = date.year * 12 + date.month - 1 + count;
        const std::int64_t year = floorDivide(months, 12);
        if (year < 1 || year > 9999) {
            return std::nullopt;
        }
        CivilDay sum{static_cast<int>(year), static_cast<int>(months - year * 12 + 1), date.day};
        while (!isDay(sum)) {
            --sum.day;
        }
        return Moment{daysFromCivil(sum), moment.millisecond};
    };
    const auto plusMilliseconds = [&](std::int64_t count, std::int64_t unit) -> std::optional<Moment> {
        if (count > limit / unit || count < -limit / unit) {
            return std::nullopt;
        }
        const std::int64_t total = moment.millisecond + count * unit;
        const std::int64_t days = floorDivide(total, millisecondsPerDay);
        const Moment sum{moment.day + days, total - days * millisecondsPerDay};
        return inRange(sum.day) ? std::optional(sum) : std::nullopt;
    };
    switch (part) {
    case DatePart::Year:
        return number > 20'000 || number < -20'000 ? std::nullopt : plusMonths(number * 12);
    case DatePart::Quarter:
        return number > 80'000 || number < -80'000 ? std::nullopt : plusMonths(number * 3);
    case DatePart::Month:
        return plusMonths(number);
    case DatePart::DayOfYear:
    case DatePart::Day:
    case DatePart::WeekDay:
        return plusMilliseconds(number, millisecondsPerDay);
    case DatePart::Week:
        return plusMilliseconds(number, 7 * millisecondsPerDay);
    case DatePart::Hour:
        return plusMilliseconds(number, 3'600'000);
    case DatePart::Minute:
        return plusMilliseconds(number, 60'000);
    case DatePart::Second:
        return plusMilliseconds(number, 1000);
    case DatePart::Millisecond:
        return plusMilliseconds(number, 1);
    }
    return std::nullopt;
}

std::int64_t partOf(DatePart part, const Moment& moment)
{
    const CivilDay date = civilFromDays(moment.day);
    switch (part) {
    case DatePart::Year:
        return date.year;
    case DatePart::Quarter:
        return (date.month + 2) / 3;
    case DatePart::Month:
        return date.month;
    case DatePart::DayOfYear:
        return moment.day - daysFromCivil({date.year, 1, 1}) + 1;
    case DatePart::Day:
        return date.day;
    case DatePart::Week:
        // Week 1 holds the first of January.
        return floorDivide(moment.day + 6, 7) - floorDivide(daysFromCivil({date.year, 1, 1}) + 6, 7) + 1;
    case DatePart::WeekDay:
        return weekDayOf(moment.day) + 1;
    case DatePart::Hour:
        return moment.millisecond / 3'600'000;
    case DatePart::Minute:
        return moment.millisecond / 60'000 % 60;
    case DatePart::Second:
        return moment.millisecond / 1000 % 60;
    case DatePart::Millisecond:
        return moment.millisecond % 1000;
    }
    return 0;
}

namespace {

/// A style of CONVERT, told by a pattern: y the year as the style has it, Y with four digits, m and d with two, D the
/// day behind a blank, N the month's short name, t the time, f its milliseconds, h and H the half-day clock without
/// and with them. Everything else stands for itself.
struct DateStyle
{
    int style; ///< below 100 the year has two digits, from 100 on four
    std::string_view pattern;
};

constexpr std::array<DateStyle, 15> pairedStyles{{{0, "N D Y h"},
                                                  {1, "m/d/y"},
                                                  {2, "y.m.d"},
                                                  {3, "d/m/y"},
                                                  {4, "d.m.y"},
                                                  {5, "d-m-y"},
                                                  {6, "d N y"},
                                                  {7, "N d, y"},
                                                  {8, "t"},
                                                  {9, "N D Y H"},
                                                  {10, "m-d-y"},
                                                  {11, "y/m/d"},
                                                  {12, "ymd"},
                                                  {13, "d N Y t:f"},
                                                  {14, "t:f"}}};
constexpr std::array<DateStyle, 7> singleStyles{{{20, "Y-m-d t"},
                                                 {21, "Y-m-d t.f"},
                                                 {23, "Y-m-d"},
                                                 {24, "t"},
                                                 {25, "Y-m-d t.f"},
                                                 {120, "Y-m-d t"},
                                                 {121, "Y-m-d t.f"}}};

std::optional<std::string_view> patternOf(int style, const Moment& moment)
{
    if (style == 126) {
        return moment.millisecond % 1000 != 0 ? "Y-m-dTt.f" : "Y-m-dTt";
    }
    for (const DateStyle& paired : pairedStyles) {
        if (style == paired.style || style == paired.style + 100) {
            return paired.pattern;
        }
    }
    for (const DateStyle& single : singleStyles) {
        if (style == single.style) {
            return single.pattern;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> momentInStyle(const Moment& moment, int style)
{
    const auto pattern = patternOf(style, moment);
    if (!pattern) {
        return std::nullopt;
    }
    const CivilDay date = civilFromDays(moment.day);
    const auto padded = [](const char* format, std::int64_t number) {
        return formatted(format, number, 0, 0);
    };
    std::string text;
    for (const char letter : *pattern) {
        switch (letter) {
        case 'y':
            text += style < 100 ? padded("%02lld", date.year % 100) : padded("%04lld", date.year);
            break;
        case 'Y':
            text += padded("%04lld", date.year);
            break;
        case 'm':
            text += padded("%02lld", date.month);
            break;
        case 'd':
            text += padded("%02lld", date.day);
            break;
        case 'D':
            text += padded("%2lld", date.day);
            break;
        case 'N':
            text += monthNames[static_cast<std::size_t>(date.month) - 1];
            break;
        case 't':
            text += clock(moment);
            break;
        case 'f':
            text += padded("%03lld", moment.millisecond % 1000);
            break;
        case 'h':
        case 'H':
            text += halfDayClock(moment, letter == 'H');
            break;
        default:
            text += letter;
        }
    }
    return text;
}

std::optional<Moment> parseMomentInStyle(std::string_view text, int style)
{
    const int base = style % 100;
    const bool monthFirst = base == 1 || base == 10;
    const bool dayFirst = base >= 3 && base <= 5;
    const bool yearFirst = base == 2 || base == 11;
    if ((style > 11 && style < 100) || style > 111 || (!monthFirst && !dayFirst && !yearFirst)) {
        return parseMoment(text);
    }
    text = trimmed(text);
    std::array<std::int64_t, 3> numbers{};
    std::size_t yearDigits = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0) {
            if (text.empty() || std::string_view("/-.").find(text.front()) == std::string_view::npos) {
                return i == 1 ? parseMoment(text) : std::nullopt;
            }
            text.remove_prefix(1);
        }
        const int digits = readDigits(text, 4, numbers[i]);
        if (digits == 0) {
            return std::nullopt;
        }
        if (i == (yearFirst ? 0U : 2U)) {
            yearDigits = static_cast<std::size_t>(digits);
        }
    }
    std::int64_t year = yearFirst ? numbers[0] : numbers[2];
    const std::int64_t month = yearFirst || dayFirst ? numbers[1] : numbers[0];
    const std::int64_t day = yearFirst ? numbers[2] : dayFirst ? numbers[0] : numbers[1];
    if (yearDigits <= 2) {
        year += year < 50 ? 2000 : 1900;
    }
    const CivilDay civil{static_cast<int>(year), static_cast<int>(month), static_cast<int>(day)};
    if (!isDay(civil)) {
        return std::nullopt;
    }
    Moment moment{daysFromCivil(civil), 0};
    if (text.empty()) {
        return moment;
    }
    if (!takeChar(text, ' ')) {
        return std::nullopt;
    }
    const auto time = readTime(trimmed(text));
    if (!time) {
        return std::nullopt;
    }
    moment.millisecond = *time;
    return moment;
}

} // namespace zul::dialect
