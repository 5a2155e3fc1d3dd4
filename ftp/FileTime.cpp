#include "ftp/FileTime.h"

#include "ftp/LocalTime.h"

namespace zul::ftp {

double fileTimeToLocalDate(std::uint64_t fileTime, const LocalTimeConversion& toLocal)
{
    const std::optional<std::uint64_t> local =
        toLocal ? toLocal(fileTime) : fileTimeToLocalFileTime(fileTime);
    if (!local)
        return 0;
    constexpr double daysFrom1601To1899 = 109205;
    // Whole milliseconds and their fraction apart: together they would not fit into the digits of a double.
    const std::uint64_t whole = *local / 10'000;
    const double milliseconds = static_cast<double>(whole) + static_cast<double>(*local % 10'000) / 10'000;
    return milliseconds / 86'400'000 - daysFrom1601To1899;
}

std::uint64_t toFileTime(std::chrono::sys_seconds moment)
{
    constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;
    const std::int64_t seconds = moment.time_since_epoch().count() + secondsFrom1601To1970;
    return seconds < 0 ? 0 : static_cast<std::uint64_t>(seconds) * 10'000'000;
}

} // namespace zul::ftp
