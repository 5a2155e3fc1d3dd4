#pragma once
// Dates as the database keeps them: "YYYY-MM-DD HH:MM:SS.mmm".
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/AutomationDate.h"

namespace zul {

/// Reads "YYYY-MM-DD", with an optional time "HH:MM[:SS[.f…]]" behind a blank or a "T", or "YYYYMMDD"; blanks
/// may follow. Nothing when the text is no such date; years run from 1 to 9999.
std::optional<double> parseDate(std::string_view text);

/// The automation date of a day written as the number YYYYMMDD; nothing when there is no such day.
std::optional<double> dateFromDigits(std::int64_t yyyymmdd);

/// "YYYY-MM-DD HH:MM:SS.mmm"; a date outside the years 1 to 9999 gives the nearest bound, what is no number
/// day 0.
std::string formatDate(double date);

} // namespace zul
