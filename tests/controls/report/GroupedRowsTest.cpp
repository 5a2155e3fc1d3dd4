#include "controls/report/GroupedRows.h"

#include <gtest/gtest.h>

#include <QStringList>

using zul::GroupedRows;
using namespace Qt::StringLiterals;

namespace {

/// Seven records in two levels: towns (0-3, 4-6), and within them streets.
class GroupedRowsTest : public ::testing::Test
{
protected:
    const std::vector<uint32_t> order{5, 3, 8, 1, 9, 2, 7};
    const GroupedRows::Starts starts{{0b0010001}, {0b1010101}};
    std::vector<uint32_t> room;
    GroupedRows rows;

    void build()
    {
        rows.build(
            order, starts,
            [](const GroupedRows::Group& group) { return u"%1/%2"_s.arg(group.level).arg(group.first); },
            room);
    }

    /// The rows as text: groups as level and count, closed ones with a plus.
    std::string shown() const
    {
        QStringList texts;
        for (int row = 0; row < rows.rowCount(); ++row) {
            if (rows.isGroup(row)) {
                const GroupedRows::Group& group = rows.group(row);
                texts.append(
                    u"%1G%2:%3"_s.arg(group.closed ? u"+"_s : u""_s).arg(group.level).arg(group.count));
            } else {
                texts.append(QString::number(rows.record(row)));
            }
        }
        return texts.join(u' ').toStdString();
    }

    void close(int row, bool closed = true)
    {
        const GroupedRows::Group group = rows.group(row);
        rows.setClosed(row, closed, u"%1/%2"_s.arg(group.level).arg(group.first));
    }
};

} // namespace

TEST_F(GroupedRowsTest, ARowStandsBeforeEachGroup)
{
    EXPECT_EQ(rows.rowCount(), 0);
    build();
    EXPECT_EQ(shown(), "G0:4 G1:2 5 3 G1:2 8 1 G0:3 G1:2 9 2 G1:1 7");
    EXPECT_EQ(rows.rowOfRecord(1), 6);
    EXPECT_EQ(rows.rowOfRecord(4), -1);
}

TEST_F(GroupedRowsTest, AClosedGroupKeepsWhatIsBelowItsRow)
{
    build();
    EXPECT_EQ(rows.rowsBelow(4), 2);
    close(4);
    EXPECT_EQ(shown(), "G0:4 G1:2 5 3 +G1:2 G0:3 G1:2 9 2 G1:1 7");
    EXPECT_EQ(rows.rowsBelow(4), 2) << "as if it were open";
    EXPECT_EQ(rows.rowsBelow(0), 4);
    close(0);
    EXPECT_EQ(shown(), "+G0:4 G0:3 G1:2 9 2 G1:1 7");
    EXPECT_EQ(rows.rowsBelow(0), 4);
    EXPECT_EQ(rows.rowOfRecord(5), -1);
    close(0, false);
    EXPECT_EQ(shown(), "G0:4 G1:2 5 3 +G1:2 G0:3 G1:2 9 2 G1:1 7") << "the inner one is as it was";
}

TEST_F(GroupedRowsTest, CountsTheGroupsRowsInARange)
{
    EXPECT_EQ(rows.groupRowsBetween(0, 5), 0);
    build();
    for (const int closed : {-1, 4, 0}) {
        if (closed >= 0) {
            close(closed);
        }
        for (int first = 0; first < rows.rowCount(); ++first) {
            int expected = 0;
            for (int last = first; last < rows.rowCount(); ++last) {
                expected += rows.isGroup(last) ? 1 : 0;
                EXPECT_EQ(rows.groupRowsBetween(first, last), expected) << first << ' ' << last;
            }
        }
    }
    rows.clear(room);
    EXPECT_EQ(rows.groupRowsBetween(0, 5), 0);
}

TEST_F(GroupedRowsTest, GroupsAreToldAgainWhenTheyAreMadeAnew)
{
    build();
    close(4);
    build();
    EXPECT_EQ(shown(), "G0:4 G1:2 5 3 +G1:2 G0:3 G1:2 9 2 G1:1 7");
    rows.setAllClosed(true);
    EXPECT_EQ(shown(), "+G0:4 +G0:3");
    close(1, false);
    build();
    EXPECT_EQ(shown(), "+G0:4 G0:3 +G1:2 +G1:1");
    rows.forgetSingles();
    build();
    EXPECT_EQ(shown(), "+G0:4 +G0:3");
    rows.forgetClosed();
    EXPECT_EQ(shown(), "+G0:4 +G0:3") << "not before the next build";
    build();
    EXPECT_EQ(rows.rowCount(), 13);
}

TEST_F(GroupedRowsTest, TellsTheGroupAround)
{
    build();
    EXPECT_EQ(rows.groupRowAbove(0), -1);
    EXPECT_EQ(rows.groupRowAbove(1), 0);
    EXPECT_EQ(rows.groupRowAbove(6), 4);
    EXPECT_EQ(rows.groupRowAbove(4), 0);
    EXPECT_EQ(rows.groupRowAbove(7), -1) << "on the same level is not around";
}

TEST_F(GroupedRowsTest, GoesOnWithoutRecords)
{
    const std::vector<uint32_t> none;
    rows.build(
        none, {{}, {}}, [](const GroupedRows::Group&) { return QString(); }, room);
    EXPECT_EQ(rows.rowCount(), 0);
    rows.setAllClosed(true);
    EXPECT_EQ(rows.rowCount(), 0);
    build();
    rows.clear(room);
    EXPECT_EQ(rows.rowCount(), 0);
    rows.setAllClosed(false);
    EXPECT_EQ(rows.rowCount(), 0);
}
