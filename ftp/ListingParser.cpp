#include "ftp/ListingParser.h"

#include "base/CaseFold.h"
#include "ftp/FileTime.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

namespace zul::ftp {

namespace {

using std::chrono::sys_days;
using std::chrono::sys_seconds;
using std::chrono::year_month_day;

/// A word of a line and where it ends.
struct Word
{
    std::string_view text;
    std::size_t end = 0;
};

std::optional<Word> nextWord(std::string_view line, std::size_t from)
{
    const std::size_t start = line.find_first_not_of(" \t", from);
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t end = std::min(line.find_first_of(" \t", start), line.size());
    return Word{line.substr(start, end - start), end};
}

std::optional<std::uint64_t> number(std::string_view text)
{
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

/// A number of exactly or up to @p digits digits.
std::optional<int> smallNumber(std::string_view text, std::size_t minDigits, std::size_t maxDigits)
{
    const auto value = text.size() >= minDigits && text.size() <= maxDigits ? number(text) : std::nullopt;
    if (!value) {
        return std::nullopt;
    }
    return static_cast<int>(*value);
}

std::optional<unsigned> month(std::string_view text)
{
    constexpr std::array<std::string_view, 12> names{"jan", "feb", "mar", "apr", "may", "jun",
                                                     "jul", "aug", "sep", "oct", "nov", "dec"};
    for (unsigned i = 0; i < names.size(); ++i) {
        if (equalAscii(names[i], text)) {
            return i + 1;
        }
    }
    return std::nullopt;
}

std::optional<sys_days> day(int year, unsigned monthOfYear, int dayOfMonth)
{
    const year_month_day date{std::chrono::year{year}, std::chrono::month{monthOfYear},
                              std::chrono::day{static_cast<unsigned>(dayOfMonth)}};
    if (dayOfMonth < 1 || year < 1601 || year > 9999 || !date.ok()) {
        return std::nullopt;
    }
    return sys_days{date};
}

/// "3:41", "03:41", "03:41:22", each with or without AM or PM.
std::optional<std::chrono::seconds> clockTime(std::string_view text)
{
    int shift = 0;
    bool twelve = false;
    if (text.size() > 2 && (text.back() == 'M' || text.back() == 'm')) {
        const char half = text[text.size() - 2];
        if (half == 'P' || half == 'p') {
            shift = 12;
        } else if (half != 'A' && half != 'a') {
            return std::nullopt;
        }
        twelve = true;
        text.remove_suffix(2);
    }
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    auto hour = smallNumber(text.substr(0, colon), 1, 2);
    text.remove_prefix(colon + 1);
    const auto minute = smallNumber(text.substr(0, text.find(':')), 2, 2);
    auto second = std::optional<int>(0);
    if (const std::size_t next = text.find(':'); next != std::string_view::npos) {
        second = smallNumber(text.substr(next + 1, text.substr(next + 1).find('.')), 2, 2);
    }
    if (!hour || !minute || !second || *minute > 59 || *second > 60) {
        return std::nullopt;
    }
    if (twelve) {
        if (*hour < 1 || *hour > 12) {
            return std::nullopt;
        }
        *hour = *hour % 12 + shift;
    }
    if (*hour > 23) {
        return std::nullopt;
    }
    return std::chrono::hours{*hour} + std::chrono::minutes{*minute} + std::chrono::seconds{*second};
}

/// "2024-11-21".
std::optional<sys_days> isoDay(std::string_view text)
{
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') {
        return std::nullopt;
    }
    const auto year = smallNumber(text.substr(0, 4), 4, 4);
    const auto monthOfYear = smallNumber(text.substr(5, 2), 2, 2);
    const auto dayOfMonth = smallNumber(text.substr(8, 2), 2, 2);
    if (!year || !monthOfYear || !dayOfMonth) {
        return std::nullopt;
    }
    return day(*year, static_cast<unsigned>(*monthOfYear), *dayOfMonth);
}

/// "11-21-24", "11-21-2024", "2024-11-21": month first, as the MS-DOS form has it.
std::optional<sys_days> dosDay(std::string_view text)
{
    if (const auto iso = isoDay(text)) {
        return iso;
    }
    if ((text.size() != 8 && text.size() != 10) || text[2] != '-' || text[5] != '-') {
        return std::nullopt;
    }
    const auto monthOfYear = smallNumber(text.substr(0, 2), 2, 2);
    const auto dayOfMonth = smallNumber(text.substr(3, 2), 2, 2);
    auto year = smallNumber(text.substr(6), 2, 4);
    if (!monthOfYear || !dayOfMonth || !year) {
        return std::nullopt;
    }
    if (text.size() == 8) {
        *year += *year < 70 ? 2000 : 1900;
    }
    return day(*year, static_cast<unsigned>(*monthOfYear), *dayOfMonth);
}

/// A day and a time of day without the year: the last such moment that is not more than a day ahead.
std::optional<sys_seconds> lastSuch(unsigned monthOfYear, int dayOfMonth, std::chrono::seconds time,
                                    sys_seconds now)
{
    const int thisYear = static_cast<int>(year_month_day{std::chrono::floor<std::chrono::days>(now)}.year());
    // Of the years tried, only a leap one has a 29 February; a next year is meant around the turn of the year.
    for (int year = thisYear + 1; year > thisYear - 8; --year) {
        if (const auto date = day(year, monthOfYear, dayOfMonth)) {
            if (*date + time <= now + std::chrono::days{1}) {
                return *date + time;
            }
        }
    }
    return std::nullopt;
}

std::uint32_t withNameAttributes(std::uint32_t attributes, std::string_view name)
{
    if (name.starts_with('.') && name != "." && name != "..") {
        attributes |= AttributeHidden;
    }
    return attributes == 0 ? AttributeNormal : attributes;
}

/// The date of an `ls -l` line and where it ends.
struct DateField
{
    sys_seconds moment;
    std::size_t end = 0;
};

/// The date that starts with @p first: "Nov 21 03:41", "Nov 21 2023", "21 Nov 03:41" or "2024-11-21 03:41".
std::optional<DateField> dateField(std::string_view line, const Word& first, sys_seconds now)
{
    const auto second = nextWord(line, first.end);
    if (!second) {
        return std::nullopt;
    }
    if (const auto date = isoDay(first.text)) {
        const auto time = clockTime(second->text);
        if (!time) {
            return std::nullopt;
        }
        DateField field{*date + *time, second->end};
        // `ls --full-time` adds the zone.
        if (const auto zone = nextWord(line, second->end); zone && zone->text.size() == 5 &&
                                                           (zone->text[0] == '+' || zone->text[0] == '-') &&
                                                           second->text.find('.') != std::string_view::npos) {
            field.end = zone->end;
        }
        return field;
    }
    auto monthOfYear = month(first.text);
    auto dayOfMonth = smallNumber(second->text, 1, 2);
    if (!monthOfYear) {
        monthOfYear = month(second->text);
        dayOfMonth = smallNumber(first.text, 1, 2);
    }
    const auto third = nextWord(line, second->end);
    if (!monthOfYear || !dayOfMonth || !third) {
        return std::nullopt;
    }
    if (const auto year = smallNumber(third->text, 4, 4)) {
        const auto date = day(*year, *monthOfYear, *dayOfMonth);
        if (!date) {
            return std::nullopt;
        }
        return DateField{*date, third->end};
    }
    const auto time = clockTime(third->text);
    const auto moment = time ? lastSuch(*monthOfYear, *dayOfMonth, *time, now) : std::nullopt;
    if (!moment) {
        return std::nullopt;
    }
    return DateField{*moment, third->end};
}

bool isModeText(std::string_view text)
{
    constexpr std::string_view types = "-dlbcpsD";
    constexpr std::string_view rights = "rwxsStTlL-";
    if (text.size() < 10 || types.find(text[0]) == std::string_view::npos) {
        return false;
    }
    return text.substr(1, 9).find_first_not_of(rights) == std::string_view::npos;
}

/// The owner's and group's names may hold blanks or be missing, so the date is looked for: it is the first that
/// follows a number, the size.
std::optional<FindRecord> parseUnixLine(std::string_view line, sys_seconds now)
{
    const auto mode = nextWord(line, 0);
    if (!mode || !isModeText(mode->text)) {
        return std::nullopt;
    }

    std::optional<std::uint64_t> size;
    for (auto word = nextWord(line, mode->end); word; word = nextWord(line, word->end)) {
        if (size) {
            const auto date = dateField(line, *word, now);
            if (date && date->end + 1 < line.size()) {
                FindRecord record;
                record.name = line.substr(date->end + 1);
                if (mode->text[0] == 'l') {
                    record.name.resize(std::min(record.name.find(" -> "), record.name.size()));
                }
                if (record.name.empty()) {
                    return std::nullopt;
                }
                if (mode->text[0] == 'd') {
                    record.attributes |= AttributeDirectory;
                }
                if (mode->text[2] != 'w' && mode->text[5] != 'w' && mode->text[8] != 'w') {
                    record.attributes |= AttributeReadOnly;
                }
                record.attributes = withNameAttributes(record.attributes, record.name);
                record.lastWriteTime = toFileTime(date->moment);
                record.size = *size;
                return record;
            }
        }
        size = number(word->text);
    }
    return std::nullopt;
}

std::optional<FindRecord> parseDosLine(std::string_view line)
{
    const auto dateWord = nextWord(line, 0);
    const auto date = dateWord ? dosDay(dateWord->text) : std::nullopt;
    if (!date) {
        return std::nullopt;
    }
    auto timeWord = nextWord(line, dateWord->end);
    auto time = timeWord ? clockTime(timeWord->text) : std::nullopt;
    if (!time) {
        return std::nullopt;
    }
    auto sizeWord = nextWord(line, timeWord->end);
    if (sizeWord && (sizeWord->text == "AM" || sizeWord->text == "PM")) {
        time = clockTime(std::string(timeWord->text) + std::string(sizeWord->text));
        sizeWord = nextWord(line, sizeWord->end);
    }
    if (!time || !sizeWord) {
        return std::nullopt;
    }

    FindRecord record;
    std::size_t nameAt = sizeWord->end + 1;
    if (sizeWord->text.starts_with('<')) {
        if (sizeWord->text == "<DIR>") {
            record.attributes |= AttributeDirectory;
        }
        nameAt = line.find_first_not_of(' ', sizeWord->end);
    } else {
        std::string digits;
        for (const char c : sizeWord->text) {
            if (c != ',' && c != '.') {
                digits += c;
            }
        }
        const auto size = number(digits);
        if (!size) {
            return std::nullopt;
        }
        record.size = *size;
    }
    if (nameAt >= line.size()) {
        return std::nullopt;
    }
    record.name = line.substr(nameAt);
    record.attributes = withNameAttributes(record.attributes, record.name);
    record.lastWriteTime = toFileTime(*date + *time);
    return record;
}

} // namespace

std::optional<FindRecord> parseListingLine(std::string_view line, std::chrono::sys_seconds now)
{
    if (auto record = parseUnixLine(line, now)) {
        return record;
    }
    return parseDosLine(line);
}

Listing parseListing(std::string_view text, std::chrono::sys_seconds now, std::size_t maxEntries)
{
    Listing listing;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        auto record = parseListingLine(line, now);
        if (!record) {
            continue;
        }
        if (listing.entries.size() == maxEntries) {
            listing.tooMany = true;
            break;
        }
        listing.entries.push_back(std::move(*record));
    }
    return listing;
}

} // namespace zul::ftp
