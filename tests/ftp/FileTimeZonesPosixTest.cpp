// File times in the machine's zone, which a process can choose for itself here.
#include "ftp/FileTime.h"
#include "ftp/LocalTime.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace zul::test {
namespace {

constexpr std::uint64_t Day = 864'000'000'000ULL;
constexpr std::uint64_t Hour = Day / 24;

/// Another time zone as long as it lives.
class Zone
{
public:
    explicit Zone(const char* name)
    {
        if (const char* previous = std::getenv("TZ")) {
            m_previous = previous;
        }
        setenv("TZ", name, 1);
        tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;
    ~Zone()
    {
        if (m_previous) {
            setenv("TZ", m_previous->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

private:
    std::optional<std::string> m_previous;
};

TEST(FileTimeZonesTest, LocalTimeIsTheMachinesZoneAtThatMoment)
{
    const Zone rome("CET-1CEST,M3.5.0,M10.5.0/3");
    constexpr std::uint64_t winter = (109'205ULL + 45'306) * Day; // 2024-01-15 00:00
    constexpr std::uint64_t summer = (109'205ULL + 45'488) * Day; // 2024-07-15 00:00
    EXPECT_EQ(ftp::fileTimeToLocalFileTime(winter), winter + Hour);
    EXPECT_EQ(ftp::fileTimeToLocalFileTime(summer), summer + 2 * Hour);
    EXPECT_DOUBLE_EQ(ftp::fileTimeToLocalDate(winter), 45'306 + 1.0 / 24);
}

TEST(FileTimeZonesTest, WestOfGreenwichIsEarlier)
{
    const Zone west("WWW5");
    EXPECT_EQ(ftp::fileTimeToLocalFileTime(150'000 * Day), 150'000 * Day - 5 * Hour);
    EXPECT_EQ(ftp::fileTimeToLocalFileTime(0), std::nullopt) << "before 1601";
    EXPECT_EQ(ftp::fileTimeToLocalDate(0), 0);
}

} // namespace
} // namespace zul::test
