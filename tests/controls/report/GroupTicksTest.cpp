// Ticking beyond a single row: groups, all the other ones, and taking it back.
#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridProbe.h"
#include "controls/report/ReportGridView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <string>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

class GroupTicksTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        grid.resize(800, 600);
        grid.addColumns({{u"Selezione"_s, u"Selezione"_s, 76, true, true, true},
                         {u"Paese"_s, u"Paese"_s, 120, true, true, false},
                         {u"Sesso"_s, u"Sesso"_s, 120, true, true, false},
                         {u"Cliente"_s, u"Cliente"_s, 120, true, true, false}});
        ColumnStore& store = grid.store();
        for (int i = 0; i < 12; ++i) {
            const std::string town = i < 6 ? "Roma" : "Milano";
            const std::string name = "Cliente " + std::to_string(i);
            store.appendText(0, "", 0);
            store.appendText(1, town.data(), town.size());
            store.appendText(2, i % 2 == 0 ? "F" : "M", 1);
            store.appendText(3, name.data(), name.size());
            store.endRow();
        }
        grid.populate();
        grid.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&grid));
        grid.setFocus();
    }

    ReportGridView& view() { return *grid.findChild<ReportGridView*>(); }
    Qt::CheckState tick(int row) { return view().grid().rowTick(row); }

    void clickBox(int row)
    {
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, view().checkRect(row).center());
    }

    std::vector<uint32_t> ticked()
    {
        std::vector<uint32_t> records;
        for (uint32_t record = 0; record < grid.recordCount(); ++record) {
            if (grid.isChecked(record)) {
                records.push_back(record);
            }
        }
        return records;
    }

    ReportGrid grid;
};

using Records = std::vector<uint32_t>;

} // namespace

TEST_F(GroupTicksTest, AGroupsBoxTicksItsRowsAndOnlyThem)
{
    grid.groupBy(1);
    QSignalSpy changes(&grid, &ReportGrid::checkChanged);
    ASSERT_TRUE(view().grid().isGroup(0)) << "Milano";
    EXPECT_EQ(tick(0), Qt::Unchecked);
    clickBox(0);
    EXPECT_EQ(ticked(), (Records{6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(tick(0), Qt::Checked);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_FALSE(view().grid().isGroupClosed(0)) << "a tick is not a click on the arrow";
    clickBox(2);
    EXPECT_EQ(tick(0), Qt::PartiallyChecked);
    clickBox(0);
    EXPECT_EQ(tick(0), Qt::Checked) << "from some to all";
    clickBox(0);
    EXPECT_EQ(ticked(), Records());
    EXPECT_EQ(tick(7), Qt::Unchecked);
}

TEST_F(GroupTicksTest, AClosedGroupIsTickedWithAllThatIsInIt)
{
    grid.groupBy(1);
    grid.groupBy(2);
    EXPECT_EQ(view().grid().groupLevel(1), 1);
    grid.setAllGroupsClosed(true);
    ASSERT_EQ(view().grid().rowCount(), 2);
    clickBox(1);
    EXPECT_EQ(ticked(), (Records{0, 1, 2, 3, 4, 5}));
    grid.setAllGroupsClosed(false);
    clickBox(1); // Milano, F
    EXPECT_EQ(ticked(), (Records{0, 1, 2, 3, 4, 5, 6, 8, 10}));
    EXPECT_EQ(tick(0), Qt::PartiallyChecked);
    EXPECT_EQ(tick(1), Qt::Checked);
}

TEST_F(GroupTicksTest, WhatTheFilterHidesIsNotTickedWithItsGroup)
{
    grid.groupBy(1);
    grid.setTextFilter(u"Cliente 1"_s); // 1, 10, 11
    clickBox(0);
    EXPECT_EQ(ticked(), (Records{10, 11}));
    grid.setTextFilter({});
    EXPECT_EQ(tick(0), Qt::PartiallyChecked);
}

TEST_F(GroupTicksTest, TheInsertKeyTicksAGroupAndSpaceStillOpensIt)
{
    grid.groupBy(1);
    view().setCurrentIndex(view().grid().index(0, 0));
    QTest::keyClick(&view(), Qt::Key_Insert);
    EXPECT_EQ(grid.checkedCount(), 6U);
    EXPECT_FALSE(view().grid().isGroupClosed(0));
    QTest::keyClick(&view(), Qt::Key_Space);
    EXPECT_TRUE(view().grid().isGroupClosed(0));
    view().setCurrentIndex(view().grid().index(2, 0));
    QTest::keyClick(&view(), Qt::Key_Insert);
    EXPECT_EQ(grid.checkedCount(), 7U);
}

TEST_F(GroupTicksTest, InvertTurnsEveryTickAlsoOfWhatIsHidden)
{
    grid.setChecked(0, true);
    grid.setChecked(11, true);
    grid.setTextFilter(u"Roma"_s);
    QSignalSpy changes(&grid, &ReportGrid::checkChanged);
    grid.invertChecked();
    EXPECT_EQ(ticked(), (Records{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(changes.size(), 1);
    grid.invertChecked();
    EXPECT_EQ(ticked(), (Records{0, 11}));
    grid.deleteRecords();
    grid.populate();
    changes.clear();
    grid.invertChecked();
    EXPECT_EQ(changes.size(), 0) << "nothing there";
}

TEST_F(GroupTicksTest, CtrlZTakesBackTheLastTickingAndPutsItBack)
{
    const auto undo = [this] { QTest::keyClick(&view(), Qt::Key_Z, Qt::ControlModifier); };
    undo();
    EXPECT_EQ(ticked(), Records());
    clickBox(3);
    clickBox(5);
    undo();
    EXPECT_EQ(ticked(), Records{3}) << "the last one only";
    undo();
    EXPECT_EQ(ticked(), (Records{3, 5}));
    grid.setAllChecked(false);
    undo();
    EXPECT_EQ(ticked(), (Records{3, 5})) << "a slip of 'Deseleziona tutto' is mended";
    grid.invertChecked();
    undo();
    EXPECT_EQ(ticked(), (Records{3, 5}));
    view().selectAll();
    grid.setSelectedChecked(true);
    undo();
    EXPECT_EQ(ticked(), (Records{3, 5}));
    QTest::keyClick(&view(), Qt::Key_Space);
    EXPECT_NE(ticked(), (Records{3, 5}));
    undo();
    EXPECT_EQ(ticked(), (Records{3, 5}));
    grid.groupBy(1);
    clickBox(0);
    undo();
    EXPECT_EQ(ticked(), (Records{3, 5}));
}

TEST_F(GroupTicksTest, NothingIsTakenBackAfterAFillOrARunThatClearedTicks)
{
    grid.setAllChecked(true);
    EXPECT_TRUE(grid.canUndoChecked());
    grid.setChecked(4, false); // as a run does for each row it has handled
    EXPECT_FALSE(grid.canUndoChecked());
    grid.setAllChecked(true);
    grid.deleteRecords();
    grid.populate();
    EXPECT_FALSE(grid.canUndoChecked());
    grid.undoChecked();
    EXPECT_EQ(grid.checkedCount(), 0U);
}

TEST_F(GroupTicksTest, TheRowsMenuInvertsAndTakesBack)
{
    const auto choose = [this](const QString& text) {
        QContextMenuEvent open(QContextMenuEvent::Mouse, QPoint(50, 50),
                               view().viewport()->mapToGlobal(QPoint(50, 50)));
        QApplication::sendEvent(view().viewport(), &open);
        auto* menu = grid.findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
        ASSERT_NE(menu, nullptr);
        for (QAction* action : menu->actions()) {
            if (action->text() == text && action->isEnabled()) {
                action->trigger();
            }
        }
        delete menu;
    };
    choose(u"Annulla l'ultima selezione\tCtrl+Z"_s);
    choose(u"Inverti selezione"_s);
    EXPECT_EQ(grid.checkedCount(), 12U);
    choose(u"Annulla l'ultima selezione\tCtrl+Z"_s);
    EXPECT_EQ(grid.checkedCount(), 0U);
}

TEST_F(GroupTicksTest, ABoxShowsAllSomeAndNone)
{
    grid.groupBy(1);
    const auto boxOf = [this](int row) {
        const QRect box = view().checkRect(row);
        return view().viewport()->grab(box).toImage();
    };
    const QImage none = boxOf(0);
    clickBox(1);
    const QImage some = boxOf(0);
    clickBox(0);
    const QImage all = boxOf(0);
    EXPECT_NE(none, some);
    EXPECT_NE(some, all);
    EXPECT_NE(none, all);
}
