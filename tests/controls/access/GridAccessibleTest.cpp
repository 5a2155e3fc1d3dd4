// The report grid as a screen reader meets it.
#include "controls/access/GridAccessible.h"
#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"
#include "controls/report/ReportGridView.h"

#include <QTest>
#include <gtest/gtest.h>

#include <string>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

/// What was told, as "event/name of what it is about".
QStringList told;

void listen(QAccessibleEvent& event)
{
    const QAccessibleInterface* about = event.accessibleInterface();
    told.append(QLatin1String(qAccessibleEventString(event.type())) + u'/' +
                (about != nullptr ? about->text(QAccessible::Name) : QString()));
}

class GridAccessibleTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        grid.setAccessibleName(u"Clienti trovati"_s);
        grid.resize(800, 400);
        grid.addColumns({{u"IdCLiente"_s, u"Id"_s, 0, false, true, false},
                         {u"Selezione"_s, u"Selezione"_s, 76, true, true, true},
                         {u"Cliente"_s, u"Cliente"_s, 200, true, true, false},
                         {u"Paese"_s, u"Paese"_s, 120, true, true, false},
                         {u"Eta"_s, u"Età"_s, 80, true, true, false}});
        fill(200);
        grid.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&grid));
        grid.setFocus();
        told.clear();
        setAccessibilityListener(listen);
    }

    void TearDown() override { setAccessibilityListener(nullptr); }

    void fill(int records)
    {
        grid.deleteRecords();
        ColumnStore& store = grid.store();
        for (int i = 0; i < records; ++i) {
            const std::string name = "Cliente " + std::to_string(i);
            const std::string town = i % 3 == 0 ? "Roma" : "Forlì 😀 'x' %1";
            store.appendInteger(0, i);
            store.appendText(1, "", 0);
            store.appendText(2, name.data(), name.size());
            store.appendText(3, town.data(), town.size());
            if (i == 1) {
                store.appendNull(4);
            } else {
                store.appendInteger(4, 20 + i % 50);
            }
            store.endRow();
        }
        grid.populate();
    }

    ReportGridView& view() { return *grid.findChild<ReportGridView*>(); }
    GridAccessible& accessible()
    {
        return *dynamic_cast<GridAccessible*>(QAccessible::queryAccessibleInterface(&view()));
    }
    QAccessibleTableInterface& table() { return *accessible().tableInterface(); }
    QAccessibleInterface& cell(int row, int column) { return *table().cellAt(row, column); }
    QString name(int row, int column) { return cell(row, column).text(QAccessible::Name); }
    void act(int row, int column, const QString& action)
    {
        cell(row, column).actionInterface()->doAction(action);
    }

    ReportGrid grid;
};

using Actions = QAccessibleActionInterface;

} // namespace

TEST_F(GridAccessibleTest, IsATableOfWhatIsShown)
{
    EXPECT_EQ(accessible().role(), QAccessible::Table);
    EXPECT_EQ(accessible().text(QAccessible::Name), u"Clienti trovati"_s);
    EXPECT_EQ(accessible().text(QAccessible::Description), u"Righe: 200, spuntate: 0, evidenziate: 0"_s);
    EXPECT_TRUE(accessible().state().multiSelectable);
    EXPECT_EQ(table().rowCount(), 200);
    EXPECT_EQ(table().columnCount(), 4) << "the hidden id is none of them";
    EXPECT_EQ(accessible().childCount(), 201 * 4);
    EXPECT_EQ(table().columnDescription(0), u"Selezione"_s);
    EXPECT_EQ(table().columnDescription(3), u"Età"_s);
    EXPECT_EQ(table().rowDescription(5), u"Cliente 5"_s);
    EXPECT_EQ(table().columnDescription(4), QString());
    EXPECT_EQ(table().cellAt(200, 0), nullptr);
    EXPECT_EQ(table().cellAt(-1, 0), nullptr);
    EXPECT_EQ(table().cellAt(0, 4), nullptr);
}

TEST_F(GridAccessibleTest, CellsTellTheirTextPlaceAndHeader)
{
    EXPECT_EQ(name(0, 0), u"No"_s);
    EXPECT_EQ(name(7, 1), u"Cliente 7"_s);
    EXPECT_EQ(name(7, 2), u"Forlì 😀 'x' %1"_s);
    EXPECT_EQ(name(1, 3), QString()) << "NULL";
    EXPECT_EQ(cell(7, 1).role(), QAccessible::Cell);
    QAccessibleTableCellInterface& own = *cell(7, 1).tableCellInterface();
    EXPECT_EQ(own.rowIndex(), 7);
    EXPECT_EQ(own.columnIndex(), 1);
    EXPECT_EQ(own.columnExtent(), 1);
    EXPECT_EQ(own.table(), &accessible());
    ASSERT_EQ(own.columnHeaderCells().size(), 1);
    EXPECT_EQ(own.columnHeaderCells().first()->text(QAccessible::Name), u"Cliente"_s);
    EXPECT_EQ(own.columnHeaderCells().first(), accessible().child(1));
    EXPECT_EQ(&cell(7, 1), &cell(7, 1)) << "asked again, it is the same one";
    EXPECT_EQ(accessible().indexOfChild(&cell(7, 1)), 8 * 4 + 1);
    EXPECT_EQ(accessible().child(8 * 4 + 1), &cell(7, 1));
    EXPECT_EQ(cell(7, 1).parent(), &accessible());
    const QRect place = cell(7, 1).rect();
    EXPECT_EQ(accessible().childAt(place.center().x(), place.center().y()), &cell(7, 1));
    const QRect header = accessible().child(1)->rect();
    EXPECT_EQ(accessible().childAt(header.center().x(), header.center().y()), accessible().child(1));
    EXPECT_FALSE(cell(0, 1).state().offscreen);
    EXPECT_TRUE(cell(150, 1).state().offscreen);
}

TEST_F(GridAccessibleTest, ARowTellsThatItIsHighlightedFocusedAndTicked)
{
    grid.setCurrentRecord(3);
    EXPECT_TRUE(cell(3, 0).state().focused);
    EXPECT_FALSE(cell(3, 1).state().focused) << "one cell has the focus";
    EXPECT_TRUE(cell(3, 1).state().selected);
    EXPECT_FALSE(cell(4, 1).state().selected);
    EXPECT_EQ(accessible().focusChild(), &cell(3, 0));
    EXPECT_EQ(table().selectedRows(), QList<int>{3});
    EXPECT_EQ(table().selectedRowCount(), 1);
    EXPECT_TRUE(table().isRowSelected(3));

    grid.setChecked(3, true);
    EXPECT_TRUE(cell(3, 0).state().checkable);
    EXPECT_TRUE(cell(3, 0).state().checked);
    EXPECT_EQ(name(3, 0), u"Sì"_s);
    EXPECT_TRUE(cell(3, 1).state().checked);
    EXPECT_FALSE(cell(3, 1).state().checkable);
    EXPECT_FALSE(cell(4, 0).state().checked);

    EXPECT_TRUE(table().selectRow(5));
    EXPECT_EQ(table().selectedRows(), (QList<int>{3, 5}));
    EXPECT_EQ(table().selectedCells().size(), 8);
    EXPECT_TRUE(table().unselectRow(3));
    EXPECT_FALSE(table().unselectRow(3));
    EXPECT_FALSE(table().selectRow(200));
    EXPECT_EQ(table().selectedRows(), QList<int>{5});
    EXPECT_EQ(accessible().text(QAccessible::Description), u"Righe: 200, spuntate: 1, evidenziate: 1"_s);
}

TEST_F(GridAccessibleTest, TicksByAnActionAndTellsIt)
{
    EXPECT_EQ(cell(4, 0).actionInterface()->actionNames(),
              (QStringList{Actions::toggleAction(), Actions::setFocusAction()}));
    EXPECT_EQ(cell(4, 1).actionInterface()->actionNames(), QStringList{Actions::setFocusAction()});
    told.clear();
    act(4, 0, Actions::toggleAction());
    EXPECT_TRUE(grid.isChecked(4));
    EXPECT_TRUE(told.contains(u"StateChanged/Sì"_s)) << told.join(u' ').toStdString();
    EXPECT_TRUE(told.contains(u"DescriptionChanged/Clienti trovati"_s));
    act(4, 0, Actions::toggleAction());
    EXPECT_FALSE(grid.isChecked(4));
    act(4, 1, Actions::toggleAction());
    EXPECT_FALSE(grid.isChecked(4)) << "no action of that cell";
    grid.setEnabled(false);
    act(4, 0, Actions::toggleAction());
    EXPECT_FALSE(grid.isChecked(4));
    EXPECT_TRUE(cell(4, 0).actionInterface()->actionNames().isEmpty());
    EXPECT_TRUE(cell(4, 0).state().disabled);
}

TEST_F(GridAccessibleTest, TellsTheCurrentCell)
{
    QTest::keyClick(&view(), Qt::Key_Down);
    QTest::keyClick(&view(), Qt::Key_Down);
    told.clear();
    QTest::keyClick(&view(), Qt::Key_Down);
    EXPECT_TRUE(told.contains(u"Focus/No"_s)) << told.join(u' ').toStdString();
    told.clear();
    act(9, 1, Actions::setFocusAction());
    EXPECT_EQ(grid.currentRecord(), 9);
    EXPECT_TRUE(told.contains(u"Focus/Cliente 9"_s)) << told.join(u' ').toStdString();
}

TEST_F(GridAccessibleTest, HeadersSortAndSayHow)
{
    QAccessibleInterface* header = accessible().child(3);
    EXPECT_EQ(header->role(), QAccessible::ColumnHeader);
    EXPECT_EQ(header->text(QAccessible::Name), u"Età"_s);
    EXPECT_EQ(header->text(QAccessible::Description), u"Campo: Eta"_s);
    told.clear();
    header->actionInterface()->doAction(Actions::pressAction());
    EXPECT_EQ(grid.sortColumn(), 4);
    EXPECT_TRUE(told.contains(u"TableModelChanged/Clienti trovati"_s)) << told.join(u' ').toStdString();
    EXPECT_EQ(accessible().child(3), header) << "what sorted outlives the sort";
    EXPECT_EQ(header->text(QAccessible::Description), u"Ordinata in modo crescente. Campo: Eta"_s);
    header->actionInterface()->doAction(Actions::pressAction());
    EXPECT_TRUE(grid.isSortDescending());
    EXPECT_EQ(header->text(QAccessible::Description), u"Ordinata in modo decrescente. Campo: Eta"_s);
    EXPECT_EQ(name(0, 1), u"Cliente 49"_s);
}

TEST_F(GridAccessibleTest, GroupsTellLevelAndWhetherTheyAreOpen)
{
    grid.groupBy(3);
    EXPECT_EQ(table().columnCount(), 3) << "the column stands in the groups' rows now";
    QAccessibleInterface* group = table().cellAt(0, 2);
    EXPECT_EQ(group, table().cellAt(0, 0)) << "one cell as wide as the table";
    EXPECT_EQ(group->role(), QAccessible::TreeItem);
    EXPECT_EQ(group->text(QAccessible::Name), u"Paese: Forlì 😀 'x' %1"_s);
    EXPECT_EQ(group->text(QAccessible::Description), u"Gruppo di livello 1, 133 righe, aperto"_s);
    EXPECT_EQ(group->tableCellInterface()->columnExtent(), 3);
    EXPECT_TRUE(group->state().expandable);
    EXPECT_TRUE(group->state().expanded);
    EXPECT_FALSE(group->state().collapsed);
    QAccessibleInterface* roma = table().cellAt(134, 0);
    QAccessibleInterface* last = table().cellAt(201, 1);
    QAccessibleInterface* inside = table().cellAt(5, 1);
    const QAccessible::Id insideId = QAccessible::uniqueId(inside);
    const QString lastName = last->text(QAccessible::Name);

    told.clear();
    group->actionInterface()->doAction(Actions::pressAction());
    EXPECT_TRUE(group->state().collapsed);
    EXPECT_EQ(group->text(QAccessible::Description), u"Gruppo di livello 1, 133 righe, chiuso"_s);
    EXPECT_TRUE(told.contains(u"StateChanged/Paese: Forlì 😀 'x' %1"_s)) << told.join(u' ').toStdString();
    EXPECT_EQ(table().rowCount(), 69);
    EXPECT_EQ(table().cellAt(1, 0), roma) << "what is further down is still itself";
    EXPECT_EQ(last->tableCellInterface()->rowIndex(), 68);
    EXPECT_EQ(last->text(QAccessible::Name), lastName);
    EXPECT_EQ(QAccessible::accessibleInterface(insideId), nullptr) << "what is in the group is gone";

    group->actionInterface()->doAction(Actions::pressAction());
    EXPECT_EQ(last->tableCellInterface()->rowIndex(), 201);
    EXPECT_EQ(table().cellAt(134, 0), roma);
}

TEST_F(GridAccessibleTest, AGroupOfOneRowSaysSo)
{
    grid.groupBy(2);
    EXPECT_EQ(table().cellAt(0, 0)->text(QAccessible::Description), u"Gruppo di livello 1, 1 riga, aperto"_s);
}

TEST_F(GridAccessibleTest, AGroupTicksItsRowsByAnAction)
{
    grid.groupBy(3);
    QAccessibleInterface* group = table().cellAt(0, 0);
    EXPECT_TRUE(group->state().checkable);
    EXPECT_FALSE(group->state().checked || group->state().checkStateMixed);
    group->actionInterface()->doAction(Actions::toggleAction());
    EXPECT_EQ(grid.checkedCount(), 133U);
    EXPECT_TRUE(group->state().checked);
    act(1, 0, Actions::toggleAction());
    EXPECT_TRUE(group->state().checkStateMixed);
    EXPECT_FALSE(group->state().checked);
}

TEST_F(GridAccessibleTest, AMillionRowsCostNothingUntilTheyAreAskedFor)
{
    constexpr int million = 1'000'000;
    fill(million);
    EXPECT_EQ(accessible().cellsKept(), 0);
    EXPECT_EQ(accessible().childCount(), (million + 1) * 4);
    EXPECT_EQ(table().rowCount(), million);
    EXPECT_EQ(name(million - 1, 1), u"Cliente 999999"_s);
    EXPECT_EQ(accessible().cellsKept(), 1);
    grid.setAllChecked(true);
    EXPECT_EQ(accessible().text(QAccessible::Description),
              u"Righe: 1000000, spuntate: 1000000, evidenziate: 0"_s);
    fill(10);
    EXPECT_EQ(accessible().cellsKept(), 0) << "other rows, other cells";
}

TEST_F(GridAccessibleTest, GoesWithItsGrid)
{
    auto other = std::make_unique<ReportGrid>();
    other->addColumns({{u"Testo"_s, u"Testo"_s, 100, true, true, false}});
    other->store().appendText(0, "uno", 3);
    other->store().endRow();
    other->populate();
    auto* list = other->findChild<ReportGridView*>();
    QAccessibleInterface* own = QAccessible::queryAccessibleInterface(list);
    EXPECT_EQ(own->text(QAccessible::Name), u"Elenco"_s);
    EXPECT_EQ(own->text(QAccessible::Description), u"Righe: 1, evidenziate: 0"_s) << "it does not tick";
    QAccessibleInterface* cell = own->tableInterface()->cellAt(0, 0);
    EXPECT_EQ(accessible().indexOfChild(cell), -1) << "of another table";
    EXPECT_FALSE(cell->state().checkable);
    const QAccessible::Id id = QAccessible::uniqueId(cell);
    other.reset();
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}
