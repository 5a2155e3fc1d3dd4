#include "mainwindow/GridLoad.h"

#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"
#include "hostlib/Ado.h"
#include "hostlib/Error.h"
#include "selection/ResultGridQuery.h"
#include "tests/support/ComponentTest.h"

#include <QHeaderView>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;

const QDate today(2025, 3, 7);
const std::vector<std::string> fields{"IdCLiente",          "Selezione", "Cliente", "Paese",
                                      "Provincia",          "Eta",       "Sesso",   "DataNascita",
                                      "Telefono",           "Telefono2", "email",   "MailCommerciale",
                                      "MailAmministrazione"};

std::vector<Variant> customer(int id, const char* name)
{
    return {number(id),  text(""),     text(name),    text("Roma"),   text("RM"), number(46),    text("M"),
            date(29221), text("06 1"), text("333 1"), text("a@b.it"), null(),     text("c@d.it")};
}

class GridLoadTest : public ComponentTest
{
protected:
    void load() { loadResultGrid(connection().connection(), grid, today); }
    ReportGrid grid;
};

class GridLoadReaderTest : public GridLoadTest, public ::testing::WithParamInterface<bool>
{
protected:
    GridLoadReaderTest() { host.giveRowReader(GetParam()); }
};

TEST_P(GridLoadReaderTest, RunsTheQueryForwardOnlyAndShowsThirteenColumns)
{
    host.answer("tabSpoolReportStat2", {fields, {customer(7, "Rossi Mario")}});
    load();
    EXPECT_EQ(host.operations(),
              std::vector<std::string>{"open " + utf8(resultGridQuery(today)) + " forward-only read-only"});
    EXPECT_EQ(host.openRowSets(), 0);
    ASSERT_EQ(grid.columnCount(), 13);
    QStringList captions;
    for (int column = 0; column < 13; ++column) {
        captions.append(grid.columnCaption(column));
    }
    EXPECT_EQ(captions.join(u'|'),
              QStringLiteral("Id|Selezione|RagioneSociale1|Paese|Provincia|Telefono|Eta|Sesso|Data "
                             "nascita|Telefono|Telefono2|MailCommerciale|MailAmministrazione"));
    EXPECT_EQ(grid.columnField(0), QStringLiteral("IdCLiente"));
    EXPECT_EQ(grid.checkColumn(), 1);
    EXPECT_TRUE(probeOf(&grid)->headerRect(0).isEmpty()) << "the id is hidden";
    ASSERT_EQ(grid.recordCount(), 1U);
    EXPECT_EQ(grid.cellText(0, ColumnIdCliente), QStringLiteral("7"));
    EXPECT_EQ(grid.cellText(0, ColumnCliente), QStringLiteral("Rossi Mario"));
    EXPECT_EQ(grid.cellText(0, ColumnEta), QStringLiteral("46"));
    EXPECT_EQ(grid.cellText(0, ColumnMailCommerciale), QString());
    EXPECT_EQ(grid.cellText(0, ColumnMailAmministrazione), QStringLiteral("c@d.it"));
    EXPECT_FALSE(grid.isChecked(0));
}

TEST_F(GridLoadTest, HeadersTellWhatTheirFieldsHoldWhateverTheirCaptionsSay)
{
    host.answer("tabSpoolReportStat2", {fields, {}});
    load();
    const auto* header = qobject_cast<QHeaderView*>(probeOf(&grid)->headerViewport()->parentWidget());
    ASSERT_NE(header, nullptr);
    const auto toolTip = [header](int column) {
        return header->model()->headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString();
    };
    EXPECT_EQ(grid.columnCaption(ColumnEta), QStringLiteral("Telefono"));
    EXPECT_EQ(toolTip(ColumnEta), QStringLiteral("Campo: Eta\nContenuto: età in anni"));
    for (int column = 0; column < grid.columnCount(); ++column) {
        EXPECT_TRUE(toolTip(column).contains(QStringLiteral("\nContenuto: "))) << column;
    }
}

TEST_P(GridLoadReaderTest, NamesComeAsTheyAre)
{
    const std::string longName(10000, 'x');
    host.answer("tabSpoolReportStat2",
                {fields,
                 {customer(1, " Bianchi"), customer(2, " "), customer(3, "D'Amico 100% \"à è\" € 😀"),
                  customer(4, longName.c_str())}});
    load();
    EXPECT_EQ(grid.cellText(0, ColumnCliente), QStringLiteral(" Bianchi")) << "second name only";
    EXPECT_EQ(grid.cellText(1, ColumnCliente), QStringLiteral(" ")) << "no name at all";
    EXPECT_EQ(grid.cellText(2, ColumnCliente), QStringLiteral("D'Amico 100% \"à è\" € 😀"));
    EXPECT_EQ(grid.cellText(3, ColumnCliente).size(), 10000);
}

TEST_P(GridLoadReaderTest, ARowSetThatBreaksOffLeavesTheGridAsItWas)
{
    host.answer("tabSpoolReportStat2", {fields, {customer(7, "Rossi"), customer(8, "Verdi")}});
    load();
    grid.setChecked(1, true);
    host.failAtRow(2, E_FAIL, u"connection lost");
    EXPECT_THROW(load(), Error);
    EXPECT_EQ(grid.recordCount(), 2U);
    EXPECT_EQ(grid.columnCount(), 13);
    EXPECT_TRUE(grid.isChecked(1));
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_P(GridLoadReaderTest, AHostThatCountsTheFieldsOtherwiseEachTimeLeavesAWholeGrid)
{
    host.answer("tabSpoolReportStat2", {fields, {customer(7, "Rossi")}});
    load();
    for (const std::vector<long>& counts : {std::vector<long>{-1}, {0, 13}, {2, 13}, {13, -1}, {13, 2}}) {
        const int before = grid.columnCount();
        host.fieldCounts() = counts;
        const long failed = errorOf([&] { load(); });
        EXPECT_TRUE(failed == 0 || failed == 9) << failed;
        EXPECT_EQ(grid.columnCount(), failed == 0 ? counts.front() : before);
        EXPECT_EQ(grid.recordCount(), 1U);
        EXPECT_EQ(host.openRowSets(), 0);
        host.fieldCounts().clear();
    }
}

INSTANTIATE_TEST_SUITE_P(RowReader, GridLoadReaderTest, ::testing::Bool(),
                         [](const auto& given) { return given.param ? "with" : "without"; });

TEST_F(GridLoadTest, AnEmptyScratchTableShowsAllColumnsAndNoRow)
{
    host.answer("tabSpoolReportStat2", {fields, {}});
    load();
    EXPECT_EQ(grid.columnCount(), 13);
    EXPECT_EQ(grid.recordCount(), 0U);
    EXPECT_TRUE(messages.empty());
}

TEST_F(GridLoadTest, TicksAreNotKeptAcrossSearches)
{
    host.answer("tabSpoolReportStat2", {fields, {customer(7, "Rossi")}});
    load();
    grid.setAllChecked(true);
    load();
    EXPECT_FALSE(grid.isChecked(0));
}

TEST_F(GridLoadTest, AQueryThatCannotBeOpenedLeavesTheGridAsItWas)
{
    host.answer("tabSpoolReportStat2", {fields, {customer(7, "Rossi")}});
    load();
    host.failNth("open", 1, E_FAIL, u"no");
    EXPECT_THROW(load(), Error);
    EXPECT_EQ(grid.recordCount(), 1U);
}

} // namespace
} // namespace zul
