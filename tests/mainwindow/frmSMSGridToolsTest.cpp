// What stands around the rows of the main window: counts, find and filter.
#include "controls/gridtools/GridTools.h"
#include "controls/gridtools/OutcomeTools.h"
#include "controls/notices/OutcomeList.h"
#include "tests/mainwindow/SmsFormTest.h"

#include <QLabel>
#include <QLineEdit>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class SmsFormGridToolsTest : public SmsFormTest
{
protected:
    SmsFormGridToolsTest()
    {
        host.customers()[1] = {"Rossi Mario", "scheda@rossi.it"};
        host.customers()[2] = {"Verdi Anna", "scheda@verdi.it"};
        host.answer("idMessaggio=12", {{"testoSMS", "Oggetto"}, {{text("Ciao"), null()}}});
        scriptCustomers({customer(1, "Rossi", "333", "a@b.it"), customer(2, "Anna Verdi", "334", "c@d.it")});
    }

    QString counts()
    {
        QCoreApplication::processEvents();
        return find<QLabel>(u"lblConteggi"_s)->text();
    }

    void filter(const QString& text)
    {
        QTest::keyClick(grid()->focusProxy(), Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(find<QLineEdit>(u"txtTrova"_s), text);
        box("chkSoloCorrispondenti")->click();
    }
};

TEST_F(SmsFormGridToolsTest, CountsFollowSearchTicksAndHighlights)
{
    open();
    EXPECT_EQ(counts(), u"0 clienti · 0 selezionati · 0 evidenziati"_s);
    search();
    EXPECT_EQ(counts(), u"2 clienti · 0 selezionati · 0 evidenziati"_s);
    click("cmdSelAll");
    clickRow(0);
    EXPECT_EQ(counts(), u"2 clienti · 2 selezionati · 1 evidenziato"_s);
}

/// Counts how often a control is painted.
class PaintCount : public QObject
{
public:
    explicit PaintCount(QWidget* watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

TEST_F(SmsFormGridToolsTest, WhatASearchOrARunHasDoneIsDrawnWithoutATouch)
{
    open();
    QTest::qWait(50);
    PaintCount rows(probeOf(grid())->bodyViewport());
    QTest::keyClick(form.get(), Qt::Key_F5);
    EXPECT_TRUE(QTest::qWaitFor([&] { return rows.count > 0; }));
    click("cmdSelAll");
    page("tab_Invio", 1);
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    click("cmdProsegui2");
    QTest::qWait(50);
    PaintCount summary(find<QLabel>(u"lblRiepilogo"_s));
    click("cmdCreaMessaggi");
    EXPECT_TRUE(QTest::qWaitFor([&] { return summary.count > 0; }));
}

TEST_F(SmsFormGridToolsTest, WhoIsTickedIsARecipientAlsoBehindTheFilter)
{
    open();
    search();
    tick(0);
    filter(u"verdi"_s);
    EXPECT_EQ(counts(), u"2 clienti · 1 selezionato · 1 evidenziato · 1 mostrato"_s);
    page("tab_Invio", 1);
    radio("RBN_SoloSMS")->setChecked(true);
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    click("cmdProsegui2");
    ASSERT_EQ(tabs("tab_Invio")->currentIndex(), 2) << "the ticked row counts, though it is not shown";
    click("cmdCreaMessaggi");
    EXPECT_TRUE(lines().contains(u"OK     - Preparato SMS per Rossi"_s)) << lines().join(u'\n').toStdString();
    EXPECT_EQ(marks(), u"--"_s);
}

TEST_F(SmsFormGridToolsTest, FindAsksTheDatabaseForNothing)
{
    open();
    search();
    filter(u"rossi"_s);
    QTest::keyClick(find<QLineEdit>(u"txtTrova"_s), Qt::Key_Escape);
    EXPECT_EQ(grid()->recordsInScreenOrder().size(), 2U);
    EXPECT_TRUE(host.operations().empty());
    EXPECT_TRUE(form->isVisible()) << "Esc is the bar's";
}

TEST_F(SmsFormGridToolsTest, RowsAndLinesHaveTheRoomThatIsLeft)
{
    open();
    search();
    EXPECT_GT(grid()->height(), form->height() * 2 / 3);
    EXPECT_LT(find<GridTools>(u"strumentiClienti"_s)->height(), 40);
    radio("RBN_SoloSMS")->setChecked(true);
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    tick(0);
    page("tab_Invio", 1);
    click("cmdProsegui2");
    ASSERT_EQ(tabs("tab_Invio")->currentIndex(), 2);
    EXPECT_GT(find<OutcomeList>(u"List_INFO"_s)->height(), form->height() / 2);
    EXPECT_LT(find<OutcomeTools>(u"strumentiEsito"_s)->height(), 40);
}

} // namespace
} // namespace zul
