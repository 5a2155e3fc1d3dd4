#include "ftp/FileTime.h"

#include "base/AutomationDate.h"
#include "ftp/LocalTime.h"

namespace zul::ftp {

double fileTimeToLocalDate(std::uint64_t fileTime, const LocalTimeConversion& toLocal)
{
    const std::optional<std::uint64_t> local =
        toLocal ? toLocal(fileTime) : fileTimeToLocalFileTime(fileTime);
    if (!local) {
        return 0;
    }
    constexpr auto daysBefore = static_cast<double>((automationDayZero - fileTimeDayZero).count());
    // Whole milliseconds and their fraction apart: together they would not fit into the digits of a double.
    const std::uint64_t whole = *local / 10'000;
    const double milliseconds = static_cast<double>(whole) + static_cast<double>(*local % 10'000) / 10'000;
    return milliseconds / static_cast<double>(millisecondsPerDay) - daysBefore;
}

std::uint64_t toFileTime(std::chrono::sys_seconds moment)
{
    const std::int64_t seconds = (moment - fileTimeDayZero).count();
    return seconds < 0 ? 0 : static_cast<std::uint64_t>(seconds) * 10'000'000;
}

} // namespace zul::ftp
