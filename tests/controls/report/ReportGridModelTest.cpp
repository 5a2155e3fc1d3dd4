#include "controls/report/ReportGridModel.h"

#include <QAbstractItemModelTester>
#include <QCollator>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <string>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

using Records = std::vector<uint32_t>;

class ReportGridModelTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        model.addColumn({u"Id"_s, u"Id"_s, 0, false, true, false});
        model.addColumn({u"Selezione"_s, u"Selezione"_s, 0, true, true, true});
        model.addColumn({u"Cliente"_s, u"Cliente"_s, 0, true, true, false});
        model.addColumn({u"Paese"_s, u"Paese"_s, 0, true, true, false});
        model.addColumn({u"Sesso"_s, u"Sesso"_s, 0, true, true, false});
        add(10, "Rossi", "Roma", "M");
        add(11, "Bianchi", "Milano", "F");
        add(12, "Verdi", "Roma", "F");
        add(13, "Neri", "Torino", "M");
        add(14, "Gialli", "roma", "M");
        add(15, "Blu", nullptr, "M");
        model.populate();
    }

    void add(int id, const char* name, const char* town, const char* sex) { add(model, id, name, town, sex); }

    static void add(ReportGridModel& to, int id, const char* name, const char* town, const char* sex)
    {
        ColumnStore& store = to.store();
        store.appendInteger(0, id);
        store.appendText(1, "", 0);
        store.appendText(2, name, std::string(name).size());
        if (town != nullptr) {
            store.appendText(3, town, std::string(town).size());
        }
        store.appendText(4, sex, std::string(sex).size());
        store.endRow();
    }

    /// The rows on the screen: records as numbers, groups as caption and count.
    QStringList screen() const { return screenOf(model); }

    static QStringList screenOf(const ReportGridModel& shown)
    {
        QStringList rows;
        for (int row = 0; row < shown.rowCount(); ++row) {
            rows << (shown.isGroup(row) ? u"%1 (%2)"_s.arg(shown.groupCaption(row)).arg(shown.groupCount(row))
                                        : QString::number(shown.record(row)));
        }
        return rows;
    }

    static QStringList list(const char* text) { return QString::fromUtf8(text).split(u'|'); }

    ReportGridModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

} // namespace

TEST_F(ReportGridModelTest, ShowsRecordsInTheOrderTheyCame)
{
    EXPECT_EQ(screen(), list("0|1|2|3|4|5"));
    EXPECT_EQ(model.data(model.index(1, 2)).toString(), u"Bianchi"_s);
    EXPECT_EQ(model.data(model.index(0, 0)).toString(), u"10"_s);
    EXPECT_EQ(model.headerData(3, Qt::Horizontal, Qt::DisplayRole).toString(), u"Paese"_s);
}

TEST_F(ReportGridModelTest, SortsUpAndDown)
{
    model.setSorting({2, false});
    EXPECT_EQ(screen(), list("1|5|4|3|0|2"));
    model.setSorting({2, true});
    EXPECT_EQ(screen(), list("2|0|3|4|5|1"));
    model.setSorting({0, true});
    EXPECT_EQ(screen(), list("5|4|3|2|1|0"));
    model.setSorting({});
    EXPECT_EQ(screen(), list("0|1|2|3|4|5"));
}

TEST_F(ReportGridModelTest, SortsByTheTicks)
{
    model.setChecked(2, true);
    model.setChecked(4, true);
    model.setSorting({1, true});
    EXPECT_EQ(screen(), list("2|4|0|1|3|5"));
}

TEST_F(ReportGridModelTest, GroupsWithoutRegardToCaseAndKeepsTheSortInside)
{
    model.setSorting({2, false});
    model.setGroupColumns({{3, false}});
    EXPECT_EQ(screen(), list("Paese:  (1)|5|Paese: Milano (1)|1|Paese: roma (3)|4|0|2|Paese: Torino (1)|3"));
    EXPECT_EQ(model.recordsInOrder(), (Records{5, 1, 4, 0, 2, 3}));
}

TEST_F(ReportGridModelTest, GroupsInGroups)
{
    model.setGroupColumns({{4, true}, {3, false}});
    EXPECT_EQ(screen(), list("Sesso: M (4)|Paese:  (1)|5|Paese: Roma (2)|0|4|Paese: Torino (1)|3|"
                             "Sesso: F (2)|Paese: Milano (1)|1|Paese: Roma (1)|2"));
    EXPECT_EQ(model.groupLevel(0), 0);
    EXPECT_EQ(model.groupLevel(1), 1);
    EXPECT_EQ(model.groupLevel(2), 2);
    EXPECT_EQ(model.groupRowAbove(2), 1);
    EXPECT_EQ(model.groupRowAbove(1), 0);
    EXPECT_EQ(model.groupRowAbove(0), -1);
}

TEST_F(ReportGridModelTest, ClosedGroupsKeepTheirRecordsInTheOrder)
{
    model.setGroupColumns({{4, false}, {3, false}});
    const Records before = model.recordsInOrder();
    model.setGroupClosed(0, true);
    EXPECT_EQ(screen(),
              list("Sesso: F (2)|Sesso: M (4)|Paese:  (1)|5|Paese: Roma (2)|0|4|Paese: Torino (1)|3"));
    EXPECT_EQ(model.recordsInOrder(), before);
    model.setGroupClosed(4, true); // Roma inside M
    EXPECT_EQ(screen(), list("Sesso: F (2)|Sesso: M (4)|Paese:  (1)|5|Paese: Roma (2)|Paese: Torino (1)|3"));
    model.setGroupClosed(1, true);
    EXPECT_EQ(screen(), list("Sesso: F (2)|Sesso: M (4)"));
    model.setGroupClosed(1, false);
    EXPECT_EQ(screen(), list("Sesso: F (2)|Sesso: M (4)|Paese:  (1)|5|Paese: Roma (2)|Paese: Torino (1)|3"))
        << "an inner group is found as it was left";
    model.setAllGroupsClosed(false);
    EXPECT_EQ(model.rowCount(), 13);
    model.setAllGroupsClosed(true);
    EXPECT_EQ(model.rowCount(), 2);
}

TEST_F(ReportGridModelTest, GroupsStayClosedWhenTheOrderOrTheFilterChanges)
{
    model.setGroupColumns({{4, false}});
    model.setGroupClosed(0, true);
    model.setSorting({2, false});
    EXPECT_EQ(screen(), list("Sesso: F (2)|Sesso: M (4)|5|4|3|0"));
    model.setTextFilter(u"ro"_s);
    EXPECT_EQ(screen(), list("Sesso: F (1)|Sesso: M (2)|4|0"));
}

TEST_F(ReportGridModelTest, FiltersByEveryShownColumn)
{
    model.setTextFilter(u"ROM"_s);
    EXPECT_EQ(screen(), list("0|2|4"));
    model.setSorting({2, true});
    EXPECT_EQ(screen(), list("2|0|4"));
    model.setTextFilter(u"13"_s);
    EXPECT_EQ(model.rowCount(), 0) << "the id is hidden";
    model.setTextFilter(QString());
    EXPECT_EQ(screen(), list("2|0|3|4|5|1"));
    EXPECT_EQ(model.recordsInOrder(), (Records{2, 0, 3, 4, 5, 1}));
}

TEST_F(ReportGridModelTest, AColumnThatTheOperatorHidIsNotSearched)
{
    model.setTextFilter(u"torino"_s);
    EXPECT_EQ(screen(), list("3"));
    model.setColumnShown(3, false);
    EXPECT_EQ(model.rowCount(), 0);
    model.setColumnShown(3, true);
    EXPECT_EQ(screen(), list("3"));
}

TEST_F(ReportGridModelTest, ResetsTheViewOnceForAChange)
{
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    model.setSorting({2, false});
    model.setTextFilter(u"a"_s);
    model.setGroupColumns({{3, false}});
    EXPECT_EQ(resets.count(), 3);
    model.populate();
    EXPECT_EQ(resets.count(), 3) << "nothing has changed: drawing anew is enough";
    add(16, "Viola", "Roma", "F");
    model.populate();
    EXPECT_EQ(resets.count(), 4);
}

TEST_F(ReportGridModelTest, ShowsWhatWasAddedOrChangedAfterPopulate)
{
    add(16, "Viola", "Roma", "F");
    EXPECT_EQ(model.rowCount(), 6);
    model.populate();
    EXPECT_EQ(model.rowCount(), 7);
    model.setSorting({2, false});
    model.store().setText(6, 2, "Aaron", 5);
    model.populate();
    EXPECT_EQ(model.record(0), 6);
}

TEST_F(ReportGridModelTest, TicksOneAllAndRanges)
{
    EXPECT_EQ(model.checkColumn(), 1);
    EXPECT_TRUE(model.setData(model.index(3, 1), Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(model.isChecked(3));
    EXPECT_EQ(model.data(model.index(3, 1), Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_FALSE(model.setData(model.index(3, 2), Qt::Checked, Qt::CheckStateRole));
    model.setAllChecked(true);
    EXPECT_EQ(model.checkedCount(), 6U);
    model.setAllChecked(false);
    EXPECT_EQ(model.checkedCount(), 0U);
    model.setGroupColumns({{4, false}});
    model.setRowsChecked(0, 3, true); // group F, its two records, group M
    EXPECT_TRUE(model.isChecked(1));
    EXPECT_TRUE(model.isChecked(2));
    EXPECT_EQ(model.checkedCount(), 2U);
    model.setRowsChecked(-5, 1000, true);
    EXPECT_EQ(model.checkedCount(), 6U);
    model.deleteRecords();
    EXPECT_EQ(model.checkedCount(), 0U) << "ticks are not kept across fills";
}

TEST_F(ReportGridModelTest, TicksHiddenByTheFilterToo)
{
    model.setTextFilter(u"torino"_s);
    model.setAllChecked(true);
    EXPECT_EQ(model.checkedCount(), 6U);
}

TEST_F(ReportGridModelTest, EmptiesAndFillsAgain)
{
    model.setSorting({2, false});
    model.setGroupColumns({{3, false}});
    model.deleteRecords();
    EXPECT_EQ(model.rowCount(), 0);
    add(1, "Uno", "Roma", "M");
    model.populate();
    EXPECT_EQ(screen(), list("Paese: Roma (1)|0"));
    model.deleteColumns();
    EXPECT_EQ(model.columnCount(), 0);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.checkColumn(), -1);
    EXPECT_TRUE(model.groupColumns().empty());
}

TEST_F(ReportGridModelTest, TellsScreenReadersWhatACellIs)
{
    model.setChecked(0, true);
    EXPECT_EQ(model.data(model.index(0, 1), Qt::AccessibleTextRole).toString(), u"Selezione: sì"_s);
    EXPECT_EQ(model.data(model.index(0, 2), Qt::AccessibleTextRole).toString(), u"Cliente: Rossi"_s);
}

TEST_F(ReportGridModelTest, GroupsManyRecordsAsALookAtEachDoes)
{
    // Whatever was sorted and grouped before: the screen is that of a list which was set up so at once.
    const std::vector<const char*> towns = {"Roma", "ROMA",  "L'Aquila", "Forlì", "Forli",
                                            "",     nullptr, "😀 Città",  "100%"};
    const std::vector<const char*> names = {"D'Angelo", "d'angelo", "Zoë", "à", "è", "€"};
    const auto fill = [&](ReportGridModel& filled) {
        for (uint32_t i = 0; i < 6000; ++i) {
            ColumnStore& store = filled.store();
            store.appendInteger(0, i);
            store.appendText(1, "", 0);
            const std::string name =
                std::string(names[std::size_t{i} * 31 % names.size()]) + std::to_string(i * 7 % 50);
            store.appendText(2, name.data(), name.size());
            if (const char* town = towns[std::size_t{i} * 17 % towns.size()]) {
                store.appendText(3, town, std::string(town).size());
            }
            store.appendText(4, i % 3 == 0 ? "M" : "F", 1);
            store.endRow();
        }
        filled.populate();
        for (uint32_t i = 0; i < 6006; i += 5) {
            filled.setChecked(i, true);
        }
    };
    fill(model);
    using Sorts = std::vector<ReportSort>;
    QCollator collator(QLocale().collation());
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const auto expectGroupsWhereValuesChange = [&](const char* what) {
        const Records& order = model.recordsInOrder();
        size_t place = 0;
        std::vector<int> begun; // levels of the groups that begin here
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.isGroup(row)) {
                begun.push_back(model.groupLevel(row));
                continue;
            }
            ASSERT_LT(place, order.size()) << what;
            ASSERT_EQ(model.record(row), static_cast<int>(order[place])) << what;
            std::vector<int> expected;
            for (size_t level = 0; level < model.groupColumns().size(); ++level) {
                const int column = model.groupColumns()[level].column;
                const auto same = [&](uint32_t a, uint32_t b) {
                    return column == model.checkColumn()
                               ? model.isChecked(a) == model.isChecked(b)
                               : collator.compare(model.store().text(a, column),
                                                  model.store().text(b, column)) == 0;
                };
                if (place == 0 || !expected.empty() || !same(order[place - 1], order[place])) {
                    expected.push_back(static_cast<int>(level));
                }
            }
            ASSERT_EQ(begun, expected) << what << ", row " << row;
            begun.clear();
            ++place;
        }
        EXPECT_EQ(place, order.size()) << what;
        EXPECT_TRUE(begun.empty()) << what;
    };
    const auto expectAsSetUpAtOnce = [&](const char* what) {
        ReportGridModel fresh;
        for (const ReportColumn& column : model.columns()) {
            fresh.addColumn(column);
        }
        add(fresh, 10, "Rossi", "Roma", "M");
        add(fresh, 11, "Bianchi", "Milano", "F");
        add(fresh, 12, "Verdi", "Roma", "F");
        add(fresh, 13, "Neri", "Torino", "M");
        add(fresh, 14, "Gialli", "roma", "M");
        add(fresh, 15, "Blu", nullptr, "M");
        fill(fresh);
        for (uint32_t i = 0; i < fresh.recordCount(); ++i) {
            fresh.setChecked(i, model.isChecked(i));
        }
        // The order last: so that everything is sorted from the beginning.
        fresh.setTextFilter(model.textFilter());
        fresh.setGroupColumns(model.groupColumns());
        fresh.setSorting(model.sorting());
        EXPECT_EQ(model.recordsInOrder(), fresh.recordsInOrder()) << what;
        EXPECT_EQ(screenOf(model), screenOf(fresh)) << what;
        expectGroupsWhereValuesChange(what);
    };
    model.setSorting({2, false});
    expectAsSetUpAtOnce("sorted");
    model.setGroupColumns(Sorts{{3, false}});
    expectAsSetUpAtOnce("grouped while sorted");
    model.setGroupColumns(Sorts{{3, false}, {4, true}});
    expectAsSetUpAtOnce("an inner group added");
    model.setGroupColumns(Sorts{{4, false}, {3, true}});
    expectAsSetUpAtOnce("groups changed places and directions");
    model.setTextFilter(u"forl"_s);
    expectAsSetUpAtOnce("filtered");
    model.setGroupColumns(Sorts{{4, false}});
    expectAsSetUpAtOnce("a group taken away");
    model.setTextFilter(QString());
    model.setGroupColumns(Sorts{{1, false}, {4, false}});
    expectAsSetUpAtOnce("grouped by ticks");
    for (uint32_t i = 0; i < 6006; i += 3) {
        model.setChecked(i, !model.isChecked(i));
    }
    model.setGroupColumns(Sorts{{1, false}, {4, false}, {3, false}});
    expectAsSetUpAtOnce("ticks changed before a group was added");
    expectAsSetUpAtOnce("grouped by ticks that changed");
}

TEST_F(ReportGridModelTest, GroupsByWhatWasWrittenSinceTheLastSort)
{
    model.setSorting({2, false});
    model.store().setText(5, 3, "Milano", 6);
    model.setGroupColumns({{3, false}});
    EXPECT_EQ(screen(), list("Paese: Milano (2)|1|5|Paese: roma (3)|4|0|2|Paese: Torino (1)|3"));
}
