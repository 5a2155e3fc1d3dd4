#include "automation/runtime/VariantText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <vector>

#include "base/CaseFold.h"
#include "base/Utf8.h"

namespace zul::runtime {

namespace {

constexpr long secondsPerDay = 86400;
constexpr double lowestDate = -657434.0;        // 0100-01-01
constexpr double beyondHighestDate = 2958466.0; // 10000-01-01

bool isBlank(char16_t c) noexcept
{
    return c == u' ' || (c >= 0x09 && c <= 0x0D) || c == 0xA0 || c == 0x202F;
}

bool isDigit(char16_t c) noexcept
{
    return c >= u'0' && c <= u'9';
}

bool isLetter(char16_t c) noexcept
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= 0xC0 && c <= 0xFF);
}

std::u16string_view trimmed(std::u16string_view text) noexcept
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// "&H1F", "&O17"; up to 32 bits, as signed numbers.
std::optional<std::string> plainFromBase(std::u16string_view text)
{
    const int base = text[1] == u'H' || text[1] == u'h' ? 16 : text[1] == u'O' || text[1] == u'o' ? 8 : 0;
    const std::string digits = utf8FromUtf16(text.substr(2));
    std::uint32_t value = 0;
    const char* const end = digits.data() + digits.size();
    if (base == 0 || digits.empty()) {
        return std::nullopt;
    }
    const std::from_chars_result read = std::from_chars(digits.data(), end, value, base);
    if (read.ec != std::errc() || read.ptr != end) {
        return std::nullopt;
    }
    return std::to_string(static_cast<std::int32_t>(value));
}

// Days since 1899-12-30 of a day in the proleptic Gregorian calendar.
long dayNumber(long year, long month, long day) noexcept
{
    year -= month <= 2 ? 1 : 0;
    const long era = (year >= 0 ? year : year - 399) / 400;
    const long yearOfEra = year - era * 400;
    const long dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const long dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468 + 25569; // 1970-01-01 is day 25569
}

struct Day
{
    long year;
    long month;
    long day;
};

Day dayOf(long number) noexcept
{
    const long z = number - 25569 + 719468;
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
    const Day back = dayOf(dayNumber(day.year, day.month, day.day));
    return back.month == day.month && back.day == day.day;
}

constexpr std::array<std::u16string_view, 12> englishMonths{
    u"january", u"february", u"march",     u"april",   u"may",      u"june",
    u"july",    u"august",   u"september", u"october", u"november", u"december"};
constexpr std::array<std::u16string_view, 12> italianMonths{
    u"gennaio", u"febbraio", u"marzo",     u"aprile",  u"maggio",   u"giugno",
    u"luglio",  u"agosto",   u"settembre", u"ottobre", u"novembre", u"dicembre"};

// 1 to 12 for a name or its first three letters, 0 for any other word.
long monthOf(std::u16string_view word) noexcept
{
    for (const auto* months : {&italianMonths, &englishMonths}) {
        for (std::size_t i = 0; i < months->size(); ++i) {
            if (equalNames(word, (*months)[i]) || equalNames(word, (*months)[i].substr(0, 3))) {
                return static_cast<long>(i) + 1;
            }
        }
    }
    return 0;
}

struct Number
{
    long value;
    std::size_t digits;
};

// The parts of a date text, in the order in which they stand.
struct DateParts
{
    std::vector<Number> numbers; // of the day
    std::vector<long> time;      // hours, minutes, seconds
    long month = 0;              // by name
    std::size_t namedAt = 0;     // numbers before the month's name
    int half = 0;                // 1 AM, 2 PM
    bool dots = false;
};

std::optional<Number> readNumber(std::u16string_view text, std::size_t& at) noexcept
{
    Number number{0, 0};
    for (; at < text.size() && isDigit(text[at]); ++at, ++number.digits) {
        if (number.digits == 4) {
            return std::nullopt;
        }
        number.value = number.value * 10 + (text[at] - u'0');
    }
    return number;
}

bool takeWord(std::u16string_view word, DateParts& parts) noexcept
{
    if (equalNames(word, u"am") || equalNames(word, u"pm")) {
        const bool first = parts.half == 0;
        parts.half = equalNames(word, u"am") ? 1 : 2;
        return first && !parts.time.empty();
    }
    if (equalNames(word, u"t")) {
        return parts.numbers.size() == 3 && parts.time.empty();
    }
    const bool first = parts.month == 0;
    parts.month = monthOf(word);
    parts.namedAt = parts.numbers.size();
    return first && parts.month != 0;
}

std::optional<DateParts> readParts(std::u16string_view text)
{
    DateParts parts;
    for (std::size_t i = 0; i < text.size();) {
        const char16_t c = text[i];
        if (isDigit(c)) {
            const std::optional<Number> number = readNumber(text, i);
            if (!number) {
                return std::nullopt;
            }
            const bool inTime =
                !parts.time.empty() && i > number->digits && text[i - number->digits - 1] == u':';
            const bool startsTime = parts.time.empty() && i < text.size() && text[i] == u':';
            if (inTime || startsTime) {
                parts.time.push_back(number->value);
            } else {
                parts.numbers.push_back(*number);
            }
            if (parts.time.size() > 3 || parts.numbers.size() > 3) {
                return std::nullopt;
            }
        } else if (isLetter(c)) {
            std::size_t end = i;
            while (end < text.size() && isLetter(text[end])) {
                ++end;
            }
            if (!takeWord(text.substr(i, end - i), parts)) {
                return std::nullopt;
            }
            i = end;
        } else if (c == u'/' || c == u'-' || c == u'.' || c == u':') {
            // Between two parts only, and not twice.
            const bool between = i > 0 && i + 1 < text.size() &&
                                 (isDigit(text[i - 1]) || isLetter(text[i - 1])) &&
                                 (isDigit(text[i + 1]) || isLetter(text[i + 1]) || isBlank(text[i + 1]));
            if (!between || (c == u':' && !isDigit(text[i + 1]))) {
                return std::nullopt;
            }
            parts.dots = parts.dots || c == u'.';
            ++i;
        } else if (isBlank(c) || (c == u',' && i + 1 < text.size() && isBlank(text[i + 1]))) {
            ++i;
        } else {
            return std::nullopt;
        }
    }
    return parts;
}

long fullYear(const Number& number) noexcept
{
    if (number.digits > 2) {
        return number.value;
    }
    return number.value < 30 ? 2000 + number.value : 1900 + number.value;
}

long thisYear() noexcept
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local.tm_year + 1900;
}

std::optional<Day> validDay(const Day& day, bool mayExchange) noexcept
{
    if (isDay(day)) {
        return day;
    }
    const Day exchanged{day.year, day.day, day.month};
    return mayExchange && isDay(exchanged) ? std::optional(exchanged) : std::nullopt;
}

std::optional<Day> dayFromParts(const DateParts& parts, const LocaleStyle& style) noexcept
{
    const auto& n = parts.numbers;
    if (parts.month != 0) {
        if (n.size() == 2) {
            // "25 dicembre 2003", "December 25, 2003", "2003 Dec 25"
            const bool yearFirst = n[0].digits > 2;
            return validDay({fullYear(n[yearFirst ? 0 : 1]), parts.month, n[yearFirst ? 1 : 0].value}, false);
        }
        if (n.size() == 1) {
            return n[0].digits > 2 ? validDay({n[0].value, parts.month, 1}, false)
                                   : validDay({thisYear(), parts.month, n[0].value}, false);
        }
        return std::nullopt;
    }
    if (n.size() == 3) {
        if (n[0].digits > 2 || style.dateOrder == DateOrder::YearMonthDay) {
            return validDay({fullYear(n[0]), n[1].value, n[2].value}, true);
        }
        const bool monthFirst = style.dateOrder == DateOrder::MonthDayYear;
        return validDay({fullYear(n[2]), n[monthFirst ? 0 : 1].value, n[monthFirst ? 1 : 0].value}, true);
    }
    if (n.size() == 2 && !parts.dots) {
        if (n[1].digits > 2) {
            return validDay({n[1].value, n[0].value, 1}, false);
        }
        const bool dayFirst = style.dateOrder == DateOrder::DayMonthYear;
        return validDay({thisYear(), n[dayFirst ? 1 : 0].value, n[dayFirst ? 0 : 1].value}, true);
    }
    return std::nullopt;
}

std::optional<long> secondsFromParts(const DateParts& parts) noexcept
{
    if (parts.time.size() < 2) {
        return std::nullopt;
    }
    long hours = parts.time[0];
    const long minutes = parts.time[1];
    const long seconds = parts.time.size() > 2 ? parts.time[2] : 0;
    if (parts.half != 0) {
        if (hours < 1 || hours > 12) {
            return std::nullopt;
        }
        hours = hours % 12 + (parts.half == 2 ? 12 : 0);
    }
    if (hours > 23 || minutes > 59 || seconds > 59) {
        return std::nullopt;
    }
    return hours * 3600 + minutes * 60 + seconds;
}

} // namespace

std::optional<std::string> plainNumber(std::u16string_view text, const LocaleStyle& style)
{
    text = trimmed(text);
    if (text.size() > 2 && text[0] == u'&') {
        return plainFromBase(text);
    }
    bool negative = false;
    bool signSeen = false;
    bool currencySeen = false;
    // Sign and currency may stand in either order on either side of the digits, each once.
    const auto takeSide = [&](bool front) {
        while (!text.empty()) {
            const char16_t c = front ? text.front() : text.back();
            if ((c == u'-' || c == u'+') && !signSeen) {
                signSeen = true;
                negative = c == u'-';
            } else if (c == 0x20AC && !currencySeen) {
                currencySeen = true;
            } else if (!isBlank(c)) {
                return;
            }
            front ? text.remove_prefix(1) : text.remove_suffix(1);
        }
    };
    takeSide(true);
    takeSide(false);

    std::string plain = negative ? "-" : "";
    bool digits = false;
    std::size_t i = 0;
    for (; i < text.size() && (isDigit(text[i]) || (digits && text[i] == style.thousands)); ++i) {
        if (isDigit(text[i])) {
            plain.push_back(static_cast<char>(text[i]));
            digits = true;
        }
    }
    if (i < text.size() && text[i] == style.decimal) {
        ++i;
        plain += digits ? "." : "0.";
        const std::size_t begin = i;
        for (; i < text.size() && isDigit(text[i]); ++i) {
            plain.push_back(static_cast<char>(text[i]));
            digits = true;
        }
        if (i == begin) {
            plain.push_back('0'); // "5," is five
        }
    }
    if (!digits) {
        return std::nullopt;
    }
    if (i < text.size() && (text[i] == u'e' || text[i] == u'E')) {
        ++i;
        plain.push_back('e');
        if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
            plain.push_back(static_cast<char>(text[i++]));
        }
        const std::size_t begin = i;
        for (; i < text.size() && isDigit(text[i]); ++i) {
            plain.push_back(static_cast<char>(text[i]));
        }
        if (i == begin) {
            return std::nullopt;
        }
    }
    return i == text.size() ? std::optional(plain) : std::nullopt;
}

std::u16string localNumber(std::string_view plain, const LocaleStyle& style)
{
    std::u16string text;
    for (const char c : plain) {
        text.push_back(c == '.'   ? style.decimal
                       : c == 'e' ? u'E'
                                  : static_cast<char16_t>(static_cast<unsigned char>(c)));
    }
    return text;
}

std::optional<DATE> parseDate(std::u16string_view text, const LocaleStyle& style)
{
    text = trimmed(text);
    const std::optional<DateParts> parts = readParts(text);
    if (!parts || (parts->numbers.empty() && parts->time.empty())) {
        return std::nullopt;
    }
    long seconds = 0;
    if (!parts->time.empty()) {
        const std::optional<long> time = secondsFromParts(*parts);
        if (!time) {
            return std::nullopt;
        }
        seconds = *time;
    }
    double days = 0;
    if (!parts->numbers.empty() || parts->month != 0) {
        const std::optional<Day> day = dayFromParts(*parts, style);
        if (!day) {
            return std::nullopt;
        }
        days = static_cast<double>(dayNumber(day->year, day->month, day->day));
    }
    const double fraction = static_cast<double>(seconds) / static_cast<double>(secondsPerDay);
    // The time of day counts away from the day, also before day 0.
    return days < 0 ? days - fraction : days + fraction;
}

std::u16string formatDate(DATE date, const LocaleStyle& style)
{
    double whole = std::trunc(date);
    long seconds = std::lround(std::fabs(date - whole) * static_cast<double>(secondsPerDay));
    if (seconds == secondsPerDay) {
        seconds = 0;
        whole += 1;
    }
    char text[64] = "";
    std::string result;
    if (whole != 0.0) {
        const Day day = dayOf(std::lround(whole));
        switch (style.dateOrder) {
        case DateOrder::DayMonthYear:
            std::snprintf(text, sizeof text, "%02ld/%02ld/%04ld", day.day, day.month, day.year);
            break;
        case DateOrder::MonthDayYear:
            std::snprintf(text, sizeof text, "%ld/%ld/%04ld", day.month, day.day, day.year);
            break;
        case DateOrder::YearMonthDay:
            std::snprintf(text, sizeof text, "%04ld-%02ld-%02ld", day.year, day.month, day.day);
            break;
        }
        result = text;
    }
    if (seconds != 0 || whole == 0.0) {
        const long hours = seconds / 3600;
        const long minutes = seconds / 60 % 60;
        if (style.dateOrder == DateOrder::MonthDayYear) {
            std::snprintf(text, sizeof text, "%ld:%02ld:%02ld %s", (hours + 11) % 12 + 1, minutes,
                          seconds % 60, hours < 12 ? "AM" : "PM");
        } else {
            std::snprintf(text, sizeof text, "%02ld:%02ld:%02ld", hours, minutes, seconds % 60);
        }
        result += result.empty() ? "" : " ";
        result += text;
    }
    return utf16FromUtf8(result);
}

bool isDateInRange(double value) noexcept
{
    return value > lowestDate - 1 && value < beyondHighestDate;
}

std::optional<bool> parseTruth(std::u16string_view text, const LocaleStyle& style)
{
    if (equalNames(text, u"true") || equalNames(text, u"#true#") ||
        (style.italian && equalNames(text, u"vero"))) {
        return true;
    }
    if (equalNames(text, u"false") || equalNames(text, u"#false#") ||
        (style.italian && equalNames(text, u"falso"))) {
        return false;
    }
    return std::nullopt;
}

} // namespace zul::runtime
