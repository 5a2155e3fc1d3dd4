#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"
#include "controls/report/ReportGridView.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QItemSelectionModel>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocumentFragment>
#include <QToolTip>

#include <gtest/gtest.h>

#include <string>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

using Records = std::vector<uint32_t>;

class ReportGridTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        grid.resize(800, 400);
        grid.setFlatHeader(true);
        describeColumns(grid);
        for (int i = 0; i < 200; ++i) {
            add("Cliente " + std::to_string(i), i % 3 == 0 ? "Roma" : "Milano", 20 + i % 50);
        }
        grid.populate();
        grid.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&grid));
        grid.activateWindow();
        grid.setFocus();
    }

    static void describeColumns(ReportGrid& target)
    {
        target.addColumn({u"IdCLiente"_s, u"Id"_s, 0, false, true, false});
        target.addColumn({u"Selezione"_s, u"Selezione"_s, 0, true, true, true});
        target.addColumn({u"Cliente"_s, u"Cliente"_s, 200, true, true, false});
        target.addColumn({u"Paese"_s, u"Paese"_s, 120, true, true, false});
        target.addColumn({u"Eta"_s, u"Eta"_s, 80, true, true, false});
        target.addColumn({u"Note"_s, u"Note"_s, 150, true, false, false});
    }

    void add(const std::string& name, const std::string& town, int age)
    {
        ColumnStore& store = grid.store();
        store.appendInteger(0, store.rowCount());
        store.appendText(1, "", 0);
        store.appendText(2, name.data(), name.size());
        store.appendText(3, town.data(), town.size());
        store.appendInteger(4, age);
        store.endRow();
    }

    void clickRow(int row, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        const QRect rect = probeOf(&grid)->rowRect(row);
        QTest::mouseClick(probeOf(&grid)->bodyViewport(), Qt::LeftButton, keys,
                          QPoint(300, rect.center().y()));
    }

    static void drag(QWidget* from, const QPoint& start, QWidget* to, const QPoint& end)
    {
        const auto send = [from](QEvent::Type type, const QPoint& at, Qt::MouseButtons buttons) {
            QMouseEvent event(type, at, from->mapToGlobal(at),
                              type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons,
                              Qt::NoModifier);
            QApplication::sendEvent(from, &event);
        };
        const QPoint target = from->mapFromGlobal(to->mapToGlobal(end));
        send(QEvent::MouseButtonPress, start, Qt::LeftButton);
        for (int step = 1; step <= 5; ++step) {
            send(QEvent::MouseMove, start + (target - start) * step / 5, Qt::LeftButton);
        }
        send(QEvent::MouseButtonRelease, target, Qt::NoButton);
    }

    static void doubleClick(QWidget* widget, const QPoint& at)
    {
        QTest::mouseClick(widget, Qt::LeftButton, {}, at);
        QTest::mouseDClick(widget, Qt::LeftButton, {}, at);
        QTest::mouseRelease(widget, Qt::LeftButton, {}, at);
    }

    void clickHeader(int column)
    {
        QTest::mouseClick(probeOf(&grid)->headerViewport(), Qt::LeftButton, {},
                          probeOf(&grid)->headerRect(column).center());
    }

    void group(int column)
    {
        drag(probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(column).center(),
             probeOf(&grid)->groupBoxWidget(), probeOf(&grid)->groupBoxWidget()->rect().center());
    }

    /// The menu of a column's header, or with -1 that of the rows, opened by the right button.
    QMenu* openMenu(int column)
    {
        QWidget* on = column < 0 ? probeOf(&grid)->bodyViewport() : probeOf(&grid)->headerViewport();
        const QPoint at = column < 0 ? QPoint(300, 30) : probeOf(&grid)->headerRect(column).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, on->mapToGlobal(at));
        QApplication::sendEvent(on, &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }

    static QAction* entry(const QMenu* menu, const QString& text)
    {
        for (QAction* action : menu->actions()) {
            if (action->text() == text) {
                return action;
            }
        }
        return nullptr;
    }

    /// Clicks an entry of a menu that is open; false when there is none that can be clicked.
    static bool choose(QMenu* menu, const QString& text)
    {
        QAction* action = entry(menu, text);
        if (action == nullptr || !action->isEnabled()) {
            return false;
        }
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        return true;
    }

    /// The same in the menu of the columns.
    bool chooseColumn(const QString& text)
    {
        QMenu* menu = openMenu(2);
        QMenu* columns = entry(menu, u"Colonne"_s)->menu();
        columns->popup(menu->pos());
        const bool done = choose(columns, text);
        columns->close();
        menu->close();
        return done;
    }

    /// What the tooltip at a point says, without its markup; empty when there is none.
    static QString toolTip(QWidget* widget, const QPoint& at)
    {
        QToolTip::showText(widget->mapToGlobal(at), u"prima"_s, widget);
        QHelpEvent event(QEvent::ToolTip, at, widget->mapToGlobal(at));
        QApplication::sendEvent(widget, &event);
        QTest::qWait(400); // one that goes away takes a moment
        return QToolTip::isVisible() ? QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText()
                                     : QString();
    }

    QString cellToolTip(int row, int column)
    {
        const QRect header = probeOf(&grid)->headerRect(column);
        return toolTip(probeOf(&grid)->bodyViewport(),
                       {header.center().x(), probeOf(&grid)->rowRect(row).center().y()});
    }

    ReportGrid grid;
};

} // namespace

TEST_F(ReportGridTest, SortsByAClickOnTheHeaderAndTurnsAtTheNext)
{
    QSignalSpy changes(&grid, &ReportGrid::columnLayoutChanged);
    clickHeader(4);
    EXPECT_EQ(grid.sortColumn(), 4);
    EXPECT_EQ(probeOf(&grid)->rowTexts(0).at(4), u"20"_s);
    EXPECT_FALSE(grid.isSortDescending());
    clickHeader(4);
    EXPECT_TRUE(grid.isSortDescending());
    EXPECT_EQ(probeOf(&grid)->rowTexts(0).at(4), u"69"_s);
    clickHeader(2);
    EXPECT_EQ(grid.sortColumn(), 2);
    EXPECT_FALSE(grid.isSortDescending());
    ASSERT_EQ(changes.count(), 3);
    EXPECT_EQ(changes.at(0).at(0).toInt(), 2) << "sorting is no change of the layout";
}

TEST_F(ReportGridTest, ADoubleClickOnTheHeaderSortsTwice)
{
    doubleClick(probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(4).center());
    EXPECT_EQ(grid.sortColumn(), 4);
    EXPECT_TRUE(grid.isSortDescending());
}

TEST_F(ReportGridTest, MovesAColumnByDroppingItOnAnother)
{
    QSignalSpy changes(&grid, &ReportGrid::columnLayoutChanged);
    EXPECT_EQ(probeOf(&grid)->visiblePosition(0), -1);
    EXPECT_EQ(probeOf(&grid)->visiblePosition(2), 1);
    drag(probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(2).center(),
         probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(4).center());
    EXPECT_EQ(probeOf(&grid)->visiblePosition(2), 3);
    EXPECT_EQ(probeOf(&grid)->visiblePosition(3), 1);
    EXPECT_EQ(probeOf(&grid)->visiblePosition(4), 2);
    drag(probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(5).center(),
         probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(1).center());
    EXPECT_EQ(probeOf(&grid)->visiblePosition(5), 0);
    ASSERT_EQ(changes.count(), 2);
    EXPECT_EQ(changes.at(0).at(0).toInt(), 1);
    EXPECT_EQ(grid.sortColumn(), -1) << "a drag is no click";
}

TEST_F(ReportGridTest, SizesAColumnByItsEdgeToThePixel)
{
    QSignalSpy changes(&grid, &ReportGrid::columnLayoutChanged);
    const QRect before = probeOf(&grid)->headerRect(3);
    const QPoint edge(before.right() - 1, before.center().y());
    drag(probeOf(&grid)->headerViewport(), edge, probeOf(&grid)->headerViewport(), edge + QPoint(57, 0));
    EXPECT_EQ(probeOf(&grid)->headerRect(3).width(), before.width() + 57);
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes.at(0).at(0).toInt(), 0);
    EXPECT_EQ(grid.sortColumn(), -1);
}

TEST_F(ReportGridTest, AColumnThatIsNotSizableKeepsItsWidth)
{
    QSignalSpy changes(&grid, &ReportGrid::columnLayoutChanged);
    const QRect before = probeOf(&grid)->headerRect(5);
    const QPoint edge(before.right() - 1, before.center().y());
    drag(probeOf(&grid)->headerViewport(), edge, probeOf(&grid)->headerViewport(), edge - QPoint(40, 0));
    EXPECT_EQ(probeOf(&grid)->headerRect(5).width(), before.width());
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(ReportGridTest, GroupsByDroppingAHeaderOnTheBox)
{
    QSignalSpy changes(&grid, &ReportGrid::columnLayoutChanged);
    group(3);
    ASSERT_EQ(grid.groupColumns(), std::vector<int>{3});
    EXPECT_EQ(probeOf(&grid)->visibleRowCount(), 202);
    EXPECT_TRUE(probeOf(&grid)->rowIsGroup(0));
    EXPECT_EQ(probeOf(&grid)->groupCaption(0), u"Paese: Milano"_s);
    EXPECT_EQ(probeOf(&grid)->groupCount(0), 133);
    EXPECT_EQ(probeOf(&grid)->rowCheck(0), -1);
    EXPECT_TRUE(probeOf(&grid)->rowTexts(0).isEmpty());
    EXPECT_TRUE(probeOf(&grid)->headerRect(3).isEmpty()) << "the column has left the header";
    EXPECT_EQ(changes.at(0).at(0).toInt(), 2);
    grid.ungroupAll();
    EXPECT_EQ(probeOf(&grid)->visibleRowCount(), 200);
    EXPECT_FALSE(probeOf(&grid)->headerRect(3).isEmpty());
    EXPECT_EQ(probeOf(&grid)->visiblePosition(3), 2);
}

TEST_F(ReportGridTest, TheTicksStayInTheirColumnWhileTheyGroup)
{
    grid.setChecked(1, true);
    group(1);
    ASSERT_EQ(grid.groupColumns(), std::vector<int>{1});
    EXPECT_EQ(probeOf(&grid)->visiblePosition(1), 0);
    EXPECT_FALSE(probeOf(&grid)->checkRect(1).isEmpty());
    grid.groupBy(3);
    EXPECT_EQ(probeOf(&grid)->visiblePosition(1), 0);
    EXPECT_EQ(probeOf(&grid)->visiblePosition(3), -1);
}

TEST_F(ReportGridTest, AGroupsRowStaysInSightWhenColumnsScroll)
{
    group(3);
    grid.resize(240, 400);
    QCoreApplication::processEvents();
    auto* view = grid.findChild<ReportGridView*>();
    const QRect tick = probeOf(&grid)->checkRect(0);
    const QImage before = view->viewport()->grab(probeOf(&grid)->rowRect(0)).toImage();
    QScrollBar* bar = view->horizontalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    bar->setValue(bar->maximum());
    EXPECT_EQ(probeOf(&grid)->checkRect(0), tick);
    EXPECT_EQ(view->viewport()->grab(probeOf(&grid)->rowRect(0)).toImage(), before);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, tick.center());
    EXPECT_EQ(probeOf(&grid)->rowCheck(1), 1);
}

TEST_F(ReportGridTest, TakesAGroupOutByDraggingItsChipAway)
{
    group(3);
    group(4);
    EXPECT_EQ(grid.groupColumns(), (std::vector<int>{3, 4}));
    drag(probeOf(&grid)->groupBoxWidget(), QPoint(20, 17), probeOf(&grid)->bodyViewport(), QPoint(200, 100));
    EXPECT_EQ(grid.groupColumns(), std::vector<int>{4});
    QTest::mouseClick(probeOf(&grid)->groupBoxWidget(), Qt::LeftButton, {}, QPoint(20, 17));
    EXPECT_EQ(probeOf(&grid)->groupCaption(0), u"Eta: 69"_s) << "a click turns the order of the groups";
    QTest::keyClick(probeOf(&grid)->groupBoxWidget(), Qt::Key_Delete);
    EXPECT_TRUE(grid.groupColumns().empty());
}

TEST_F(ReportGridTest, OpensAndClosesGroupsByKey)
{
    group(3);
    clickRow(0);
    QTest::keyClick(grid.focusWidget(), Qt::Key_Left);
    EXPECT_EQ(probeOf(&grid)->visibleRowCount(), 69);
    EXPECT_EQ(grid.recordsInScreenOrder().size(), 200U);
    QTest::keyClick(grid.focusWidget(), Qt::Key_Right);
    EXPECT_EQ(probeOf(&grid)->visibleRowCount(), 202);
    doubleClick(probeOf(&grid)->bodyViewport(), QPoint(300, probeOf(&grid)->rowRect(0).center().y()));
    EXPECT_EQ(probeOf(&grid)->visibleRowCount(), 69);
}

TEST_F(ReportGridTest, TicksOneRowByAClickInItsCheckCell)
{
    QSignalSpy ticks(&grid, &ReportGrid::checkChanged);
    QSignalSpy opened(&grid, &ReportGrid::recordDoubleClicked);
    clickRow(5);
    QTest::mouseClick(probeOf(&grid)->bodyViewport(), Qt::LeftButton, {},
                      probeOf(&grid)->checkRect(2).center());
    EXPECT_TRUE(grid.isChecked(2));
    EXPECT_EQ(probeOf(&grid)->rowCheck(2), 1);
    EXPECT_EQ(grid.checkedCount(), 1U);
    EXPECT_EQ(grid.selectedRecords(), Records{5}) << "highlighted rows stay as they are";
    EXPECT_EQ(ticks.count(), 1);
    doubleClick(probeOf(&grid)->bodyViewport(), probeOf(&grid)->checkRect(3).center());
    EXPECT_FALSE(grid.isChecked(3)) << "two quick clicks are two";
    EXPECT_EQ(opened.count(), 0);
    const QPoint beside(probeOf(&grid)->checkRect(4).left() - 5, probeOf(&grid)->checkRect(4).center().y());
    QTest::mouseClick(probeOf(&grid)->bodyViewport(), Qt::LeftButton, {}, beside);
    EXPECT_TRUE(grid.isChecked(4)) << "the whole cell counts";
}

TEST_F(ReportGridTest, TicksHighlightedRowsBySpace)
{
    clickRow(1);
    clickRow(4, Qt::ShiftModifier);
    clickRow(8, Qt::ControlModifier);
    EXPECT_EQ(grid.selectedRecords(), (Records{1, 2, 3, 4, 8}));
    QTest::keyClick(grid.focusWidget(), Qt::Key_Space);
    EXPECT_EQ(grid.checkedCount(), 5U);
    QTest::keyClick(grid.focusWidget(), Qt::Key_Space);
    EXPECT_EQ(grid.checkedCount(), 0U);
}

TEST_F(ReportGridTest, TicksTheHighlightedAndAll)
{
    grid.setSelectedChecked(true);
    EXPECT_EQ(grid.checkedCount(), 0U) << "nothing highlighted, nothing done";
    QTest::keyClick(grid.focusWidget(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(grid.selectedRecords().size(), 200U);
    grid.setSelectedChecked(true);
    EXPECT_EQ(grid.checkedCount(), 200U);
    clickRow(0);
    grid.setSelectedChecked(false);
    EXPECT_FALSE(grid.isChecked(0));
    EXPECT_EQ(grid.checkedCount(), 199U);
    grid.setAllChecked(true);
    EXPECT_EQ(grid.checkedCount(), 200U);
    grid.deleteRecords();
    grid.setAllChecked(true);
    EXPECT_EQ(grid.checkedCount(), 0U);
}

TEST_F(ReportGridTest, TellsWhichRecordWasClicked)
{
    QSignalSpy released(&grid, &ReportGrid::mouseReleasedOn);
    QSignalSpy opened(&grid, &ReportGrid::recordDoubleClicked);
    grid.sortBy(0, true);
    doubleClick(probeOf(&grid)->bodyViewport(), QPoint(300, probeOf(&grid)->rowRect(0).center().y()));
    ASSERT_GE(released.count(), 1);
    EXPECT_EQ(released.at(0).at(0).toLongLong(), 199);
    ASSERT_EQ(opened.count(), 1);
    EXPECT_EQ(opened.at(0).at(0).toUInt(), 199U);
    EXPECT_EQ(grid.currentRecord(), 199);
    grid.setTextFilter(u"Cliente 199"_s);
    released.clear();
    QTest::mouseClick(probeOf(&grid)->bodyViewport(), Qt::LeftButton, {}, QPoint(300, 200));
    ASSERT_EQ(released.count(), 1);
    EXPECT_EQ(released.at(0).at(0).toLongLong(), -1) << "below the last row";
    doubleClick(probeOf(&grid)->bodyViewport(), QPoint(300, 200));
    EXPECT_EQ(opened.count(), 1);
}

TEST_F(ReportGridTest, TellsKeysAndLeavesEscapeToTheWindow)
{
    QSignalSpy keys(&grid, &ReportGrid::gridKeyPressed);
    QTest::keyClick(grid.focusWidget(), Qt::Key_Escape);
    QTest::keyClick(grid.focusWidget(), Qt::Key_Down);
    ASSERT_EQ(keys.count(), 2);
    EXPECT_EQ(keys.at(0).at(0).toInt(), Qt::Key_Escape);
    EXPECT_EQ(grid.currentRecord(), 0);
    QTest::keyClick(grid.focusWidget(), Qt::Key_End);
    EXPECT_EQ(grid.currentRecord(), 199);
    EXPECT_GE(probeOf(&grid)->rowRect(199).top(), 0);
    QTest::keyClick(grid.focusWidget(), Qt::Key_Home);
    QTest::keyClick(grid.focusWidget(), Qt::Key_PageDown);
    EXPECT_GT(grid.currentRecord(), 3);
}

TEST_F(ReportGridTest, FindsARowByTypingItsBeginning)
{
    grid.sortBy(3, false);
    QTest::keyClicks(grid.focusWidget(), u"ro"_s);
    EXPECT_EQ(grid.cellText(static_cast<uint32_t>(grid.currentRecord()), 3), u"Roma"_s);
}

TEST_F(ReportGridTest, KeepsTheHighlightWhenTheOrderChanges)
{
    clickRow(7);
    clickRow(9, Qt::ControlModifier);
    grid.sortBy(0, true);
    EXPECT_EQ(grid.selectedRecords(), (Records{9, 7}));
    EXPECT_EQ(grid.currentRecord(), 9);
    grid.setTextFilter(u"Cliente 7"_s);
    EXPECT_EQ(grid.selectedRecords(), Records{7});
    grid.deleteRecords();
    EXPECT_FALSE(grid.hasSelection());
    EXPECT_EQ(grid.currentRecord(), -1);
}

TEST_F(ReportGridTest, GivesCellsToTools)
{
    EXPECT_EQ(grid.findChild<ReportGridProbe*>(), nullptr) << "made for nobody";
    auto* probe = grid.property("probe").value<QObject*>();
    ASSERT_EQ(probe, probeOf(&grid));
    EXPECT_EQ(grid.findChildren<ReportGridProbe*>().size(), 1) << "asked twice";
    int rows = 0;
    ASSERT_TRUE(QMetaObject::invokeMethod(probe, "visibleRowCount", Q_RETURN_ARG(int, rows)));
    EXPECT_EQ(rows, 200);
    const QVariantList cells = probeOf(&grid)->rowCells(4);
    ASSERT_EQ(cells.size(), 6);
    EXPECT_EQ(cells.at(0).toString(), u"4"_s);
    EXPECT_TRUE(cells.at(1).isValid()) << "an empty text";
    EXPECT_EQ(cells.at(2).toString(), u"Cliente 4"_s);
    EXPECT_FALSE(cells.at(5).isValid()) << "NULL";
    EXPECT_EQ(probeOf(&grid)->rowTexts(4).at(5), QString());
    EXPECT_TRUE(probeOf(&grid)->rowRect(-1).isNull());
    EXPECT_TRUE(probeOf(&grid)->rowRect(200).isNull());
    EXPECT_TRUE(probeOf(&grid)->headerRect(0).isNull());
    EXPECT_TRUE(probeOf(&grid)->headerRect(99).isNull());
    EXPECT_TRUE(probeOf(&grid)->bodyViewport()->rect().contains(probeOf(&grid)->rowRect(150).center()));
    EXPECT_TRUE(probeOf(&grid)->rowCells(999).isEmpty());
}

TEST_F(ReportGridTest, SavesAndLoadsItsLayout)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"layout.ini"_s);
    EXPECT_FALSE(grid.loadLayout(path, u"ZUL"_s));
    drag(probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(2).center(),
         probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(4).center());
    const QPoint edge(probeOf(&grid)->headerRect(3).right() - 1, 5);
    drag(probeOf(&grid)->headerViewport(), edge, probeOf(&grid)->headerViewport(), edge + QPoint(33, 0));
    ASSERT_TRUE(grid.saveLayout(path, u"ZUL"_s));

    ReportGrid other;
    other.resize(800, 400);
    describeColumns(other);
    QSignalSpy changes(&other, &ReportGrid::columnLayoutChanged);
    ASSERT_TRUE(other.loadLayout(path, u"ZUL"_s));
    for (int column = 0; column < 6; ++column) {
        EXPECT_EQ(probeOf(&other)->visiblePosition(column), probeOf(&grid)->visiblePosition(column))
            << column;
        EXPECT_EQ(probeOf(&other)->headerRect(column).width(), probeOf(&grid)->headerRect(column).width())
            << column;
    }
    EXPECT_EQ(changes.count(), 0) << "loading is no change to be saved";
    EXPECT_EQ(probeOf(&other)->visiblePosition(0), -1);
}

TEST_F(ReportGridTest, AHiddenColumnStaysHiddenWhateverTheLayoutSays)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"layout.ini"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[ZUL]\nLayout=1\nColumn1=0,90,1,IdCLiente\nColumn2=1,90,0,Paese\nColumn3=9,70,1,Foreign\n");
    file.close();
    EXPECT_TRUE(grid.loadLayout(path, u"ZUL"_s));
    EXPECT_EQ(probeOf(&grid)->visiblePosition(0), -1);
    EXPECT_EQ(probeOf(&grid)->visiblePosition(3), -1) << "hidden by the operator";
    EXPECT_EQ(probeOf(&grid)->visiblePosition(2), 1);
}

TEST_F(ReportGridTest, CtrlCCopiesTheHighlightedRowsAsTheyStand)
{
    QClipboard& clipboard = *QApplication::clipboard();
    clipboard.setText(u"altro"_s);
    QTest::keyClick(grid.focusWidget(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard.text(), u"altro"_s) << "nothing is highlighted";
    grid.setChecked(7, true);
    grid.sortBy(0, true);
    clickRow(191); // Cliente 8
    clickRow(192, Qt::ShiftModifier);
    clickRow(199, Qt::ControlModifier);
    QTest::keyClick(grid.focusWidget(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard.text(), u"No\tCliente 8\tMilano\t28\t\nSì\tCliente 7\tMilano\t27\t\n"
                                "No\tCliente 0\tRoma\t20\t"_s);
    grid.setColumnShown(5, false);
    drag(probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(4).center(),
         probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(2).center());
    clickRow(192);
    QTest::keyClick(grid.focusWidget(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard.text(), u"Sì\t27\tCliente 7\tMilano"_s) << "visible columns, as they stand";
    clickRow(190);
    EXPECT_TRUE(choose(openMenu(-1), u"Copia con intestazioni"_s));
    EXPECT_EQ(clipboard.text(), u"Selezione\tEta\tCliente\tPaese\nNo\t29\tCliente 9\tRoma"_s);
    clickRow(192);
    EXPECT_TRUE(choose(openMenu(-1), u"Copia\tCtrl+C"_s));
    EXPECT_EQ(clipboard.text(), u"Sì\t27\tCliente 7\tMilano"_s);
}

TEST_F(ReportGridTest, CopiesRecordsOfGroupsAndTextsThatNeedCare)
{
    QClipboard& clipboard = *QApplication::clipboard();
    const std::string awkward = "D'Amico\t\"50%\"\r\n😀 " + std::string(9'990, 'x');
    grid.deleteRecords();
    add(awkward, "Forlì", 3);
    add("Rossi", "Roma", 4);
    grid.populate();
    grid.groupBy(3);
    QTest::keyClick(grid.focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(grid.focusWidget(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard.text(),
              u"No\tD'Amico \"50%\"  😀 %1\t3\t\nNo\tRossi\t4\t"_s.arg(QString(9'990, u'x')));
    grid.clearSelection();
    QMenu* menu = openMenu(-1);
    EXPECT_FALSE(choose(menu, u"Copia con intestazioni"_s));
    menu->close();
}

TEST_F(ReportGridTest, ACellThatIsCutTellsItsWholeText)
{
    const std::string name = "D'Amico <b>\"50%\"</b> & figli, con sede legale in un comune dal nome lungo 😀";
    grid.deleteRecords();
    add(name, "Roma", 3);
    add("Rossi", "prima\nseconda", 4);
    add(std::string(10'000, 'x'), "", 5);
    grid.populate();
    EXPECT_EQ(cellToolTip(0, 2).toStdString(), name);
    EXPECT_EQ(cellToolTip(0, 3), QString()) << "all of it is seen";
    EXPECT_EQ(cellToolTip(0, 1), QString()) << "a check box";
    EXPECT_EQ(cellToolTip(0, 5), QString()) << "NULL";
    EXPECT_EQ(cellToolTip(1, 3), u"prima\nseconda"_s) << "a line break is shown as a blank";
    EXPECT_EQ(cellToolTip(2, 2), QString(4000, u'x') + u'…') << "more does not fit on a screen";
    EXPECT_EQ(toolTip(probeOf(&grid)->bodyViewport(), QPoint(300, 250)), QString()) << "below the rows";
    const QPoint edge(probeOf(&grid)->headerRect(2).right() - 1, 5);
    drag(probeOf(&grid)->headerViewport(), edge, probeOf(&grid)->headerViewport(), edge + QPoint(600, 0));
    EXPECT_EQ(cellToolTip(0, 2), QString()) << "after the column was made wide";
}

TEST_F(ReportGridTest, AGroupThatIsCutTellsItsWholeCaption)
{
    grid.deleteRecords();
    add("Rossi", std::string(300, 'y'), 3);
    add("Bianchi", "Roma", 3);
    grid.populate();
    grid.groupBy(3);
    const auto at = [this](int row) { return QPoint(200, probeOf(&grid)->rowRect(row).center().y()); };
    EXPECT_EQ(toolTip(probeOf(&grid)->bodyViewport(), at(0)), QString());
    EXPECT_EQ(toolTip(probeOf(&grid)->bodyViewport(), at(2)), u"Paese: "_s + QString(300, u'y'));
}

TEST_F(ReportGridTest, AHeaderTellsItsFieldAndWhatItHolds)
{
    const auto header = [this](int column) {
        return toolTip(probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(column).center());
    };
    EXPECT_EQ(QToolTip::text(), QString());
    EXPECT_TRUE(header(4).startsWith(u"Campo: Eta"_s));
    grid.setFieldContents({{u"eta"_s, u"età in anni"_s}});
    header(4);
    EXPECT_EQ(QToolTip::text(), u"Campo: Eta\nContenuto: età in anni"_s);
    header(3);
    EXPECT_EQ(QToolTip::text(), u"Campo: Paese"_s);
    EXPECT_EQ(grid.columnCaption(4), u"Eta"_s);
}

TEST_F(ReportGridTest, TheCheckColumnCannotBeHidden)
{
    QSignalSpy changes(&grid, &ReportGrid::columnLayoutChanged);
    EXPECT_FALSE(chooseColumn(u"Selezione"_s));
    EXPECT_FALSE(chooseColumn(u"Id"_s));
    grid.setColumnShown(1, false);
    EXPECT_EQ(probeOf(&grid)->visiblePosition(1), 0);
    QTemporaryDir folder;
    QFile file(folder.filePath(u"layout.ini"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[ZUL]\nLayout=1\nColumn1=0,90,0,Selezione\nColumn2=1,90,0,Paese\n");
    file.close();
    EXPECT_TRUE(grid.loadLayout(file.fileName(), u"ZUL"_s));
    EXPECT_EQ(probeOf(&grid)->visiblePosition(1), 0) << "somebody else hid it";
    EXPECT_EQ(probeOf(&grid)->visiblePosition(3), -1);
    EXPECT_FALSE(probeOf(&grid)->checkRect(0).isEmpty());
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(ReportGridTest, AnyOtherColumnIsHiddenAndShownButTheLast)
{
    QSignalSpy changes(&grid, &ReportGrid::columnLayoutChanged);
    EXPECT_TRUE(chooseColumn(u"Paese"_s));
    EXPECT_EQ(probeOf(&grid)->visiblePosition(3), -1);
    EXPECT_TRUE(chooseColumn(u"Eta"_s));
    EXPECT_TRUE(chooseColumn(u"Note"_s));
    EXPECT_FALSE(chooseColumn(u"Cliente"_s)) << "only ticks would be left";
    EXPECT_TRUE(chooseColumn(u"Paese"_s));
    EXPECT_EQ(probeOf(&grid)->visiblePosition(3), 2);
    ASSERT_EQ(changes.count(), 4);
    EXPECT_EQ(changes.at(3).at(0).toInt(), ReportGrid::ColumnShown);
}

TEST_F(ReportGridTest, ResettingTheColumnsUndoesWhatTheOperatorDidToThem)
{
    const auto layout = [this] {
        QList<std::pair<int, int>> columns;
        for (int column = 0; column < 6; ++column) {
            columns.append(
                {probeOf(&grid)->visiblePosition(column), probeOf(&grid)->headerRect(column).width()});
        }
        return columns;
    };
    const auto before = layout();
    drag(probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(2).center(),
         probeOf(&grid)->headerViewport(), probeOf(&grid)->headerRect(4).center());
    const QPoint edge(probeOf(&grid)->headerRect(3).right() - 1, 5);
    drag(probeOf(&grid)->headerViewport(), edge, probeOf(&grid)->headerViewport(), edge + QPoint(33, 0));
    EXPECT_TRUE(chooseColumn(u"Eta"_s));
    clickHeader(3);
    EXPECT_NE(layout(), before);
    QSignalSpy changes(&grid, &ReportGrid::columnLayoutChanged);
    EXPECT_TRUE(chooseColumn(u"Ripristina colonne"_s));
    EXPECT_EQ(layout(), before);
    EXPECT_EQ(grid.sortColumn(), 3) << "the order of the rows stays";
    ASSERT_EQ(changes.count(), 1) << "to be saved";
    EXPECT_EQ(changes.at(0).at(0).toInt(), ReportGrid::ColumnShown);
    grid.groupBy(4);
    EXPECT_TRUE(chooseColumn(u"Ripristina colonne"_s));
    EXPECT_EQ(grid.groupColumns(), std::vector<int>{4});
    EXPECT_EQ(probeOf(&grid)->visiblePosition(4), -1) << "it groups";
}

TEST_F(ReportGridTest, ALayoutThatIsNotOursChangesNothing)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"layout.ini"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[ZUL]\nLayout=1\nColumn1=0,90,1,Foreign\n");
    file.close();
    EXPECT_FALSE(grid.loadLayout(path, u"ZUL"_s));
    EXPECT_EQ(probeOf(&grid)->headerRect(2).width(), 200);
    EXPECT_FALSE(grid.saveLayout(folder.filePath(u"no/such/file.ini"_s), u"ZUL"_s));
}

TEST_F(ReportGridTest, SharesFreeWidthAmongColumnsWithoutOne)
{
    ReportGrid shared;
    shared.resize(602, 300);
    shared.addColumn({u"id"_s, u"Id"_s, 0, false, true, false});
    shared.addColumn({u"a"_s, u"A"_s, 0, true, true, false});
    shared.addColumn({u"b"_s, u"B"_s, 200, true, true, false});
    shared.addColumn({u"c"_s, u"C"_s, 0, true, true, false});
    shared.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&shared));
    EXPECT_EQ(probeOf(&shared)->headerRect(1),
              QRect(0, 0, 200, probeOf(&shared)->headerViewport()->height()));
    EXPECT_EQ(probeOf(&shared)->headerRect(3).width(), 200);
    shared.resize(802, 300);
    EXPECT_EQ(probeOf(&shared)->headerRect(1).width(), 300);
    EXPECT_EQ(probeOf(&shared)->headerRect(2).width(), 200);
    shared.groupBy(1);
    EXPECT_EQ(probeOf(&shared)->headerRect(3).width(), 600);
    shared.ungroupAll();
    EXPECT_EQ(probeOf(&shared)->headerRect(1).width(), 300);
    // The first drag of an edge sizes its column, and ends the sharing.
    const QRect before = probeOf(&shared)->headerRect(1);
    const QPoint edge(before.right() - 1, before.center().y());
    drag(probeOf(&shared)->headerViewport(), edge, probeOf(&shared)->headerViewport(), edge - QPoint(40, 0));
    EXPECT_EQ(probeOf(&shared)->headerRect(1).width(), 260);
    EXPECT_EQ(probeOf(&shared)->headerRect(3).width(), 300);
    shared.resize(602, 300);
    EXPECT_EQ(probeOf(&shared)->headerRect(1).width(), 260);
}

TEST_F(ReportGridTest, TakesCallsWithoutColumnsOrRecords)
{
    ReportGrid empty;
    empty.populate();
    empty.setTextFilter(u"x"_s);
    empty.sortBy(3, true);
    empty.groupBy(0);
    empty.ungroupAll();
    empty.setAllChecked(true);
    empty.setSelectedChecked(true);
    empty.setCurrentRecord(7);
    empty.resize(300, 200);
    empty.show();
    QTest::keyClick(empty.focusWidget() != nullptr ? empty.focusWidget() : &empty, Qt::Key_Down);
    QTest::mouseClick(probeOf(&empty)->bodyViewport(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(probeOf(&empty)->visibleRowCount(), 0);
    EXPECT_EQ(empty.checkColumn(), -1);
    EXPECT_EQ(empty.cellText(0, 0), QString());
    EXPECT_FALSE(empty.cellIsNumeric(0, 0));
    EXPECT_FALSE(empty.isChecked(0));
}

TEST_F(ReportGridTest, ShowsNothingNewBeforePopulate)
{
    add("New", "Roma", 1);
    EXPECT_EQ(probeOf(&grid)->visibleRowCount(), 200);
    probeOf(&grid)->bodyViewport()->repaint();
    grid.populate();
    EXPECT_EQ(probeOf(&grid)->visibleRowCount(), 201);
}

TEST_F(ReportGridTest, RowsAreTallerInTouchMode)
{
    grid.setTouchMode(true);
    EXPECT_EQ(probeOf(&grid)->rowRect(0).height(), 44);
    EXPECT_GE(probeOf(&grid)->headerRect(2).height(), 44);
    grid.setTouchMode(false);
    EXPECT_LT(probeOf(&grid)->rowRect(0).height(), 30);
}
