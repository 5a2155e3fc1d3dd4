// Numbers, dates and truth values as texts, in the way of a country.
//
// Numbers: blanks around, one sign before or behind, a currency sign, groups (not checked for their length, as
// the system does not), one decimal sign, an exponent; "&H1F" and "&O17" are read too. In Italian "1.234,5" is
// 1234.5 and "18.5" is 185; in English "1,234.5" is 1234.5 and "18,5" is 185.
//
// Dates: day, month and year in the country's order (in the other one where that alone makes a date), the year
// first where it has four digits, months as numbers or names, "/", "-" or "." between; a time with ":", with or
// without AM/PM. Two-digit years are 1930 to 2029; without a year it is this year.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <wtypes.h>

#include "automation/runtime/LocaleStyle.h"

namespace zul::runtime {

// The number as "-1234.5e6", for std::from_chars and Decimal::fromPlain; nothing when it is no number.
std::optional<std::string> plainNumber(std::u16string_view text, const LocaleStyle& style);

// The same form with the country's decimal sign.
std::u16string localNumber(std::string_view plain, const LocaleStyle& style);

std::optional<DATE> parseDate(std::u16string_view text, const LocaleStyle& style);
// The day, the time when it is not midnight, the time alone on day 0.
std::u16string formatDate(DATE date, const LocaleStyle& style);
// 0100-01-01 to 9999-12-31.
bool isDateInRange(double value) noexcept;

// "True" and "False" in any case, also "#TRUE#", "Vero" and "Falso"; nothing for any other text.
std::optional<bool> parseTruth(std::u16string_view text, const LocaleStyle& style);

} // namespace zul::runtime
