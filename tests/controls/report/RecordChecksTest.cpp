#include "controls/report/RecordChecks.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

using zul::RecordChecks;

TEST(RecordChecks, CountsWhatIsSet)
{
    RecordChecks checks;
    EXPECT_FALSE(checks.isSet(0));
    EXPECT_FALSE(checks.isSet(4'000'000'000U));
    EXPECT_EQ(checks.count(), 0U);
    checks.set(70, true);
    checks.set(70, true);
    EXPECT_TRUE(checks.isSet(70));
    EXPECT_FALSE(checks.isSet(6));
    EXPECT_EQ(checks.count(), 1U);
    checks.set(70, false);
    checks.set(69, false);
    EXPECT_EQ(checks.count(), 0U);
}

TEST(RecordChecks, SetsAllAndNoneBeyond)
{
    for (const uint32_t records : {0U, 1U, 63U, 64U, 65U, 1000U}) {
        RecordChecks checks;
        checks.set(2000, true);
        checks.setAll(records, true);
        EXPECT_EQ(checks.count(), records);
        EXPECT_FALSE(checks.isSet(records));
        EXPECT_FALSE(checks.isSet(2000));
        EXPECT_EQ(checks.isSet(records - 1), records > 0);
        checks.setAll(records, false);
        EXPECT_EQ(checks.count(), 0U);
    }
}

TEST(RecordChecks, InvertsWhatIsThereAndNothingBeyond)
{
    for (const uint32_t records : {0U, 1U, 63U, 64U, 65U, 1000U}) {
        RecordChecks checks;
        checks.set(0, records > 0);
        checks.invert(records);
        EXPECT_EQ(checks.count(), records > 0 ? records - 1 : 0U);
        EXPECT_FALSE(checks.isSet(0));
        EXPECT_FALSE(checks.isSet(records));
        checks.invert(records);
        EXPECT_EQ(checks.count(), records > 0 ? 1U : 0U);
        EXPECT_EQ(checks.isSet(0), records > 0);
    }
}

TEST(RecordChecks, ChangesTellWhetherWhatWasReckonedIsStillGood)
{
    RecordChecks checks;
    RecordChecks other;
    other.setAll(10, true);
    const uint64_t before = checks.changes();
    checks.swap(other);
    EXPECT_NE(checks.changes(), before);
    EXPECT_EQ(checks.count(), 10U);
    EXPECT_EQ(other.count(), 0U);
}

TEST(RecordChecks, AgreesWithASetOfRecords)
{
    std::mt19937 random(7);
    RecordChecks checks;
    std::set<uint32_t> expected;
    for (int step = 0; step < 20'000; ++step) {
        const auto record = static_cast<uint32_t>(random() % 500);
        const bool checked = random() % 2 == 0;
        checks.set(record, checked);
        if (checked) {
            expected.insert(record);
        } else {
            expected.erase(record);
        }
        ASSERT_EQ(checks.count(), expected.size());
    }
    for (uint32_t record = 0; record < 600; ++record) {
        EXPECT_EQ(checks.isSet(record), expected.count(record) > 0) << record;
    }
}
