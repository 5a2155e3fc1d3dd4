// What the send pages tell before a run: the length of an SMS, the summary, the preview for single customers.
#include "tests/mainwindow/SmsFormTest.h"

#include <QLabel>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class SmsFormPreviewTest : public SmsFormTest
{
protected:
    SmsFormPreviewTest()
    {
        host.answer("idMessaggio=", {{"testoSMS", "Oggetto"}, {{text("Ciao [NOME]"), null()}}});
        host.customers()[1] = {"Rossi", "r@x.it", true, true, 0};
        host.customers()[2] = {"Verdi", "v@x.it", false, true, 0};
        host.customers()[3] = {"D'Amico 100% \"à\" 😀", "d@x.it", true, true, 0};
    }

    void searchThree()
    {
        scriptCustomers({customer(1, "Rossi Mario", "331", "r@x.it"), customer(2, "Verdi", "332", "v@x.it"),
                         customer(3, "D'Amico 100% \"à\" 😀", "333", "")});
        search();
    }

    QString label(const char* name) { return find<QLabel>(QLatin1String(name))->text(); }

    /// Opens the preview, and has the steps work in it until it is closed.
    void preview(const char* command, const std::function<void(QWidget*)>& steps)
    {
        bool shown = false;
        onWindow(u"frmAnteprima"_s, [&](QWidget* window) {
            shown = true;
            steps(window);
            QTest::keyClick(window, Qt::Key_Escape);
        });
        click(command);
        EXPECT_TRUE(shown);
        EXPECT_TRUE(logged().isEmpty());
    }

    static QString in(QWidget* window, const char* name)
    {
        return window->findChild<QLabel*>(QLatin1String(name))->text();
    }
    static QString message(QWidget* window)
    {
        return window->findChild<QPlainTextEdit*>(u"txtAnteprima"_s)->toPlainText();
    }
    static QPushButton* in(QWidget* window, const QString& name)
    {
        return window->findChild<QPushButton*>(name);
    }
};

TEST_F(SmsFormPreviewTest, TheEditorOfAnSmsCountsAsOneTypes)
{
    open();
    page("tab_Invio", 1);
    EXPECT_EQ(label("lblContaSMS"), QString());
    const QRect below = selector("cntrMailFinder")->geometry();
    click("cmdNuovoTestoSMS(0)");
    QTest::keyClicks(freeText(0), u"Costa"_s);
    EXPECT_EQ(label("lblContaSMS"), u"5 caratteri · GSM 03.38 · 1 SMS, ne restano 155"_s);
    freeText(0)->setPlainText(u"Costa 5 €"_s);
    EXPECT_EQ(label("lblContaSMS"), u"9 caratteri (contano 10) · GSM 03.38 · 1 SMS, ne restano 150"_s);
    freeText(0)->setPlainText(u"uno\ndue "_s);
    EXPECT_EQ(label("lblContaSMS"), u"8 caratteri · GSM 03.38 · 1 SMS, ne restano 152"_s)
        << "as it is kept: a line break is two characters, blanks at the ends are taken off";
    freeText(0)->setPlainText(u"perché «no»? {Cliente}"_s);
    EXPECT_TRUE(label("lblContaSMS").contains(u"UCS-2 per “«”"_s)) << utf8(label("lblContaSMS"));
    EXPECT_TRUE(label("lblContaSMS").contains(u"stima"_s));
    EXPECT_EQ(selector("cntrMailFinder")->geometry(), below) << "nothing moves";
    EXPECT_TRUE(host.operations().empty());
}

TEST_F(SmsFormPreviewTest, AChosenTemplateIsCountedWithoutAskingTheHost)
{
    open();
    page("tab_Invio", 1);
    lookupOk(1);
    choose("cntrMessaggio(0)");
    const QString chosen = selector("cntrMessaggio(0)")->text();
    ASSERT_FALSE(chosen.isEmpty());
    EXPECT_TRUE(label("lblContaSMS").startsWith(u"%1 caratter"_s.arg(chosen.toUcs4().size())))
        << utf8(label("lblContaSMS"));
    EXPECT_TRUE(host.operations().empty());
    clear("cntrMessaggio(0)");
    EXPECT_EQ(label("lblContaSMS"), QString());
}

TEST_F(SmsFormPreviewTest, ATextSavedAsATemplateIsCountedWithoutItsWrapper)
{
    open();
    page("tab_Invio", 1);
    click("cmdNuovoTestoSMS(0)");
    freeText(0)->setPlainText(u"Domani aperti"_s);
    answers = {Answer::Yes};
    click("cmdNuovoTestoSMS(0)");
    ASSERT_EQ(selector("cntrMessaggio(0)")->text(), u"SMS (Domani aperti)"_s);
    EXPECT_EQ(label("lblContaSMS"), u"13 caratteri · GSM 03.38 · 1 SMS, ne restano 147"_s);
}

TEST_F(SmsFormPreviewTest, WithEmailAloneThereIsNothingToCountAndNothingToPreview)
{
    open(false, true, false);
    page("tab_Invio", 1);
    EXPECT_FALSE(button("cmdAnteprima(0)")->isVisible());
    EXPECT_FALSE(find<QLabel>(u"lblContaSMS"_s)->isVisible());
}

TEST_F(SmsFormPreviewTest, TheSummaryTellsHowManyWhatAndWithWhichText)
{
    open(true, true, false);
    searchThree();
    tick(0);
    tick(2);
    click("cmdProsegui1");
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao [NOME]"_s);
    click("cmdProsegui2");
    EXPECT_EQ(label("lblRiepilogo"),
              u"Destinatari: 2 clienti selezionati\nTipo: solo SMS\nTesto SMS: «Ciao [NOME]» (11 caratteri "
              u"(contano 13) · "
              "GSM 03.38 · 1 SMS, ne restano 147 · stima: dipende dai dati del cliente)"_s);
    EXPECT_TRUE(host.operations().empty()) << "told without asking the host";
    click("cmdCreaMessaggi");
    EXPECT_TRUE(
        label("lblRiepilogo")
            .startsWith(u"Destinatari dell'ultima preparazione: 2 clienti · ancora selezionati: 0\nTipo: "_s))
        << utf8(label("lblRiepilogo"));
    EXPECT_EQ(button("cmdCreaMessaggi"), form->focusWidget());
}

TEST_F(SmsFormPreviewTest, AfterARunThatBrokeOffTheSummaryTellsWhoIsLeft)
{
    open(true, true, false);
    searchThree();
    click("cmdSelAll");
    click("cmdProsegui1");
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    click("cmdProsegui2");
    EXPECT_EQ(find<QWidget>(u"List_INFO"_s), form->focusWidget())
        << "where Enter and Space start nothing by accident";
    host.saveAnswers() = {true, false};
    click("cmdCreaMessaggi");
    ASSERT_EQ(marks(), u"--x"_s) << "the second has no number";
    EXPECT_TRUE(
        label("lblRiepilogo")
            .startsWith(u"Destinatari dell'ultima preparazione: 3 clienti · ancora selezionati: 1\n"_s))
        << utf8(label("lblRiepilogo"));
}

TEST_F(SmsFormPreviewTest, ATextThatWasNotSavedIsNotToldAsWhatIsSent)
{
    open(true, true, false);
    searchThree();
    tick(0);
    click("cmdProsegui1");
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    click("cmdNuovoTestoSMS(0)");
    freeText(0)->setPlainText(u"Tutt'altro"_s);
    click("cmdProsegui2");
    EXPECT_EQ(
        label("lblRiepilogo"),
        u"Destinatari: 1 cliente selezionato\nTipo: solo SMS\nTesto SMS: «Ciao» (4 caratteri · GSM 03.38 · "
        u"1 SMS, ne restano 156)\nAttenzione: il nuovo testo non è stato salvato e non sarà inviato."_s);
}

TEST_F(SmsFormPreviewTest, ThePreviewGoesFromOneTickedCustomerToTheNext)
{
    open();
    searchThree();
    tick(0);
    tick(2);
    clickRow(0);
    click("cmdProsegui1");
    selector("cntrMessaggio(0)")->setSelection(12, u"quello che mostra"_s);
    preview("cmdAnteprima(0)", [&](QWidget* window) {
        EXPECT_EQ(window->windowTitle(), u"Anteprima dell'SMS"_s);
        EXPECT_EQ(in(window, "lblCliente"), u"Rossi Mario"_s);
        EXPECT_EQ(in(window, "lblDestinatario"), u"331"_s);
        EXPECT_EQ(message(window), u"Ciao [NOME]<Rossi,>"_s);
        EXPECT_EQ(in(window, "lblConta"), u"19 caratteri (contano 21) · GSM 03.38 · 1 SMS, ne restano 139"_s);
        EXPECT_EQ(in(window, "lblAvviso"), QString());
        EXPECT_EQ(in(window, "lblPosizione"), u"1 di 2 selezionati"_s);
        EXPECT_FALSE(in(window, u"cmdPrecedente"_s)->isEnabled());
        QTest::keyClick(in(window, u"cmdSuccessivo"_s), Qt::Key_Return);
        EXPECT_EQ(in(window, "lblCliente"), u"D'Amico 100% \"à\" 😀"_s);
        EXPECT_EQ(message(window), u"Ciao [NOME]<D'Amico 100% \"à\" 😀,>"_s);
        EXPECT_TRUE(in(window, "lblConta").contains(u"UCS-2 per “😀”"_s));
        EXPECT_EQ(in(window, "lblPosizione"), u"2 di 2 selezionati"_s);
        EXPECT_FALSE(in(window, u"cmdSuccessivo"_s)->isEnabled());
        QTest::mouseClick(in(window, u"cmdPrecedente"_s), Qt::LeftButton);
        EXPECT_EQ(in(window, "lblCliente"), u"Rossi Mario"_s);
    });
    EXPECT_EQ(host.operations("open"),
              Lines{"open Select TestoSMS, OGGETTO from TMK_Messaggi where idMessaggio=12 static read-only"});
    EXPECT_TRUE(host.operations("save").empty());
    EXPECT_EQ(marks(), u"x-x"_s);
}

TEST_F(SmsFormPreviewTest, ThePreviewOfARowThatIsNotTickedSaysSoAndWhatStandsAgainstIt)
{
    open();
    searchThree();
    tick(0);
    tick(2);
    clickRow(1);
    click("cmdProsegui1");
    selector("cntrMessaggio(0)")->setSelection(12, u"x"_s);
    preview("cmdAnteprima(0)", [&](QWidget* window) {
        EXPECT_EQ(in(window, "lblCliente"), u"Verdi"_s);
        EXPECT_EQ(in(window, "lblAvviso"), u"Consenso SMS non presente: l'SMS non verrà preparato."_s);
        EXPECT_EQ(in(window, "lblPosizione"), u"non selezionato"_s);
        QTest::mouseClick(in(window, u"cmdPrecedente"_s), Qt::LeftButton);
        EXPECT_EQ(in(window, "lblCliente"), u"Rossi Mario"_s);
    });
}

TEST_F(SmsFormPreviewTest, WhatIsTypedIsPreviewedAsItStands)
{
    open();
    searchThree();
    click("cmdProsegui1");
    click("cmdNuovoTestoSMS(0)");
    freeText(0)->setPlainText(u"Prova {Cliente}"_s);
    preview("cmdAnteprima(0)",
            [&](QWidget* window) { EXPECT_EQ(message(window), u"Prova {Cliente}<Rossi,>"_s); });
    EXPECT_TRUE(host.operations("open").empty());
    page("TabControlTipo", 1);
    freeText(1)->setPlainText(u"Notifica"_s);
    click("RBN_Push");
    preview("cmdAnteprima(1)", [&](QWidget* window) {
        EXPECT_EQ(window->windowTitle(), u"Anteprima della notifica push"_s);
        EXPECT_EQ(in(window, "lblDestinatario"), u"r@x.it"_s);
        EXPECT_EQ(message(window), u"Notifica<Rossi,>"_s);
        EXPECT_EQ(in(window, "lblConta"), u"16 caratteri"_s);
    });
}

TEST_F(SmsFormPreviewTest, OneTickedCustomerIsToldAsOne)
{
    open();
    searchThree();
    tick(0);
    click("cmdProsegui1");
    page("TabControlTipo", 1);
    freeText(1)->setPlainText(u"x"_s);
    click("RBN_Push");
    preview("cmdAnteprima(1)",
            [&](QWidget* window) { EXPECT_EQ(in(window, "lblPosizione"), u"1 di 1 selezionato"_s); });
}

TEST_F(SmsFormPreviewTest, WithoutCustomersOrWithoutATextItSaysWhatIsMissing)
{
    open();
    page("tab_Invio", 1);
    click("cmdAnteprima(0)");
    EXPECT_EQ(messages, std::vector{told(u"Per l'anteprima serve un cliente: eseguire prima la ricerca."_s)});
    messages.clear();
    page("tab_Invio", 0);
    searchThree();
    click("cmdProsegui1");
    click("cmdAnteprima(0)");
    EXPECT_EQ(messages, std::vector{told(u"Per l'anteprima serve un testo: sceglierlo o scriverlo."_s)});
    EXPECT_TRUE(host.operations().empty());
}

TEST_F(SmsFormPreviewTest, AFailureOfTheHostIsInTheLogAndTheWindowStays)
{
    open();
    searchThree();
    tick(0);
    tick(2);
    click("cmdProsegui1");
    selector("cntrMessaggio(0)")->setSelection(12, u"x"_s);
    host.failNth("parse", 2, E_FAIL, u"parser");
    onWindow(u"frmAnteprima"_s, [&](QWidget* window) {
        QTest::mouseClick(in(window, u"cmdPrecedente"_s), Qt::LeftButton);
        EXPECT_TRUE(window->isVisible());
        EXPECT_EQ(in(window, "lblCliente"), u"D'Amico 100% \"à\" 😀"_s) << "what was shown stays";
        window->close();
    });
    click("cmdAnteprima(0)");
    EXPECT_EQ(logged().size(), 1);
}

} // namespace
} // namespace zul
