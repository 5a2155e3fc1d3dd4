#include "base/DateText.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <ctime>

namespace zul::host {

namespace {

constexpr std::int64_t millisecondsPerDay = 86'400'000;
// 1899-12-30 counted from 1970-01-01.
constexpr std::int64_t automationEpoch = -25'569;

bool digits(std::string_view text, std::size_t from, std::size_t count, int& value)
{
    if (text.size() < from + count)
        return false;
    value = 0;
    for (std::size_t i = from; i < from + count; ++i) {
        const char c = text[i];
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + (c - '0');
    }
    return true;
}

bool isDay(const CivilDay& day)
{
    static constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (day.year < 1 || day.year > 9999 || day.month < 1 || day.month > 12 || day.day < 1)
        return false;
    const bool leap = (day.year % 4 == 0 && day.year % 100 != 0) || day.year % 400 == 0;
    const int length = lengths[static_cast<std::size_t>(day.month - 1)] + (day.month == 2 && leap ? 1 : 0);
    return day.day <= length;
}

double dateOf(std::int64_t days, std::int64_t milliseconds)
{
    const double fraction = static_cast<double>(milliseconds) / static_cast<double>(millisecondsPerDay);
    return days < 0 ? static_cast<double>(days) - fraction : static_cast<double>(days) + fraction;
}

void writeDigits(char* to, int value, int count)
{
    for (int i = count - 1; i >= 0; --i) {
        to[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

} // namespace

// Both conversions count from 1 March of the era's first year, where leap days fall at a year's end.
std::int64_t daysFromCivil(CivilDay day)
{
    const std::int64_t y = day.year - (day.month <= 2 ? 1 : 0);
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yearOfEra = y - era * 400;
    const std::int64_t dayOfYear = (153 * (day.month + (day.month > 2 ? -3 : 9)) + 2) / 5 + day.day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146'097 + dayOfEra - 719'468 - automationEpoch;
}

CivilDay civilFromDays(std::int64_t days)
{
    const std::int64_t z = days + automationEpoch + 719'468;
    const std::int64_t era = (z >= 0 ? z : z - 146'096) / 146'097;
    const std::int64_t dayOfEra = z - era * 146'097;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t mp = (5 * dayOfYear + 2) / 153;
    const int day = static_cast<int>(dayOfYear - (153 * mp + 2) / 5 + 1);
    const int month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    return {static_cast<int>(yearOfEra + era * 400 + (month <= 2 ? 1 : 0)), month, day};
}

CivilDay civilFromDate(double date)
{
    return civilFromDays(static_cast<std::int64_t>(std::trunc(std::clamp(date, -693'593.0, 2'958'465.0))));
}

std::optional<double> dateFromDigits(std::int64_t yyyymmdd)
{
    if (yyyymmdd < 10'101 || yyyymmdd > 99'991'231)
        return std::nullopt;
    const int number = static_cast<int>(yyyymmdd);
    const CivilDay day{number / 10'000, number / 100 % 100, number % 100};
    if (!isDay(day))
        return std::nullopt;
    return static_cast<double>(daysFromCivil(day));
}

std::optional<double> parseDate(std::string_view text)
{
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    CivilDay day;
    if (text.size() == 8 && digits(text, 0, 4, day.year) && digits(text, 4, 2, day.month) &&
        digits(text, 6, 2, day.day))
        return isDay(day) ? std::optional(static_cast<double>(daysFromCivil(day))) : std::nullopt;
    if (text.size() < 10 || text[4] != '-' || text[7] != '-' || !digits(text, 0, 4, day.year) ||
        !digits(text, 5, 2, day.month) || !digits(text, 8, 2, day.day) || !isDay(day))
        return std::nullopt;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
    if (text.size() > 10) {
        if (text[10] != ' ' && text[10] != 'T')
            return std::nullopt;
        if (text.size() < 16 || text[13] != ':' || !digits(text, 11, 2, hour) || !digits(text, 14, 2, minute))
            return std::nullopt;
        if (text.size() > 16 && (text[16] != ':' || !digits(text, 17, 2, second)))
            return std::nullopt;
        if (text.size() > 19) {
            if (text[19] != '.' || text.size() == 20)
                return std::nullopt;
            int scale = 100;
            for (std::size_t i = 20; i < text.size(); ++i) {
                if (text[i] < '0' || text[i] > '9')
                    return std::nullopt;
                millisecond += (text[i] - '0') * scale;
                scale /= 10;
            }
        }
        if (hour > 23 || minute > 59 || second > 59)
            return std::nullopt;
    }
    const std::int64_t time = ((hour * 60 + minute) * 60 + second) * std::int64_t{1000} + millisecond;
    return dateOf(daysFromCivil(day), time);
}

std::string formatDate(double date)
{
    if (std::isnan(date))
        date = 0.0;
    date = std::clamp(date, -693'593.0, 2'958'465.999'999'99);
    auto days = static_cast<std::int64_t>(std::trunc(date));
    auto milliseconds = static_cast<std::int64_t>(
        std::llround(std::fabs(date - std::trunc(date)) * static_cast<double>(millisecondsPerDay)));
    if (milliseconds >= millisecondsPerDay) {
        milliseconds = 0;
        ++days;
    }
    if (days > 2'958'465) {
        days = 2'958'465;
        milliseconds = millisecondsPerDay - 1;
    }
    const CivilDay day = civilFromDays(days);
    std::string text = "0000-00-00 00:00:00.000";
    writeDigits(text.data(), day.year, 4);
    writeDigits(text.data() + 5, day.month, 2);
    writeDigits(text.data() + 8, day.day, 2);
    writeDigits(text.data() + 11, static_cast<int>(milliseconds / 3'600'000), 2);
    writeDigits(text.data() + 14, static_cast<int>(milliseconds / 60'000 % 60), 2);
    writeDigits(text.data() + 17, static_cast<int>(milliseconds / 1000 % 60), 2);
    writeDigits(text.data() + 20, static_cast<int>(milliseconds % 1000), 3);
    return text;
}

double currentDate()
{
    const auto now = std::chrono::system_clock::now();
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &seconds);
#else
    localtime_r(&seconds, &local);
#endif
    const std::int64_t day = daysFromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday});
    const std::int64_t time =
        ((local.tm_hour * 60 + local.tm_min) * 60 + std::min(local.tm_sec, 59)) * std::int64_t{1000};
    return dateOf(day, time + milliseconds);
}

} // namespace zul::host
