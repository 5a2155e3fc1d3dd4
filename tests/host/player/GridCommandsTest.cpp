// The commands that work a report grid, on the real one.
#include "tests/host/player/PlayedSession.h"

#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"

#include <QDialog>
#include <QVBoxLayout>

#include <cstring>

namespace {

using namespace Qt::StringLiterals;
using zul::ReportGrid;
using zul::host::test::Outcome;
using zul::host::test::play;
using zul::host::test::ScriptedHost;

zul::ReportColumn column(const char* field, const char* caption, bool visible = true)
{
    zul::ReportColumn result;
    result.field = QLatin1String(field);
    result.caption = QString::fromUtf8(caption);
    result.visible = visible;
    return result;
}

void fill(ReportGrid& grid)
{
    grid.addColumn(column("IdCLiente", "Id", false));
    zul::ReportColumn check = column("Selezione", "Selezione");
    check.check = true;
    grid.addColumn(check);
    grid.addColumn(column("Cliente", "Cliente"));
    zul::ReportColumn place = column("Paese", "Paese");
    place.width = 120;
    grid.addColumn(place);
    grid.addColumn(column("Eta", "Età"));
    struct Customer
    {
        int id;
        const char* name;
        const char* place; // null: NULL
        int age;
    };
    for (const Customer& one :
         {Customer{12, "Rossi Mario", "Roma", 46}, Customer{7, "D'Amico \"50%\" 😀", "Forlì", 18},
          Customer{99, "Bianchi Ada", nullptr, 30}, Customer{3, "Verdi Ugo", "Roma", 71}}) {
        zul::ColumnStore& store = grid.store();
        store.appendInteger(0, one.id);
        store.appendText(2, one.name, std::strlen(one.name));
        if (one.place != nullptr) {
            store.appendText(3, one.place, std::strlen(one.place));
        }
        store.appendInteger(4, one.age);
        store.endRow();
    }
    grid.populate();
}

class GridCommands : public ::testing::Test
{
protected:
    ScriptedHost host;
    std::function<void(ReportGrid&)> prepare = [](ReportGrid&) {};
    std::function<void(ReportGrid&)> inspect = [](ReportGrid&) {};

    void SetUp() override
    {
        host.opens(u"show"_s, [this] {
            QDialog form;
            form.setObjectName(u"frmSMS"_s);
            auto* grid = new ReportGrid;
            grid->setObjectName(u"grdClienti"_s);
            grid->setGroupBoxVisible(true);
            (new QVBoxLayout(&form))->addWidget(grid);
            form.resize(800, 500);
            fill(*grid);
            prepare(*grid);
            form.exec();
            inspect(*grid);
        });
    }

    QStringList playInForm(const std::string& script)
    {
        const Outcome outcome = play(host, "call show\n" + script);
        EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
        EXPECT_GE(outcome.lines.size(), 3) << outcome.text();
        return outcome.lines.mid(1, outcome.lines.size() - 3);
    }

    QString refusal(const std::string& command)
    {
        const Outcome outcome = play(host, "call show\n" + command + "\n");
        EXPECT_EQ(outcome.result, 2) << command;
        return outcome.errors.value(0);
    }
};

TEST_F(GridCommands, RowsPrintHiddenColumnsAndNull)
{
    EXPECT_EQ(playInForm("rows grdClienti\n"),
              (QStringList{"row 0 \"12\" [ ] \"Rossi Mario\" \"Roma\" \"46\"",
                           "row 1 \"7\" [ ] \"D'Amico \\\"50%\\\" 😀\" \"Forlì\" \"18\"",
                           "row 2 \"99\" [ ] \"Bianchi Ada\" NULL \"30\"",
                           "row 3 \"3\" [ ] \"Verdi Ugo\" \"Roma\" \"71\""}));
    EXPECT_EQ(playInForm("rows grdClienti 1 2\n").size(), 2);
    EXPECT_EQ(playInForm("rows grdClienti 3 100\nrows grdClienti 4 1\n").size(), 1);
}

TEST_F(GridCommands, TickTicksTheRowAsItStands)
{
    const QStringList lines = playInForm("sort grdClienti 2\ntick grdClienti 0\nrows grdClienti 0 1\n"
                                         "tick grdClienti 0\nrows grdClienti 0 1\n");
    EXPECT_EQ(lines, (QStringList{"row 0 \"99\" [x] \"Bianchi Ada\" NULL \"30\"",
                                  "row 0 \"99\" [ ] \"Bianchi Ada\" NULL \"30\""}));
}

TEST_F(GridCommands, RowHighlightsAndDoesNotTick)
{
    inspect = [](ReportGrid& grid) {
        EXPECT_EQ(grid.selectedRecords(), (std::vector<uint32_t>{0, 1, 3}));
        EXPECT_EQ(grid.checkedCount(), 0U);
    };
    playInForm("row grdClienti 0\nrow grdClienti 1 shift\nrow grdClienti 3 ctrl\n");
}

TEST_F(GridCommands, DoubleClickIsOne)
{
    int count = 0;
    prepare = [&](ReportGrid& grid) {
        QObject::connect(&grid, &ReportGrid::recordDoubleClicked, &grid, [&](uint32_t record) {
            ++count;
            EXPECT_EQ(record, 2U);
        });
    };
    playInForm("row grdClienti 2\nrow grdClienti 2\ndoubleclick grdClienti 2\n");
    EXPECT_EQ(count, 1);
}

TEST_F(GridCommands, SortTurnsRound)
{
    const QStringList lines =
        playInForm("sort grdClienti 4\nrows grdClienti 0 1\nsort grdClienti 4\nrows grdClienti 0 1\n");
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].endsWith("\"18\"")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].endsWith("\"71\"")) << lines[1].toStdString();
}

TEST_F(GridCommands, GroupAndUngroup)
{
    const QStringList lines =
        playInForm("group grdClienti 3\nrows grdClienti\nungroup grdClienti\nrows grdClienti 0 1\n");
    EXPECT_EQ(lines.filter(u"group "_s).size(), 3) << lines.join('\n').toStdString();
    EXPECT_TRUE(lines.contains(u"group \"Paese: Roma\" 2"_s)) << lines.join('\n').toStdString();
    EXPECT_TRUE(lines.last().startsWith(u"row 0 "_s)) << lines.last().toStdString();
}

TEST_F(GridCommands, WidthAndMoveDragTheHeader)
{
    QList<int> kinds;
    prepare = [&](ReportGrid& grid) {
        QObject::connect(&grid, &ReportGrid::columnLayoutChanged, &grid,
                         [&](int kind) { kinds.append(kind); });
    };
    inspect = [](ReportGrid& grid) {
        EXPECT_EQ(probeOf(&grid)->headerRect(3).width(), 150);
        EXPECT_EQ(probeOf(&grid)->visiblePosition(4), 1);
        EXPECT_EQ(probeOf(&grid)->visiblePosition(2), 2);
    };
    playInForm("width grdClienti 3 150\nmove grdClienti 4 1\n");
    EXPECT_TRUE(kinds.contains(ReportGrid::ColumnResized));
    EXPECT_TRUE(kinds.contains(ReportGrid::ColumnMoved));
}

TEST_F(GridCommands, MoveGoesBothWays)
{
    inspect = [](ReportGrid& grid) {
        EXPECT_EQ(probeOf(&grid)->visiblePosition(1), 3);
        EXPECT_EQ(probeOf(&grid)->visiblePosition(4), 0);
    };
    playInForm("move grdClienti 4 0\nmove grdClienti 1 3\n");
}

TEST_F(GridCommands, WhatIsNotThereIsSaid)
{
    EXPECT_EQ(refusal("row grdClienti 4"), u"line 2: \"grdClienti\" has no row 4"_s);
    EXPECT_EQ(refusal("tick grdClienti -1"), u"line 2: \"grdClienti\" has no row -1"_s);
    EXPECT_EQ(refusal("sort grdClienti 0"), u"line 2: column 0 of \"grdClienti\" is hidden"_s);
    EXPECT_EQ(refusal("width grdClienti 3 999999999"), u"line 2: 999999999 is no size"_s);
    EXPECT_EQ(refusal("width grdClienti 9 10"), u"line 2: \"grdClienti\" has no column 9"_s);
    EXPECT_EQ(refusal("move grdClienti 2 9"), u"line 2: there is no visible position 9"_s);
    EXPECT_EQ(refusal("row grdClienti 0 alt"), u"line 2: \"alt\" is neither ctrl nor shift"_s);
    prepare = [](ReportGrid& grid) { grid.setGroupBoxVisible(false); };
    EXPECT_EQ(refusal("group grdClienti 3"), u"line 2: \"grdClienti\" shows no group box"_s);
}
} // namespace
