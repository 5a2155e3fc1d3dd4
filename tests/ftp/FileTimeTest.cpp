#include "ftp/FileTime.h"

#include "ftp/LocalTime.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace zul::test {
namespace {

constexpr std::uint64_t Day = 864'000'000'000ULL;
constexpr std::uint64_t Hour = Day / 24;

std::optional<std::uint64_t> asItIs(std::uint64_t time)
{
    return time;
}

TEST(FileTimeTest, TheStartOfDatesIs0)
{
    EXPECT_EQ(ftp::fileTimeToLocalDate(109'205 * Day, asItIs), 0);
}

TEST(FileTimeTest, AFailedConversionIs0)
{
    EXPECT_EQ(ftp::fileTimeToLocalDate(150'000 * Day, [](std::uint64_t) { return std::nullopt; }), 0);
    EXPECT_EQ(ftp::fileTimeToLocalDate(std::numeric_limits<std::uint64_t>::max()), 0);
}

TEST(FileTimeTest, TheTimeIsTheFraction)
{
    EXPECT_DOUBLE_EQ(ftp::fileTimeToLocalDate(109'206 * Day + 6 * Hour, asItIs), 1.25);
    EXPECT_DOUBLE_EQ(ftp::fileTimeToLocalDate(109'204 * Day, asItIs), -1);
    EXPECT_DOUBLE_EQ(ftp::fileTimeToLocalDate(0, asItIs), -109'205);
    // 2024-11-21 12:00 is day 45617.
    EXPECT_DOUBLE_EQ(ftp::fileTimeToLocalDate((109'205 + 45'617) * Day + 12 * Hour, asItIs), 45'617.5);
    // Half a millisecond is not lost.
    EXPECT_NEAR(ftp::fileTimeToLocalDate(109'205 * Day + 5000, asItIs) * 86'400'000, 0.5, 1e-3);
}

TEST(FileTimeTest, TimesOf2To63AndMoreFail)
{
    EXPECT_EQ(ftp::fileTimeToLocalFileTime(std::uint64_t{1} << 63U), std::nullopt);
    EXPECT_EQ(ftp::fileTimeToLocalFileTime(std::numeric_limits<std::uint64_t>::max()), std::nullopt);
}

TEST(FileTimeTest, MomentsBecomeFileTimes)
{
    using namespace std::chrono;
    EXPECT_EQ(ftp::toFileTime(sys_days{1899y / 12 / 30}), 109'205 * Day);
    EXPECT_EQ(ftp::toFileTime(sys_days{1601y / 1 / 1}), 0U);
    EXPECT_EQ(ftp::toFileTime(sys_days{1600y / 1 / 1}), 0U);
    EXPECT_EQ(ftp::toFileTime(sys_days{1601y / 1 / 2} + 1h), Day + Hour);
}

} // namespace
} // namespace zul::test
