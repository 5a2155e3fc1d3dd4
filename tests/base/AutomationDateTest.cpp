#include "base/AutomationDate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <limits>

namespace zul {

TEST(AutomationDateTest, CountsTheTimeForwardBeforeDay0)
{
    EXPECT_EQ(splitDate(1.25), (DayAndTime{1, 21'600'000}));
    EXPECT_EQ(splitDate(-1.25), (DayAndTime{-1, 21'600'000}));
    EXPECT_EQ(splitDate(0.5), (DayAndTime{0, 43'200'000}));
    EXPECT_EQ(joinDate(-1, 21'600'000), -1.25);
    EXPECT_EQ(joinDate(1, 21'600'000), 1.25);
    EXPECT_EQ(civilFromDate(-1.25), (CivilDay{1899, 12, 29}));
}

TEST(AutomationDateTest, ATimeThatRoundsUpToMidnightIsTheNextDays)
{
    EXPECT_EQ(splitDate(45'000 + 86'399'999.7 / 86'400'000), (DayAndTime{45'001, 0}));
    EXPECT_EQ(splitDate(-2 - 86'399'999.7 / 86'400'000), (DayAndTime{-1, 0}));
    EXPECT_EQ(splitDate(45'000 + 86'399'999.2 / 86'400'000), (DayAndTime{45'000, 86'399'999}));
}

TEST(AutomationDateTest, KeepsEveryMillisecondOfADay)
{
    for (const std::int64_t day :
         {firstAutomationDay, std::int64_t{-1}, std::int64_t{0}, lastAutomationDay}) {
        for (std::int64_t time = 0; time < millisecondsPerDay; time += 997) {
            ASSERT_EQ(splitDate(joinDate(day, time)), (DayAndTime{day, time}));
        }
    }
}

TEST(AutomationDateTest, TakesAnyNumber)
{
    EXPECT_EQ(splitDate(std::numeric_limits<double>::quiet_NaN()), DayAndTime{});
    for (const double large : {1e15, 1e18, 1e300, std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(splitDate(large), (DayAndTime{1'000'000'000'000'000, 0}));
        EXPECT_EQ(splitDate(-large), (DayAndTime{-1'000'000'000'000'000, 0}));
        EXPECT_EQ(civilFromDate(large), (CivilDay{9999, 12, 31}));
        EXPECT_EQ(civilFromDate(-large), (CivilDay{1, 1, 1}));
    }
    EXPECT_EQ(civilFromDate(std::numeric_limits<double>::quiet_NaN()), (CivilDay{1899, 12, 30}));
}

TEST(AutomationDateTest, KeepsDatesInTheYearsThatDatabasesKnow)
{
    EXPECT_EQ(splitDateInRange(-1.25), (DayAndTime{-1, 21'600'000}));
    EXPECT_EQ(splitDateInRange(-693'594.5), (DayAndTime{firstAutomationDay, 0}));
    EXPECT_EQ(splitDateInRange(2'958'466.0), (DayAndTime{lastAutomationDay, millisecondsPerDay - 1}));
    EXPECT_EQ(splitDateInRange(1e300), (DayAndTime{lastAutomationDay, millisecondsPerDay - 1}));
}

TEST(AutomationDateTest, NowIsTheMachinesLocalTime)
{
    const std::time_t before = std::time(nullptr);
    const double now = currentDate();
    std::tm local{};
    localtime_r(&before, &local);
    const CivilDay today{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
    const double expected = joinDate(
        daysFromCivil(today), ((std::int64_t{local.tm_hour} * 60 + local.tm_min) * 60 + local.tm_sec) * 1000);
    EXPECT_NEAR(now, expected, 5.0 / 86'400);
}

} // namespace zul
