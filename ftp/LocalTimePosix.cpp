#include "ftp/LocalTime.h"

#include "ftp/FileTime.h"

#include <ctime>

namespace zul::ftp {

std::optional<std::uint64_t> fileTimeToLocalFileTime(std::uint64_t fileTime)
{
    constexpr std::uint64_t unitsPerSecond = 10'000'000;
    constexpr std::uint64_t firstRefused = std::uint64_t{1} << 63U;
    if (fileTime >= firstRefused) {
        return std::nullopt;
    }

    const std::chrono::seconds since1601{fileTime / unitsPerSecond};
    const std::time_t moment = (fileTimeDayZero + since1601).time_since_epoch().count();
    std::tm local{};
    if (localtime_r(&moment, &local) == nullptr) {
        return std::nullopt;
    }
    const std::int64_t result =
        static_cast<std::int64_t>(fileTime) + local.tm_gmtoff * static_cast<std::int64_t>(unitsPerSecond);
    if (result < 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(result);
}

} // namespace zul::ftp
