#include "base/DateText.h"

#include <gtest/gtest.h>

#include <limits>

using namespace zul;

TEST(DateText, ReadsEveryFormThatStandsInDatabases)
{
    const double day = static_cast<double>(daysFromCivil({2024, 5, 1}));
    EXPECT_EQ(parseDate("2024-05-01"), day);
    EXPECT_EQ(parseDate("20240501"), day);
    EXPECT_EQ(parseDate("2024-05-01 12:00"), day + 0.5);
    EXPECT_EQ(parseDate("2024-05-01T12:00:00"), day + 0.5);
    EXPECT_EQ(parseDate("2024-05-01 12:00:00.000"), day + 0.5);
    EXPECT_EQ(parseDate("2024-05-01 06:00:00.0000000"), day + 0.25);
    EXPECT_EQ(parseDate("2024-05-01  "), day);
}

TEST(DateText, RefusesWhatIsNoDate)
{
    for (const char* text :
         {"", "x", "2024-13-01", "2024-02-30", "2023-02-29", "0000-01-01", "2024-05-01 24:00",
          "2024-05-01 12", "2024-05-01 12:60", "2024-05-01 12:00:61", "2024-05-01 12:00:00.",
          "2024-05-01 12:00:00.x", "20241301", "2024/05/01", "2024-05-01x"}) {
        EXPECT_FALSE(parseDate(text)) << text;
    }
    EXPECT_FALSE(dateFromDigits(20240230));
    EXPECT_FALSE(dateFromDigits(-1));
    EXPECT_EQ(dateFromDigits(20240501), static_cast<double>(daysFromCivil({2024, 5, 1})));
}

TEST(DateText, KeepsTheMillisecondThereAndBack)
{
    for (const char* text :
         {"2024-05-01 23:59:59.999", "1930-01-01 00:00:00.001", "9999-12-31 23:59:59.999",
          "1899-12-30 14:05:09.123", "1753-01-01 18:30:00.250", "0001-01-01 00:00:00.000"}) {
        const auto date = parseDate(text);
        ASSERT_TRUE(date) << text;
        EXPECT_EQ(formatDate(*date), text);
    }
}

TEST(DateText, CountsTheTimeForwardBeforeTheEpoch)
{
    EXPECT_EQ(parseDate("1899-12-29 06:00"), -1.25);
    EXPECT_EQ(formatDate(-1.25), "1899-12-29 06:00:00.000");
}

TEST(DateText, WritesTheNearestBoundOfADateOutOfRange)
{
    EXPECT_EQ(formatDate(1e18), "9999-12-31 23:59:59.999");
    EXPECT_EQ(formatDate(-1e18), "0001-01-01 00:00:00.000");
    EXPECT_EQ(formatDate(2'958'465.999'999'999'9), "9999-12-31 23:59:59.999")
        << "rounds up to the year 10000";
    EXPECT_EQ(formatDate(std::numeric_limits<double>::quiet_NaN()), "1899-12-30 00:00:00.000");
}
