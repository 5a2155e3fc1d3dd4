#include "base/DateText.h"

namespace zul {

namespace {

bool digits(std::string_view text, std::size_t from, std::size_t count, int& value)
{
    if (text.size() < from + count) {
        return false;
    }
    value = 0;
    for (std::size_t i = from; i < from + count; ++i) {
        const char c = text[i];
        if (c < '0' || c > '9') {
            return false;
        }
        value = value * 10 + (c - '0');
    }
    return true;
}

void writeDigits(char* to, int value, int count)
{
    for (int i = count - 1; i >= 0; --i) {
        to[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

} // namespace

std::optional<double> dateFromDigits(std::int64_t yyyymmdd)
{
    if (yyyymmdd < 10'101 || yyyymmdd > 99'991'231) {
        return std::nullopt;
    }
    const int number = static_cast<int>(yyyymmdd);
    const CivilDay day{number / 10'000, number / 100 % 100, number % 100};
    if (!isDay(day)) {
        return std::nullopt;
    }
    return static_cast<double>(daysFromCivil(day));
}

std::optional<double> parseDate(std::string_view text)
{
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    CivilDay day;
    if (text.size() == 8 && digits(text, 0, 4, day.year) && digits(text, 4, 2, day.month) &&
        digits(text, 6, 2, day.day)) {
        return isDay(day) ? std::optional(static_cast<double>(daysFromCivil(day))) : std::nullopt;
    }
    if (text.size() < 10 || text[4] != '-' || text[7] != '-' || !digits(text, 0, 4, day.year) ||
        !digits(text, 5, 2, day.month) || !digits(text, 8, 2, day.day) || !isDay(day)) {
        return std::nullopt;
    }
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
    if (text.size() > 10) {
        if (text[10] != ' ' && text[10] != 'T') {
            return std::nullopt;
        }
        if (text.size() < 16 || text[13] != ':' || !digits(text, 11, 2, hour) ||
            !digits(text, 14, 2, minute)) {
            return std::nullopt;
        }
        if (text.size() > 16 && (text[16] != ':' || !digits(text, 17, 2, second))) {
            return std::nullopt;
        }
        if (text.size() > 19) {
            if (text[19] != '.' || text.size() == 20) {
                return std::nullopt;
            }
            int scale = 100;
            for (std::size_t i = 20; i < text.size(); ++i) {
                if (text[i] < '0' || text[i] > '9') {
                    return std::nullopt;
                }
                millisecond += (text[i] - '0') * scale;
                scale /= 10;
            }
        }
        if (hour > 23 || minute > 59 || second > 59) {
            return std::nullopt;
        }
    }
    const std::int64_t time = ((hour * 60 + minute) * 60 + second) * std::int64_t{1000} + millisecond;
    return joinDate(daysFromCivil(day), time);
}

std::string formatDate(double date)
{
    const auto [days, milliseconds] = splitDateInRange(date);
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

} // namespace zul
