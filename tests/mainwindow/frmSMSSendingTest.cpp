// The pages "Tipo di invio" and "Prepara per invio": what is offered, checks, preparation, templates.
#include "controls/look/Icons.h"
#include "controls/notices/WaitIndicator.h"
#include "hostlib/Error.h"
#include "session/Platform.h"
#include "tests/mainwindow/SmsFormTest.h"
#include "tests/messages/FakeRecipients.h"
#include "tests/support/QueuedInput.h"

#include <QDir>
#include <gtest/gtest.h>
#include <utility>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

const QString messagesDone = u"Creazione dei messaggi ultimata. Verificare eventuali errori di creazione "
                             u"nella lista.\r\nI messaggi verranno "
                             "elaborati in base alla schedulazione del tool di spedizione."_s;
const QString pushDone = u"Creazione delle notifiche push ultimata. Verificare eventuali errori di "
                         "creazione/spedizione nella lista."_s;

class SmsFormSendingTest : public SmsFormTest
{
protected:
    SmsFormSendingTest()
    {
        host.customers()[1] = {"Rossi Mario", "scheda@rossi.it"};
        host.customers()[2] = {"Verdi Anna", "scheda@verdi.it"};
        host.answer("idMessaggio=12", {{"testoSMS", "Oggetto"}, {{text("Ciao"), null()}}});
        host.settings()["ConnettoreApp_Salt"] = "sale";
        host.settings()["ConnettoreApp_Slug"] = "lumaca";
        scriptCustomers({customer(1, "Rossi", "333", "a@b.it"), customer(2, "Anna Verdi", "334", "c@d.it")});
    }

    /// Opens the window with two customers found, the first of them marked.
    void openWithCustomers(bool sms = true, bool mail = true, bool push = true)
    {
        open(sms, mail, push);
        search();
        tick(0);
        page("tab_Invio", 1);
    }

    /// Presses "Prosegui" on the page "Tipo di invio" and then "Crea messaggi".
    void prepare()
    {
        click("cmdProsegui2");
        ASSERT_EQ(tabs("tab_Invio")->currentIndex(), 2)
            << (messages.empty() ? "" : utf8(messages.back().text));
        host.forgetOperations();
        click("cmdCreaMessaggi");
    }

    void expectTold(const QString& message, const QString& title = u"Manager messaggi"_s)
    {
        ASSERT_FALSE(messages.empty());
        EXPECT_EQ(messages.back(), (OperatorMessage{.text = message,
                                                    .icon = MessageIcon::Information,
                                                    .title = title,
                                                    .buttons = MessageButtons::Ok}));
        messages.clear();
    }

    static QImage picture(const QIcon& icon) { return icon.pixmap(16, 16).toImage(); }

    bool isShown(const char* name) { return !find<QWidget>(QLatin1String(name))->isHidden(); }
};

// ---------------------------------------------------------------------------------------- what is offered

TEST_F(SmsFormSendingTest, BothKindsOfferEverythingAndSetNothing)
{
    for (const bool push : {false, true}) {
        open(true, true, push);
        for (const char* name :
             {"RBN_SoloSMS", "RBN_SoloEMAIL", "RBM_Precedenza_SMS", "RBM_Precedenza_EMAIL", "lblSMS",
              "cntrMessaggio(0)", "cmdNuovoTestoSMS(0)", "lblMail", "cntrMailFinder"}) {
            EXPECT_TRUE(isShown(name)) << name;
        }
        for (const char* name : {"RBN_SoloSMS", "RBN_SoloEMAIL", "RBM_Precedenza_SMS", "RBM_Precedenza_EMAIL",
                                 "RBN_Push", "RBN_PushModel"}) {
            EXPECT_FALSE(radio(name)->isChecked()) << name;
        }
        EXPECT_EQ(tabs("TabControlTipo")->isTabVisible(1), push);
        EXPECT_TRUE(tabs("TabControlTipo")->isTabVisible(0));
        EXPECT_EQ(tabs("TabControlTipo")->currentIndex(), 0);
    }
}

TEST_F(SmsFormSendingTest, EMailAloneIsSetAndHidesTheRest)
{
    open(false, true, true);
    EXPECT_TRUE(isShown("RBN_SoloEMAIL"));
    EXPECT_TRUE(radio("RBN_SoloEMAIL")->isChecked());
    EXPECT_TRUE(isShown("lblMail"));
    EXPECT_TRUE(isShown("cntrMailFinder"));
    for (const char* name : {"RBN_SoloSMS", "RBM_Precedenza_SMS", "RBM_Precedenza_EMAIL", "lblSMS",
                             "cntrMessaggio(0)", "cmdNuovoTestoSMS(0)"}) {
        EXPECT_FALSE(isShown(name)) << name;
    }
}

TEST_F(SmsFormSendingTest, SmsAloneIsSetAndHidesTheRest)
{
    open(true, false, false);
    EXPECT_TRUE(radio("RBN_SoloSMS")->isChecked());
    for (const char* name : {"RBN_SoloSMS", "lblSMS", "cntrMessaggio(0)", "cmdNuovoTestoSMS(0)"}) {
        EXPECT_TRUE(isShown(name)) << name;
    }
    for (const char* name :
         {"RBN_SoloEMAIL", "RBM_Precedenza_SMS", "RBM_Precedenza_EMAIL", "lblMail", "cntrMailFinder"}) {
        EXPECT_FALSE(isShown(name)) << name;
    }
    EXPECT_FALSE(tabs("TabControlTipo")->isTabVisible(1));
}

TEST_F(SmsFormSendingTest, PushAloneHidesThePageOfSmsAndMail)
{
    open(false, false, true);
    EXPECT_FALSE(tabs("TabControlTipo")->isTabVisible(0));
    EXPECT_TRUE(tabs("TabControlTipo")->isTabVisible(1));
    EXPECT_EQ(tabs("TabControlTipo")->currentIndex(), 1);
    EXPECT_FALSE(radio("RBN_SoloSMS")->isChecked());
}

TEST_F(SmsFormSendingTest, NothingOfferedIsNoErrorAndNoMessage)
{
    open(false, false, false);
    EXPECT_FALSE(tabs("TabControlTipo")->isTabVisible(0));
    EXPECT_FALSE(tabs("TabControlTipo")->isTabVisible(1));
    EXPECT_TRUE(messages.empty());
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SmsFormSendingTest, CaptionsAreTheseTextsTheMisspeltOneToo)
{
    open();
    EXPECT_EQ(read(radio("RBN_SoloSMS")->text()), u"Invia solo SMS"_s);
    EXPECT_EQ(read(radio("RBN_SoloEMAIL")->text()), u"Invia solo EMAIL"_s);
    EXPECT_EQ(read(radio("RBM_Precedenza_SMS")->text()), u"Invia entrambi con precedenza agli SMS"_s);
    EXPECT_EQ(read(radio("RBM_Precedenza_EMAIL")->text()), u"Invia entrambi con precedenza alle EMAIL"_s);
    EXPECT_EQ(read(radio("RBN_Push")->text()), u"Notifica push (libero)"_s);
    EXPECT_EQ(read(radio("RBN_PushModel")->text()), u"Notifica push (modello)"_s);
    EXPECT_EQ(read(radio("optApp_SoloSelezionati")->text()), u"Notifica agli utenti selezionati"_s);
    EXPECT_EQ(read(radio("optApp_TuttiRegistrati")->text()), u"Notifica a tutti gli utenti registrati"_s);
    QStringList labels;
    for (const QLabel* label : form->findChildren<QLabel*>()) {
        labels.append(label->text());
    }
    for (const QString& text :
         {u"Criterioi di spedizione:"_s, u"Testo libero notifica:"_s, u"Usa questo modello:"_s,
          u"Invia SMS utilizzando il seguente messaggio:"_s,
          u"Invia EMAIL utilizzando il seguente messaggio:"_s,
          u"Dati pronti per l'invio. Premere CREA MESSAGGI per iniziare la spedizione."_s}) {
        EXPECT_TRUE(labels.contains(text)) << utf8(text);
    }
    EXPECT_EQ(read(button("cmdCreaMessaggi")->text()), u"Crea messaggi"_s);
    EXPECT_EQ(read(button("cmdApriGestoreSMS")->text()), u"Apri gestore invio SMS"_s);
}

// -------------------------------------------------------------------------------------------- page flow

TEST_F(SmsFormSendingTest, TheFirstProseguiOnlyTurnsThePage)
{
    open();
    click("cmdProsegui1");
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 1);
    EXPECT_TRUE(messages.empty());
}

TEST_F(SmsFormSendingTest, WithoutAMarkedProfileTheFirstPageComesBackUnderTheDefaultTitle)
{
    open();
    search();
    click("cmdProsegui1");
    click("RBN_SoloSMS");
    click("cmdProsegui2");
    expectTold(u"Attenzione: non è stato selezionato nessun profilo."_s, u"Zul_MessageBuilder"_s);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 0);
    EXPECT_FALSE(tabs("tab_Invio")->isTabVisible(2));
}

TEST_F(SmsFormSendingTest, AFailedCheckOfTheChoicesStaysOnItsPage)
{
    openWithCustomers();
    click("cmdProsegui2");
    expectTold(u"Attenzione: non è stato selezionato nessun tipo di invio."_s);
    click("RBN_SoloSMS");
    click("cmdProsegui2");
    expectTold(u"Attenzione: non è stato selezionato nessun tipo di SMS."_s);
    click("RBN_SoloEMAIL");
    click("cmdProsegui2");
    expectTold(u"Attenzione: non è stato selezionato nessun tipo di EMAL."_s);
    click("RBM_Precedenza_SMS");
    click("cmdProsegui2");
    expectTold(u"Attenzione: non sono stati specificati i tipi di messaggio da utilizzare."_s);
    page("TabControlTipo", 1);
    click("RBN_Push");
    page("TabControlTipo", 0);
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    selector("cntrMailFinder")->setSelection(5, u"Mail"_s);
    click("cmdProsegui2");
    expectTold(u"Attenzione: non è stata selezionata nessuna notifica push per l'invio."_s);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 1);
    EXPECT_FALSE(tabs("tab_Invio")->isTabVisible(2));
}

TEST_F(SmsFormSendingTest, WithAllRegisteredUsersNobodyNeedsToBeMarked)
{
    open();
    page("tab_Invio", 1);
    page("TabControlTipo", 1);
    click("optApp_TuttiRegistrati");
    click("RBN_Push");
    freeText(1)->setPlainText(u"Ciao"_s);
    click("cmdProsegui2");
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 2);
}

TEST_F(SmsFormSendingTest, ThePreparationPageGoesWithTheNextChangeOfPage)
{
    openWithCustomers();
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    click("cmdProsegui2");
    EXPECT_TRUE(tabs("tab_Invio")->isTabVisible(2));
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 2);
    page("tab_Invio", 1);
    EXPECT_FALSE(tabs("tab_Invio")->isTabVisible(2));
    click("cmdProsegui2");
    page("tab_Invio", 0);
    EXPECT_FALSE(tabs("tab_Invio")->isTabVisible(2));
}

TEST_F(SmsFormSendingTest, ProseguiClearsTheListOfTheLastRun)
{
    openWithCustomers();
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    prepare();
    EXPECT_FALSE(lines().isEmpty());
    page("tab_Invio", 0);
    tick(0);
    page("tab_Invio", 1);
    click("cmdProsegui2");
    EXPECT_TRUE(lines().isEmpty());
}

// ------------------------------------------------------------------------------------------- preparation

TEST_F(SmsFormSendingTest, AnSmsRunWritesItsLinesClearsTheMarksAndTellsTheEnd)
{
    openWithCustomers();
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    prepare();
    EXPECT_EQ(lines(), (QStringList{separator(), u"OK     - Preparato SMS per Rossi"_s}));
    EXPECT_EQ(host.operations("save").size(), 1U);
    EXPECT_EQ(marks(), u"--"_s);
    expectTold(messagesDone);
    EXPECT_TRUE(host.operations("start").empty()) << "preparation never starts the sender";
    form->close();
    EXPECT_EQ(form->choice(), u"OK"_s);
}

TEST_F(SmsFormSendingTest, AMailRunWritesACampaignOfTheOperator)
{
    openWithCustomers();
    click("RBN_SoloEMAIL");
    selector("cntrMailFinder")->setSelection(5, u"Mail"_s);
    prepare();
    EXPECT_EQ(lines(), (QStringList{separator(), u"OK     - Preparata EMAIL per Rossi"_s}));
    EXPECT_EQ(show(host.valuesOf("idOperatore").at(0)), "42");
    EXPECT_EQ(show(host.valuesOf("idMessaggio").at(0)), "5");
    EXPECT_EQ(show(host.valuesOf("Contatto").at(0)), "'scheda@rossi.it'");
    expectTold(messagesDone);
}

TEST_F(SmsFormSendingTest, TheTwoKindModesRunBothCreatorsInTheirOrderAndClearTheMarksAtTheSecond)
{
    for (const bool smsFirst : {true, false}) {
        openWithCustomers();
        click(smsFirst ? "RBM_Precedenza_SMS" : "RBM_Precedenza_EMAIL");
        selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
        selector("cntrMailFinder")->setSelection(5, u"Mail"_s);
        prepare();
        const QStringList sms{separator(), u"OK     - Preparato SMS per Rossi"_s};
        const QStringList mail{separator(), u"OK     - Preparata EMAIL per Rossi"_s};
        EXPECT_EQ(lines(), smsFirst ? sms + mail : mail + sms);
        EXPECT_EQ(marks(), u"--"_s);
        expectTold(messagesDone);
    }
}

TEST_F(SmsFormSendingTest, TheSecondCreatorRunsAlsoWhenTheFirstFailedAndNoEndIsTold)
{
    openWithCustomers();
    click("RBM_Precedenza_SMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    selector("cntrMailFinder")->setSelection(5, u"Mail"_s);
    host.saveAnswers() = {false};
    prepare();
    EXPECT_EQ(lines(), (QStringList{separator(), separator(), u"OK     - Preparata EMAIL per Rossi"_s}));
    EXPECT_TRUE(messages.empty());
    form->close();
    EXPECT_EQ(form->choice(), u"ESC"_s) << "no preparation ended well";
}

TEST_F(SmsFormSendingTest, AFailedRunKeepsItsMarksAndASecondClickPreparesAgain)
{
    openWithCustomers();
    tick(1);
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    host.saveAnswers() = {false};
    prepare();
    EXPECT_EQ(marks(), u"xx"_s);
    EXPECT_TRUE(messages.empty());
    click("cmdCreaMessaggi");
    EXPECT_EQ(lines().size(), 3) << "the list shows the last run only";
    EXPECT_EQ(host.savedRecords().size(), 2U);
    expectTold(messagesDone);
}

TEST_F(SmsFormSendingTest, WhatIsClickedWhileARunFailsDoesNotStartAnother)
{
    openWithCustomers();
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    host.saveAnswers() = {false};
    bool queued = false;
    host.during("customer 1", [&] {
        if (!std::exchange(queued, true)) {
            queueClick(button("cmdCreaMessaggi"));
        }
    });
    prepare();
    QCoreApplication::processEvents();
    EXPECT_TRUE(messages.empty()) << "no message stood between the click and the window";
    EXPECT_EQ(host.operations("customer").size(), 1U);
}

TEST_F(SmsFormSendingTest, ARunTimeErrorOfACreatorIsLoggedUnderItsName)
{
    openWithCustomers();
    click("RBM_Precedenza_SMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    selector("cntrMailFinder")->setSelection(5, u"Mail"_s);
    host.failWhere("parse", E_FAIL, u"a");
    host.failWhere("execute update TMK_Chiamate", E_FAIL, u"b");
    prepare();
    EXPECT_EQ(
        logged(),
        (QStringList{u"CreateSMS | Error -2147467259 (a) in procedure CreateSMS of Form frmSMS | "_s,
                     u"CreateMAIL | Error -2147467259 (b) in procedure CreateMAIL of Form frmSMS | "_s}));
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(marks(), u"x-"_s);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(SmsFormSendingTest, AnSmsRunAfterATemplateWasChosenEndsWithThePushWording)
{
    openWithCustomers();
    click("RBN_SoloSMS");
    filler.rows = {{u"12"_s, u"Ciao"_s}};
    lookupOk();
    choose("cntrMessaggio(0)");
    EXPECT_TRUE(radio("RBN_PushModel")->isChecked());
    EXPECT_TRUE(radio("RBN_SoloSMS")->isChecked()) << "the push choices are a group of their own";
    selector("cntrMessaggio(1)")->setText(u"x"_s); // so that the check of the push page passes
    prepare();
    EXPECT_EQ(lines(), (QStringList{separator(), u"OK     - Preparato SMS per Rossi"_s}));
    expectTold(pushDone);
}

TEST_F(SmsFormSendingTest, ATemplateChosenWhileThePushPageIsHiddenSetsThePushModelToo)
{
    openWithCustomers(true, false, false);
    filler.rows = {{u"12"_s, u"Ciao"_s}};
    lookupOk();
    choose("cntrMessaggio(0)");
    EXPECT_TRUE(radio("RBN_PushModel")->isChecked());
    prepare();
    expectTold(pushDone);
}

TEST_F(SmsFormSendingTest, NothingChosenIsToldAndNothingIsPrepared)
{
    open(false, false, false);
    search();
    tick(0);
    page("tab_Invio", 1);
    click("cmdProsegui2");
    ASSERT_EQ(tabs("tab_Invio")->currentIndex(), 2) << "hidden pages are skipped by the checks";
    click("cmdCreaMessaggi");
    expectTold(u"Nessuna opzione selezionata."_s);
    form->close();
    EXPECT_EQ(form->choice(), u"ESC"_s);
}

TEST_F(SmsFormSendingTest, RowsAreHandledInTheOrderOfTheScreen)
{
    openWithCustomers();
    page("tab_Invio", 0);
    tick(1);
    QTest::mouseClick(probeOf(grid())->headerViewport(), Qt::LeftButton, {},
                      probeOf(grid())->headerRect(2).center());
    page("tab_Invio", 1);
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    prepare();
    EXPECT_EQ(lines(), (QStringList{separator(), u"OK     - Preparato SMS per Anna Verdi"_s,
                                    u"OK     - Preparato SMS per Rossi"_s}));
    EXPECT_EQ(host.operations("customer"), (Lines{"customer 2", "customer 1"}));
}

TEST_F(SmsFormSendingTest, RowsOfClosedGroupsAreHandledToo)
{
    openWithCustomers();
    page("tab_Invio", 0);
    click("cmdSelAll");
    grid()->groupBy(3);
    QTest::keyClick(probeOf(grid())->bodyViewport(), Qt::Key_Home);
    QTest::keyClick(probeOf(grid())->bodyViewport(), Qt::Key_Left);
    page("tab_Invio", 1);
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    prepare();
    EXPECT_EQ(host.savedRecords().size(), 2U);
}

TEST_F(SmsFormSendingTest, AnErrorOfTheDispatcherIsReportedUnderItsTwoNamesWithItsLine)
{
    openWithCustomers();
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    click("cmdProsegui2");
    whileAsked = [](const OperatorMessage&) { throw Error(RunTime::Overflow); };
    click("cmdCreaMessaggi");
    ASSERT_EQ(logged().size(), 1);
    EXPECT_TRUE(logged().first().startsWith(
        u"PreparaInvioMessaggi | Error 6 (Overflow) in procedure PreparaInvioMessage of Form frmSMS | ErrLine: "_s))
        << utf8(logged().first());
}

// -------------------------------------------------------------------------------------------------- push

TEST_F(SmsFormSendingTest, AFreePushRunShowsItsProgressAndEndsWithItsWording)
{
    openWithCustomers();
    page("TabControlTipo", 1);
    click("RBN_Push");
    freeText(1)->setPlainText(u"Prima riga\nSeconda 😀"_s);
    auto* wait = find<WaitIndicator>(u"WaitPlease"_s);
    QString during;
    host.during("push scheda", [] {});
    host.during("push a@b.it", [&] {
        during = u"%1 %2 %3"_s.arg(wait->isVisible()).arg(wait->property("tag").toString(), wait->caption());
    });
    prepare();
    EXPECT_EQ(during, u"1 1 Invio notifica 1 di 1"_s);
    EXPECT_TRUE(wait->isHidden());
    EXPECT_EQ(wait->property("tag").toString(), u"0"_s);
    EXPECT_EQ(lines(), (QStringList{separator(), u"OK     - Rossi: il profilo presenta email valida."_s,
                                    separator(), u"OK     - Rossi Mario - Creato correttamente."_s}));
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].buttons, MessageButtons::YesNo);
    EXPECT_EQ(messages[0].icon, MessageIcon::Exclamation);
    EXPECT_EQ(messages[1], told(pushDone));
    EXPECT_EQ(host.operations("push"), Lines{"push a@b.it|Prima riga\r\nSeconda 😀<Rossi Mario,>"});
    EXPECT_EQ(marks(), u"x-"_s) << "a push run clears no marks";
    form->close();
    EXPECT_EQ(form->choice(), u"OK"_s);
}

TEST_F(SmsFormSendingTest, EscapeEndsAPushRunBetweenTwoContacts)
{
    openWithCustomers();
    page("tab_Invio", 0);
    tick(1);
    page("tab_Invio", 1);
    page("TabControlTipo", 1);
    click("RBN_Push");
    freeText(1)->setPlainText(u"Ciao"_s);
    host.during("push a@b.it", [&] { queueKey(form.get(), Qt::Key_Escape); });
    prepare();
    EXPECT_EQ(host.operations("push").size(), 1U);
    EXPECT_EQ(lines().last(), u"       - Interrotto dall'operatore dopo la notifica 1 di 2."_s);
    ASSERT_EQ(messages.size(), 1U) << "the question, and no closing message";
    EXPECT_EQ(marks(), u"xx"_s);
    EXPECT_TRUE(form->isVisible()) << "Esc ended the run alone";
    EXPECT_TRUE(find<WaitIndicator>(u"WaitPlease"_s)->isHidden());
}

TEST_F(SmsFormSendingTest, ARunEndsOnTheConnectionOnWhichItBegan)
{
    FakeHost another;
    openWithCustomers();
    page("tab_Invio", 0);
    click("cmdSelAll");
    page("tab_Invio", 1);
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    host.during("customer 1",
                [&] { session().setConnessione(hostlib::SqlConnection(another.connection())); });
    prepare();
    EXPECT_EQ(host.savedRecords().size(), 2U);
    EXPECT_TRUE(another.operations().empty());
    EXPECT_EQ(lines(), (QStringList{separator(), u"OK     - Preparato SMS per Rossi"_s,
                                    u"OK     - Preparato SMS per Anna Verdi"_s}));
}

TEST_F(SmsFormSendingTest, APushModelSendsTheDisplayTextOfTheSelector)
{
    openWithCustomers();
    page("TabControlTipo", 1);
    filler.rows = {{u"12"_s, u"Modello\nsu due righe"_s}};
    lookupOk();
    choose("cntrMessaggio(1)");
    EXPECT_TRUE(radio("RBN_PushModel")->isChecked());
    prepare();
    EXPECT_EQ(host.operations("push"), Lines{"push a@b.it|Modello\nsu due righe<Rossi Mario,>"});
}

TEST_F(SmsFormSendingTest, ALongPushModelIsSentWhole)
{
    const QString longText(40000, u'é');
    openWithCustomers();
    page("TabControlTipo", 1);
    filler.rows = {{u"12"_s, longText}};
    lookupOk();
    choose("cntrMessaggio(1)");
    prepare();
    EXPECT_EQ(host.operations("push"), Lines{"push a@b.it|" + utf8(longText) + "<Rossi Mario,>"});
}

TEST_F(SmsFormSendingTest, ARefusedPushTellsNoEnd)
{
    openWithCustomers();
    page("TabControlTipo", 1);
    click("RBN_Push");
    freeText(1)->setPlainText(u"Ciao"_s);
    answers = {Answer::No};
    prepare();
    EXPECT_EQ(messages.size(), 1U);
    EXPECT_TRUE(host.operations("push").empty());
    form->close();
    EXPECT_EQ(form->choice(), u"ESC"_s);
}

// --------------------------------------------------------------------------------------------- templates

TEST_F(SmsFormSendingTest, TheFirstClickOpensTheSmsEditorWithTheKeyboardBoundToIt)
{
    openWithCustomers();
    const QImage newText = picture(imageListIcon(3));
    const QImage confirm = picture(imageListIcon(9));
    ASSERT_NE(newText, confirm);
    EXPECT_EQ(picture(button("cmdNuovoTestoSMS(0)")->icon()), newText);
    click("cmdNuovoTestoSMS(0)");
    EXPECT_TRUE(isShown("txtTestoMessaggio(0)"));
    EXPECT_FALSE(isShown("cntrMessaggio(0)"));
    auto* keyboard = find<OnScreenKeyboard>(u"Virtual_Keyboard"_s);
    EXPECT_TRUE(keyboard->isVisible());
    EXPECT_EQ(keyboard->attachedField(), freeText(0));
    EXPECT_EQ(picture(button("cmdNuovoTestoSMS(0)")->icon()), confirm);
    EXPECT_TRUE(messages.empty());
    EXPECT_TRUE(host.operations().empty());
    click("cmdNuovoTestoSMS(0)");
    EXPECT_EQ(picture(button("cmdNuovoTestoSMS(0)")->icon()), newText) << "restored when the editor closes";
}

TEST_F(SmsFormSendingTest, WhatIsTypedAfterTheFirstClickStandsInTheEditor)
{
    openWithCustomers();
    click("cmdNuovoTestoSMS(0)");
    ASSERT_EQ(QApplication::focusWidget(), freeText(0));
    QTest::keyClicks(QApplication::focusWidget(), u"Auguri"_s);
    EXPECT_EQ(freeText(0)->toPlainText(), u"Auguri"_s);
}

TEST_F(SmsFormSendingTest, TheSecondClickSavesTheTextAndShowsItInTheSelector)
{
    openWithCustomers();
    host.nextId() = 77;
    click("cmdNuovoTestoSMS(0)");
    freeText(0)->setPlainText(u"  L'offerta 100%\nè qui 😀  "_s);
    click("cmdNuovoTestoSMS(0)");
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0],
              asked(u"Si conferma la preparazione dell'sms con il seguente testo?\r\n\r\nL'offerta "
                    "100%\r\nè qui 😀"_s));
    EXPECT_EQ(selector("cntrMessaggio(0)")->selectedId(), 77);
    EXPECT_EQ(selector("cntrMessaggio(0)")->text(), u"SMS (L'offerta 100%\r\nè qui 😀)"_s);
    EXPECT_EQ(show(host.valuesOf("testoSMS").at(0)), "'L'offerta 100%\r\nè qui 😀'");
    EXPECT_FALSE(isShown("txtTestoMessaggio(0)"));
    EXPECT_TRUE(isShown("cntrMessaggio(0)"));
    EXPECT_FALSE(isShown("Virtual_Keyboard"));
    EXPECT_FALSE(radio("RBN_PushModel")->isChecked()) << "only the lookup sets it";
    // The saved text satisfies the check of the template.
    click("RBN_SoloSMS");
    click("cmdProsegui2");
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 2);
}

TEST_F(SmsFormSendingTest, NoLeavesTheEditorOpenAndAThirdClickAsksAgain)
{
    openWithCustomers();
    click("cmdNuovoTestoSMS(0)");
    freeText(0)->setPlainText(u"Ciao"_s);
    answers = {Answer::No, Answer::No};
    click("cmdNuovoTestoSMS(0)");
    EXPECT_TRUE(isShown("txtTestoMessaggio(0)"));
    EXPECT_TRUE(isShown("Virtual_Keyboard"));
    EXPECT_FALSE(isShown("cntrMessaggio(0)"));
    click("cmdNuovoTestoSMS(0)");
    EXPECT_EQ(messages.size(), 2U);
    EXPECT_TRUE(host.operations().empty());
}

TEST_F(SmsFormSendingTest, ATextOfBlanksIsNotAskedAboutAndTheEditorCloses)
{
    openWithCustomers();
    click("cmdNuovoTestoSMS(0)");
    freeText(0)->setPlainText(u"   "_s);
    click("cmdNuovoTestoSMS(0)");
    EXPECT_TRUE(messages.empty());
    EXPECT_TRUE(host.operations().empty());
    EXPECT_FALSE(isShown("txtTestoMessaggio(0)"));
    EXPECT_FALSE(isShown("Virtual_Keyboard"));
    EXPECT_EQ(selector("cntrMessaggio(0)")->selectedId(), -1);
}

TEST_F(SmsFormSendingTest, AFailedSaveLeavesTheSelectorAndClosesTheEditor)
{
    openWithCustomers();
    selector("cntrMessaggio(0)")->setSelection(5, u"prima"_s);
    click("cmdNuovoTestoSMS(0)");
    freeText(0)->setPlainText(u"Ciao"_s);
    host.failNth("update", 1, E_FAIL, u"no");
    click("cmdNuovoTestoSMS(0)");
    EXPECT_EQ(selector("cntrMessaggio(0)")->selectedId(), 5);
    EXPECT_EQ(selector("cntrMessaggio(0)")->text(), u"prima"_s);
    EXPECT_FALSE(isShown("txtTestoMessaggio(0)"));
    EXPECT_EQ(messages.size(), 1U) << "no message of its own";
    EXPECT_EQ(logged().size(), 1);
}

TEST_F(SmsFormSendingTest, ThePushTextIsSavedAsATemplateInOneStep)
{
    openWithCustomers();
    host.nextId() = 78;
    page("TabControlTipo", 1);
    click("cmdNuovoTestoSMS(1)");
    EXPECT_TRUE(messages.empty()) << "an empty text does nothing";
    freeText(1)->setPlainText(u"   "_s);
    click("cmdNuovoTestoSMS(1)");
    EXPECT_TRUE(messages.empty());
    freeText(1)->setPlainText(u" L'app 😀 "_s);
    answers = {Answer::No};
    click("cmdNuovoTestoSMS(1)");
    EXPECT_EQ(messages,
              std::vector<OperatorMessage>{asked(
                  u"Si desidera salvare il testo inserito come nuovo modello?\r\n\r\nTesto: L'app 😀"_s)});
    EXPECT_TRUE(host.operations().empty());
    click("cmdNuovoTestoSMS(1)");
    EXPECT_EQ(selector("cntrMessaggio(1)")->selectedId(), 78);
    EXPECT_EQ(selector("cntrMessaggio(1)")->text(), u"L'app 😀"_s) << "plain, without a wrapper";
    EXPECT_EQ(freeText(1)->toPlainText(), u" L'app 😀 "_s) << "the free text stays";
    EXPECT_EQ(show(host.valuesOf("IdTipoMessaggio").at(0)), "6") << "push and SMS templates are one list";
    EXPECT_FALSE(radio("RBN_PushModel")->isChecked());
}

TEST_F(SmsFormSendingTest, AFailedSaveOfAPushTextLeavesTheSelector)
{
    openWithCustomers();
    page("TabControlTipo", 1);
    freeText(1)->setPlainText(u"x"_s);
    host.failNth("nextid", 1, E_FAIL, u"no");
    click("cmdNuovoTestoSMS(1)");
    EXPECT_EQ(selector("cntrMessaggio(1)")->selectedId(), -1);
    EXPECT_EQ(freeText(1)->toPlainText(), u"x"_s);
}

TEST_F(SmsFormSendingTest, ErrorsOfTheTemplateButtonsNameTheirIndexedProcedure)
{
    openWithCustomers();
    page("TabControlTipo", 1);
    freeText(1)->setPlainText(u"x"_s);
    whileAsked = [](const OperatorMessage&) { throw Error(RunTime::Overflow); };
    click("cmdNuovoTestoSMS(1)");
    EXPECT_EQ(logged(), QStringList{u"cmdNuovoTestoSMS_Click | Error 6 (Overflow) in procedure "
                                    "cmdNuovoTestoSMS(index)_Click of Form frmSMS | "_s});
}

// ------------------------------------------------------------------------------------------- the sender

TEST_F(SmsFormSendingTest, TheSenderIsOpenedFromTheSessionsFolderWithTheConnectionString)
{
    QTemporaryDir folder;
    QFile program(folder.filePath(u"ZULSms_Sender.exe"_s));
    ASSERT_TRUE(program.open(QIODevice::WriteOnly));
    program.close();
    session().PathCartellaSMSSender = folder.path().replace(u'/', u'\\');
    openWithCustomers();
    click("RBN_SoloSMS");
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    click("cmdProsegui2");
    click("cmdApriGestoreSMS");
    EXPECT_EQ(host.operations("start"), Lines{"start " + utf8(QDir::toNativeSeparators(program.fileName())) +
                                              "| -connectionstring:Provider=Fake;Data Source=memory"});
    session().PathCartellaSMSSender.clear();
    click("cmdApriGestoreSMS");
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].icon, MessageIcon::Critical);
    EXPECT_TRUE(messages[0].text.contains(u"\r\n\\ZULSms_Sender.exe\r\n"_s));
}

} // namespace
} // namespace zul
