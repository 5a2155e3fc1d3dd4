// What stands around the rows of the main window: counts, find and filter.
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

} // namespace
} // namespace zul
