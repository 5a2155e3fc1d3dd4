// The machine's time zone: the one platform function behind the dates of a listing.
#pragma once

#include <cstdint>
#include <optional>

namespace zul::ftp {

/// A file time (100-nanosecond units since 1601-01-01 UTC) as the same count in local time, by the offset in
/// force at that moment. Nothing when it cannot be converted: a count of 2^63 or more, a moment that the zone
/// cannot place, or a local time before 1601.
std::optional<std::uint64_t> fileTimeToLocalFileTime(std::uint64_t fileTime);

} // namespace zul::ftp
