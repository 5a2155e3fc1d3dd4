#include "base/CivilDay.h"

#include <gtest/gtest.h>

namespace zul {

TEST(CivilDayTest, CountsDaysFromTheAutomationEpoch)
{
    EXPECT_EQ(daysFromCivil({1899, 12, 30}), 0);
    EXPECT_EQ(daysFromCivil({1900, 1, 1}), 2);
    EXPECT_EQ(daysFromCivil({1970, 1, 1}), 25'569);
    EXPECT_EQ(daysFromCivil({2024, 2, 29}), 45'351);
    EXPECT_EQ(daysFromCivil({9999, 12, 31}), 2'958'465);
    EXPECT_EQ(daysFromCivil({1753, 1, 1}), -53'688);
    EXPECT_EQ(daysFromCivil({1, 1, 1}), -693'593);
}

TEST(CivilDayTest, GoesThereAndBackForEveryDay)
{
    CivilDay before = civilFromDays(daysFromCivil({1, 1, 1}) - 1);
    for (std::int64_t day = daysFromCivil({1, 1, 1}); day <= daysFromCivil({9999, 12, 31}); ++day) {
        const CivilDay civil = civilFromDays(day);
        ASSERT_EQ(daysFromCivil(civil), day);
        ASSERT_LT(before, civil);
        ASSERT_TRUE(isDay(civil));
        before = civil;
    }
}

TEST(CivilDayTest, KnowsWhichDaysThereAre)
{
    EXPECT_TRUE(isDay({2024, 2, 29}));
    EXPECT_TRUE(isDay({2000, 2, 29}));
    for (const CivilDay& none :
         {CivilDay{2023, 2, 29}, CivilDay{1900, 2, 29}, CivilDay{2024, 2, 30}, CivilDay{2024, 4, 31},
          CivilDay{2024, 0, 1}, CivilDay{2024, 13, 1}, CivilDay{2024, 1, 0}, CivilDay{2024, 1, 32},
          CivilDay{2024, 257, 1}, CivilDay{2024, 1, 257}, CivilDay{2024, -1, -1}, CivilDay{0, 1, 1},
          CivilDay{10'000, 1, 1}, CivilDay{65'536 + 2024, 1, 1}}) {
        EXPECT_FALSE(isDay(none)) << none.year << '-' << none.month << '-' << none.day;
    }
}

} // namespace zul
