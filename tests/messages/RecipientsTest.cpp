#include "messages/Recipients.h"

#include "messages/OutcomeLines.h"
#include "tests/messages/FakeRecipients.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class WalkMarkedRowsTest : public ::testing::Test
{
protected:
    WalkMarkedRowsTest()
    {
        rows.rows = {{u"1"_s, {}, {}, {}}, {u"2"_s, {}, {}, {}, false}, {u"3"_s, {}, {}, {}}};
    }

    FakeRecipients rows;
    QList<int> handled;
};

TEST_F(WalkMarkedRowsTest, HandsOverTheMarkedRowsInTheirOrder)
{
    const auto handle = [&](int row) {
        handled.append(row);
        return true;
    };
    EXPECT_TRUE(walkMarkedRows(rows, false, handle));
    EXPECT_EQ(handled, (QList<int>{0, 2}));
    EXPECT_EQ(rows.marks(), u"x-x"_s);
    EXPECT_TRUE(walkMarkedRows(rows, true, handle));
    EXPECT_EQ(rows.marks(), u"---"_s);
}

TEST_F(WalkMarkedRowsTest, ARunThatBreaksOffKeepsTheMarkOfItsRow)
{
    EXPECT_FALSE(walkMarkedRows(rows, true, [](int row) { return row == 0; }));
    EXPECT_EQ(rows.marks(), u"--x"_s);
    rows.rows[0].marked = true;
    EXPECT_THROW(walkMarkedRows(rows, true, [](int) -> bool { throw Error(RunTime::Overflow); }), Error);
    EXPECT_EQ(rows.marks(), u"x-x"_s);
}

TEST(OutcomeLinesTest, TagsAreNineCharactersLong)
{
    EXPECT_EQ(outcomeLine(OutcomeTag::Prepared, u"x"_s), u"OK     - x"_s);
    EXPECT_EQ(outcomeLine(OutcomeTag::Skipped, u"x"_s), u"ERRORE - x"_s);
    EXPECT_EQ(outcomeLine(OutcomeTag::NotSent, u"x"_s), u"ERR    - x"_s);
    EXPECT_EQ(separatorLine(), u"       - "_s + QString(100, u'*'));
}

} // namespace
} // namespace zul
