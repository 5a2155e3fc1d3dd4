// Numbers, dates and truth values as texts, in the way of a country.
//
// Numbers: blanks, signs, the country's currency sign and brackets (a negative number) around, groups (not checked for
// their length and taken behind the decimal sign too, as the system does), one decimal sign, an exponent; "&H1F" and
// "&O17". In Italian "1.234,5" is 1234.5 and "18.5" is 185; in English "1,234.5" is 1234.5 and "18,5" is 185.
//
// Dates: day, month and year in the country's order, in another one where that alone makes a date; months as numbers
// or names, parted by "/", "-", blanks or commas, and by "." where the country does so; names of days are passed over.
// Two-digit years are 1950 to 2049; without a year it is this year, without a day the first. A time with ":" (with "."
// where that is no sign of a date), before or behind the day, with or without AM and PM; "6 pm" is one as well.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <wtypes.h>

#include "automation/runtime/LocaleStyle.h"

namespace zul::runtime {

// A text that is a number.
struct NumberText
{
    // "-1234.5e6", for std::from_chars and Decimal::fromPlain.
    std::string plain;
    // Instead of it the bits of "&H1F": as many as the type that is wanted has.
    std::optional<std::uint64_t> bits;
};

// Nothing when it is no number. The text ends at its first zero.
std::optional<NumberText> readNumber(std::u16string_view text, const LocaleStyle& style);
// A real number as "1234.5" or "1.5e+20", with no more digits than told; a half of the last one goes away from zero.
std::string plainReal(double value, int digits);
// The plain form with the country's decimal sign.
std::u16string localNumber(std::string_view plain, const LocaleStyle& style);

std::optional<DATE> readDate(std::u16string_view text, const LocaleStyle& style);
// The day, the time when it is not midnight, the time alone on day 0.
std::u16string formatDate(DATE date, const LocaleStyle& style);
// 0100-01-01 to 9999-12-31.
bool isDateInRange(double value) noexcept;

// "True" and "False" in any case, "#TRUE#" and "#FALSE#"; the language's own words when localized. Nothing for any other text.
std::optional<bool> readTruth(std::u16string_view text, const LocaleStyle& style, bool localized);

// A blank, a tab or another sign that only parts.
inline bool isBlank(char16_t c) noexcept
{
    return c == u' ' || (c >= 0x09 && c <= 0x0D) || c == 0xA0 || c == 0x202F;
}

inline bool isDigit(char16_t c) noexcept
{
    return c >= u'0' && c <= u'9';
}

} // namespace zul::runtime
