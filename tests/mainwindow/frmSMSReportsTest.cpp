// Under which names the main window's handlers report. An owner's listener that fails stands for whatever may
// fail in a handler.
#include "tests/mainwindow/SmsFormTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class SmsFormReportsTest : public SmsFormTest
{
protected:
    static void fail() { throw Error(RunTime::Overflow); }

    /// The log has one entry, of this handler.
    void expectReport(const QString& name)
    {
        EXPECT_EQ(logged(), QStringList{name + u" | Error 6 (Overflow) in procedure "_s + name +
                                        u" of Form frmSMS | "_s});
    }
};

TEST_F(SmsFormReportsTest, FirstProsegui)
{
    open();
    QObject::connect(tabs("tab_Invio"), &QTabWidget::currentChanged, &SmsFormReportsTest::fail);
    click("cmdProsegui1");
    expectReport(u"cmdProsegui1_Click"_s);
}

TEST_F(SmsFormReportsTest, SecondProsegui)
{
    open();
    page("tab_Invio", 1);
    whileAsked = [](const OperatorMessage&) { fail(); };
    click("cmdProsegui2");
    expectReport(u"cmdProsegui2_Click"_s);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 1) << "the handler ends where it fails";
}

TEST_F(SmsFormReportsTest, MarkingCommands)
{
    scriptCustomers({customer(1, "Rossi", "333", "a@b.it")});
    for (const char* name :
         {"cmdSelAll", "cmdDeSelAll", "cmdSelezionaEvidenziati", "Cmd_DeselezionaEvidenziati"}) {
        open();
        click("cmdElabora");
        QTest::mouseClick(probeOf(grid())->bodyViewport(), Qt::LeftButton, {},
                          probeOf(grid())->rowRect(0).center());
        QObject::connect(grid(), &ReportGrid::checkChanged, &SmsFormReportsTest::fail);
        const auto before = logged().size();
        click(name);
        const QString handler = QString::fromLatin1(name) + u"_Click"_s;
        EXPECT_EQ(logged().mid(before), QStringList{handler + u" | Error 6 (Overflow) in procedure "_s +
                                                    handler + u" of Form frmSMS | "_s});
    }
}

TEST_F(SmsFormReportsTest, ALookupFieldReportsUnderItsOwnNameWithoutItsIndex)
{
    open();
    page("tab_Invio", 1);
    filler.rows = {{u"abc"_s, u"Un id che non è un numero"_s}};
    lookupOk();
    choose("cntrMessaggio(0)");
    EXPECT_EQ(logged(),
              QStringList{u"cntrMessaggio_RichiestaSelezione | Error 13 (Type mismatch) in procedure "
                          "cntrMessaggio_RichiestaSelezione of Form frmSMS | "_s});
    EXPECT_EQ(selector("cntrMessaggio(0)")->selectedId(), -1);
}

TEST_F(SmsFormReportsTest, ClearingALookupField)
{
    open();
    page("tab_Invio", 1);
    selector("cntrMailFinder")->setSelection(3, u"Modello"_s);
    QObject::connect(selector("cntrMailFinder")->findChild<QLineEdit*>(), &QLineEdit::textChanged,
                     &SmsFormReportsTest::fail);
    clear("cntrMailFinder");
    expectReport(u"cntrMailFinder_RichiestaPulizia"_s);
}

TEST_F(SmsFormReportsTest, ThePushPreparationWithoutAConnection)
{
    open();
    page("tab_Invio", 1);
    page("TabControlTipo", 1);
    click("RBN_Push");
    freeText(1)->setPlainText(u"Ciao"_s);
    click("optApp_TuttiRegistrati");
    click("cmdProsegui2");
    session().setConnessione({});
    click("cmdCreaMessaggi");
    EXPECT_EQ(logged(),
              QStringList{u"PreparaNotifichePush | Error 91 (Object variable or With block variable "
                          "not set) in procedure PreparaNotifichePush of Form frmSMS | "_s});
    EXPECT_TRUE(messages.empty()) << "no closing message";
}

} // namespace
} // namespace zul
