// File times and dates.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace zul::ftp {

/// Day 0 of file times.
inline constexpr std::chrono::sys_days fileTimeDayZero{std::chrono::year{1601} / 1 / 1};

/// UTC file time to local file time; nothing when it fails.
using LocalTimeConversion = std::function<std::optional<std::uint64_t>(std::uint64_t)>;

/// A file time (100-nanosecond units since 1601-01-01 UTC) as a local date: days since 1899-12-30, the time as
/// the fraction. 0 when the conversion to local time fails. Without @p toLocal, by the machine's time zone.
double fileTimeToLocalDate(std::uint64_t fileTime, const LocalTimeConversion& toLocal = {});

/// The file time of @p moment; 0 before 1601.
std::uint64_t toFileTime(std::chrono::sys_seconds moment);

} // namespace zul::ftp
