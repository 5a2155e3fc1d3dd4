#include "ftp/LocalTime.h"

#include <windows.h>

namespace zul::ftp {

namespace {

FILETIME fromCount(std::uint64_t count)
{
    return {static_cast<DWORD>(count), static_cast<DWORD>(count >> 32U)};
}

std::uint64_t toCount(const FILETIME& time)
{
    return std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime;
}

} // namespace

std::optional<std::uint64_t> fileTimeToLocalFileTime(std::uint64_t fileTime)
{
    // Not the system's function of this name: that one takes today's offset for every moment of the year.
    const FILETIME given = fromCount(fileTime);
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    FILETIME result{};
    if (!FileTimeToSystemTime(&given, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) ||
        !SystemTimeToFileTime(&local, &result)) {
        return std::nullopt;
    }
    // A system time has milliseconds; what is finer stays.
    constexpr std::uint64_t unitsPerMillisecond = 10'000;
    return toCount(result) + fileTime % unitsPerMillisecond;
}

} // namespace zul::ftp
