// File times in the machine's zone. The tests are run in that of Rome: a process cannot choose one for itself here.
#include "ftp/FileTime.h"
#include "ftp/LocalTime.h"

#include <gtest/gtest.h>

namespace zul::test {
namespace {

constexpr std::uint64_t Day = 864'000'000'000ULL;
constexpr std::uint64_t Hour = Day / 24;

TEST(FileTimeZonesTest, LocalTimeIsTheMachinesZoneAtThatMoment)
{
    constexpr std::uint64_t winter = (109'205ULL + 45'306) * Day; // 2024-01-15 00:00
    constexpr std::uint64_t summer = (109'205ULL + 45'488) * Day; // 2024-07-15 00:00
    EXPECT_EQ(ftp::fileTimeToLocalFileTime(winter), winter + Hour);
    EXPECT_EQ(ftp::fileTimeToLocalFileTime(summer), summer + 2 * Hour) << "whatever is in force today";
    EXPECT_DOUBLE_EQ(ftp::fileTimeToLocalDate(winter), 45'306 + 1.0 / 24);
    EXPECT_EQ(ftp::fileTimeToLocalFileTime(winter + 12'345), winter + Hour + 12'345) << "to the last unit";
}

} // namespace
} // namespace zul::test
