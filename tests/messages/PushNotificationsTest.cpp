#include "messages/PushNotifications.h"

#include "hostlib/Calls.h"
#include "hostlib/Error.h"
#include "session/SettingsStore.h"
#include "tests/messages/FakeRecipients.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

using enum PushCriterion;

class PushTest : public ComponentTest
{
protected:
    PushTest()
    {
        host.offerAll();
        host.settings()["ConnettoreApp_Salt"] = "sale";
        host.settings()["ConnettoreApp_Slug"] = "lumaca";
        host.customers()[1] = {"Rossi Mario", "scheda@rossi.it"};
        host.customers()[2] = {"D'Amico 100% \"à\" 😀", "scheda@damico.it"};
        choices.RBN_Push = true;
        choices.pushText = u"Ciao [NOME]"_s;
    }

    bool create(const std::vector<PushContact>& contacts, PushCriterion criterion,
                const QString& text = u"Ciao"_s)
    {
        return CreatePushNotifies_ListOfContacts_BL(connection(), contacts, text, errors, criterion, outcomes,
                                                    progress);
    }

    std::optional<QString> check() const { return checkPush(choices, SettingsStore(connection())); }

    bool prepare()
    {
        return prepareNotifications(connection(), choices, rows, outcomes, progress,
                                    [](const OperatorMessage& message) { return ask(nullptr, message); });
    }

    SendChoices choices;
    FakeRecipients rows;
    FakeOutcomes outcomes;
    FakeProgress progress;
    QStringList errors;
};

// ------------------------------------------------------------------------------------------- the checks

TEST_F(PushTest, ATemplateWithoutATextIsRefusedAlsoWhenItsIdIsSet)
{
    choices.RBN_Push = false;
    choices.RBN_PushModel = true;
    choices.pushTemplateText.clear();
    EXPECT_EQ(check(), u"Selezionare correttamente un modello di messaggio per la notifica push."_s);
    EXPECT_TRUE(host.operations("open").empty()) << "settings are read when it is their turn";
    choices.pushTemplateText = u"Modello"_s;
    EXPECT_EQ(check(), std::nullopt);
    EXPECT_EQ(pushText(choices), u"Modello"_s);
}

TEST_F(PushTest, AFreeNotificationNeedsAText)
{
    choices.pushText.clear();
    choices.pushTemplateText = u"Modello"_s;
    EXPECT_EQ(check(), u"Inserire correttamente il testo per la notifica push."_s);
    choices.pushText = u"Libero"_s;
    EXPECT_EQ(check(), std::nullopt);
    EXPECT_EQ(pushText(choices), u"Libero"_s);
}

TEST_F(PushTest, SaltAndThenSlugMustBeSet)
{
    host.settings()["ConnettoreApp_Salt"] = "";
    host.settings()["ConnettoreApp_Slug"] = "";
    EXPECT_EQ(
        check(),
        u"L'opzione 'ConnettoreApp_Salt' non è stata valorizzata. Accedere alle opzioni messaggistica da "
        "impostazioni di backoffice."_s);
    host.settings()["ConnettoreApp_Salt"] = "sale";
    EXPECT_EQ(
        check(),
        u"L'opzione 'ConnettoreApp_Slug' non è stata valorizzata. Accedere alle opzioni messaggistica da "
        "impostazioni di backoffice."_s);
}

TEST_F(PushTest, ACriterionMustBeChosen)
{
    choices.criterion = NotChosen;
    EXPECT_EQ(check(), u"Selezionare un criterio di spedizione."_s);
    choices.criterion = Everybody;
    EXPECT_EQ(check(), std::nullopt);
}

TEST_F(PushTest, AFailedCheckIsToldWithTheExclamationIconAndStopsBehindTheSeparator)
{
    choices.pushText.clear();
    EXPECT_FALSE(prepare());
    EXPECT_EQ(messages,
              std::vector<OperatorMessage>{told(u"Inserire correttamente il testo per la notifica push."_s,
                                                MessageIcon::Exclamation)});
    EXPECT_EQ(outcomes.lines, QStringList{separator()});
    EXPECT_TRUE(progress.calls.isEmpty());
}

// --------------------------------------------------------------------------------------- the validation

TEST_F(PushTest, EveryMarkedProfileGetsALine)
{
    host.isValidEmail() = [](const std::string& email) { return email != "sbagliata" && email[0] != '\t'; };
    rows.rows = {{u"1"_s, u"Rossi"_s, QString(), u"  griglia@rossi.it "_s},
                 {u"x"_s, u"Senza id"_s, QString(), u"a@b.it"_s},
                 {u"2"_s, u"Senza email"_s, QString(), u"   "_s},
                 {u"3"_s, u"Email sbagliata"_s, QString(), u"sbagliata"_s},
                 {u"5"_s, u"Tabulazione"_s, QString(), u"\ta@b.it"_s},
                 {u"4"_s, u"Non marcato"_s, QString(), u"a@b.it"_s, false}};
    const PushValidation validation = validateProfiles(connection(), rows, outcomes);
    EXPECT_EQ(
        outcomes.lines,
        (QStringList{u"OK     - Rossi: il profilo presenta email valida."_s,
                     u"ERRORE - Senza id: id cliente non valido. Il profilo verrà scartato."_s,
                     u"ERRORE - Senza email: email mancante. Il profilo verrà scartato."_s,
                     u"ERRORE - Email sbagliata: email non valida (sbagliata). Il profilo verrà scartato."_s,
                     u"ERRORE - Tabulazione: email non valida (\ta@b.it). Il profilo verrà scartato."_s}));
    ASSERT_EQ(validation.contacts.size(), 1U);
    EXPECT_EQ(validation.contacts[0].idCliente, 1);
    EXPECT_EQ(validation.contacts[0].email, u"griglia@rossi.it"_s) << "trimmed";
    EXPECT_EQ(validation.rejected, 4);
}

TEST_F(PushTest, ACustomerInTwoMarkedRowsIsADuplicateKey)
{
    rows.rows = {{u"1"_s, u"Rossi"_s, QString(), u"a@b.it"_s}, {u"1"_s, u"Rossi"_s, QString(), u"a@b.it"_s}};
    try {
        validateProfiles(connection(), rows, outcomes);
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), 457);
    }
}

TEST_F(PushTest, WithoutAHostsCheckAnAddressNeedsANameOneAtAndADomainWithADot)
{
    FakeHost minimal;
    const hostlib::SqlConnection bare{minimal.connection()};
    for (const auto* good : {u"a@b.it", u"à.è@x.y.z", u"a'b%c@d-e.it"}) {
        EXPECT_TRUE(bare.isValidEmail(QString::fromUtf16(good)));
    }
    for (const auto* bad : {u"", u"a", u"@b.it", u"a@", u"a@b", u"a@b@c.it", u"a b@c.it", u"a@.it", u"a@b.",
                            u"a@b..it", u"a@b.it\n"}) {
        EXPECT_FALSE(bare.isValidEmail(QString::fromUtf16(bad))) << utf8(QString::fromUtf16(bad));
    }
}

TEST_F(PushTest, TheQuestionCountsValidAndRejectedProfiles)
{
    PushValidation validation;
    validation.contacts.resize(2);
    EXPECT_EQ(profilesQuestion(validation),
              u"Esito validazione profili selezionati:\r\n - 2 profili validi\r\n"
              "Proseguire con la creazione delle notifiche?"_s);
    validation.rejected = 3;
    EXPECT_EQ(
        profilesQuestion(validation),
        u"Esito validazione profili selezionati:\r\n - 2 profili validi\r\n - 3 non riceveranno la notifica "
        "push (vedi errori).\r\nProseguire con la creazione delle notifiche?"_s);
}

TEST_F(PushTest, WithoutAValidProfileNothingIsCreated)
{
    rows.rows = {{u"1"_s, u"Rossi"_s, QString(), QString()}};
    EXPECT_FALSE(prepare());
    EXPECT_EQ(messages,
              std::vector<OperatorMessage>{told(u"Nessun profilo risulta avere una email valida. Non è stata "
                                                "creata alcuna notifica push."_s,
                                                MessageIcon::Exclamation)});
    EXPECT_TRUE(host.operations("push").empty());
}

TEST_F(PushTest, SelectedProfilesAreAskedAboutWithTheExclamationIcon)
{
    rows.rows = {{u"1"_s, u"Rossi"_s, QString(), u"a@b.it"_s}};
    answers = {Answer::No, Answer::Yes};
    EXPECT_FALSE(prepare());
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0],
              asked(u"Esito validazione profili selezionati:\r\n - 1 profili validi\r\nProseguire "
                    "con la creazione delle notifiche?"_s,
                    MessageIcon::Exclamation));
    EXPECT_TRUE(host.operations("push").empty());
    EXPECT_TRUE(prepare());
    EXPECT_EQ(host.operations("push").size(), 1U);
}

TEST_F(PushTest, TheGlobalNotificationIsAskedAboutWithTheInformationIconAndValidatesNobody)
{
    choices.criterion = Everybody;
    rows.rows = {{u"x"_s, u"Marcato"_s, QString(), QString()}};
    answers = {Answer::No, Answer::Yes};
    EXPECT_FALSE(prepare());
    EXPECT_EQ(messages,
              std::vector<OperatorMessage>{asked(u"Proseguire con l'invio della notifica globale?"_s)});
    EXPECT_EQ(outcomes.lines, QStringList{separator()});
    EXPECT_TRUE(prepare());
    EXPECT_EQ(host.operations("pushall"), Lines{"pushall Ciao [NOME]"});
    EXPECT_TRUE(host.operations("checkemail").empty());
}

// ----------------------------------------------------------------------------------------- the creation

TEST_F(PushTest, EveryContactIsParsedSentAndRecorded)
{
    EXPECT_TRUE(create({{1, u"a@b.it"_s}, {2, u"c@d.it"_s}}, Selected));
    EXPECT_EQ(
        host.operations(),
        (Lines{"open SELECT * FROM tabImpostazioni WHERE descrizione='ConnettoreApp_Salt' static pessimistic",
               "open SELECT * FROM tabImpostazioni WHERE descrizione='ConnettoreApp_Slug' static pessimistic",
               "init lumaca|sale", "customer 1", "parse Ciao|Rossi Mario|", "push a@b.it|Ciao<Rossi Mario,>",
               "save", "customer 2", "parse Ciao|D'Amico 100% \"à\" 😀|",
               "push c@d.it|Ciao<D'Amico 100% \"à\" 😀,>", "save"}));
    EXPECT_EQ(outcomes.lines, (QStringList{separator(), u"OK     - Rossi Mario - Creato correttamente."_s,
                                           u"OK     - D'Amico 100% \"à\" 😀 - Creato correttamente."_s}));
    EXPECT_TRUE(errors.isEmpty());
    EXPECT_EQ(progress.calls, (QStringList{u"1 0 Invio notifiche push..."_s, u"1 50 Invio notifica 1 di 2"_s,
                                           u"1 100 Invio notifica 2 di 2"_s, u"0 0 "_s}));
}

TEST_F(PushTest, TheRecordIsOfKindEightAndHasNoRecipientNumber)
{
    create({{1, u"a@b.it"_s}}, Selected);
    ASSERT_EQ(host.savedRecords().size(), 1U);
    QStringList filled;
    for (const auto& [name, value] : host.savedRecords().front()) {
        filled.append(qs(name + "=" + show(value)));
    }
    EXPECT_TRUE(filled.takeAt(1).startsWith(u"Descrizione='Notifica Push"_s));
    EXPECT_EQ(filled.mid(0, 8), (QStringList{u"IdTipoMessaggio=8"_s, u"Testo='Ciao<Rossi Mario,>'"_s,
                                             u"IDCliente=1"_s, u"Riferimento='-1'"_s, u"Flag1=true"_s,
                                             u"Flag2=true"_s, u"Flag3=true"_s, u"Valore=0"_s}));
    const FilledRecord& record = host.savedRecords().front();
    ASSERT_EQ(record.size(), 12U);
    EXPECT_EQ(record[9].first, "DataCreaz");
    EXPECT_EQ(record[10].first, "OraCreaz");
    EXPECT_EQ(calls::fromDate(record[9].second.date).date(), QDate::currentDate());
    EXPECT_EQ(record[9].second.date, record[10].second.date) << "date and time of creation, twice";
    EXPECT_EQ(filled.last(), u"UtenteUltimoAccesso='operatore'"_s);
}

TEST_F(PushTest, TheOperatorEndsARunBetweenTwoContacts)
{
    progress.endsAt = 2;
    EXPECT_FALSE(create({{1, u"a@b.it"_s}, {2, u"c@d.it"_s}, {1, u"e@f.it"_s}, {2, u"g@h.it"_s}}, Selected));
    EXPECT_EQ(host.operations("push").size(), 2U);
    EXPECT_EQ(host.savedRecords().size(), 2U);
    EXPECT_EQ(outcomes.lines.last(), u"       - Interrotto dall'operatore dopo la notifica 2 di 4."_s);
    EXPECT_EQ(progress.calls.last(), u"0 0 "_s) << "the indicator is hidden";
    ASSERT_EQ(log().size(), 1);
    EXPECT_TRUE(log()[0].contains(u"Interrotto dall'operatore dopo la notifica 2 di 4."_s));
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(PushTest, ARunOfOneContactIsNotEndedByTheOperator)
{
    progress.endsAt = 1;
    EXPECT_TRUE(create({{1, u"a@b.it"_s}}, Selected));
    EXPECT_EQ(progress.asked, 0);
}

TEST_F(PushTest, FailuresOfContactsNeverStopTheLoop)
{
    host.connectorErrors() = {"Utente non registrato"};
    host.saveAnswers() = {false};
    EXPECT_TRUE(create({{1, u"a@b.it"_s}, {99, u"x@y.it"_s}, {2, u"c@d.it"_s}, {1, u"a@b.it"_s}}, Selected));
    const QStringList failures{
        u"Errore durante la creazione della notifica push per idCliente: 1 (Rossi Mario, scheda@rossi.it), "
        u"email: "
        "a@b.it, testo: Ciao<Rossi Mario,>- Errore: Utente non registrato"_s,
        u"Errore durante la creazione della notifica push per idCliente: 99, email: x@y.it, testo: Ciao- "
        u"Errore:  "
        "Metodo init oggetto cliente fallito."_s,
        u"Errore durante la creazione della notifica push per idCliente: 2 (D'Amico 100% \"à\" 😀, "
        "scheda@damico.it), email: c@d.it, testo: Ciao<D'Amico 100% \"à\" 😀,>- Errore: Generazione messaggio "
        "su db "
        "non riuscita!"_s};
    EXPECT_EQ(errors, failures);
    EXPECT_EQ(outcomes.lines,
              (QStringList{separator(), u"ERR    - "_s + failures[0], u"ERR    - "_s + failures[1],
                           u"ERR    - "_s + failures[2], u"OK     - Rossi Mario - Creato correttamente."_s}));
}

TEST_F(PushTest, AnUnknownCriterionSendsNothing)
{
    for (const PushCriterion criterion : {NotChosen, static_cast<PushCriterion>(2)}) {
        errors.clear();
        EXPECT_FALSE(create({{1, u"a@b.it"_s}}, criterion));
        EXPECT_EQ(errors, QStringList{u"Non è stato selezionato il criterio di spedizione."_s});
    }
    EXPECT_TRUE(progress.calls.isEmpty());
    EXPECT_TRUE(host.operations("push").empty());
    EXPECT_EQ(host.operations("init").size(), 2U) << "the connector is made before the criterion is judged";
}

TEST_F(PushTest, TheGlobalNotificationIsNotParsedAndNotRecorded)
{
    EXPECT_TRUE(create({}, Everybody));
    EXPECT_EQ(host.operations("pushall"), Lines{"pushall Ciao"});
    EXPECT_TRUE(host.operations("save").empty());
    EXPECT_TRUE(host.operations("parse").empty());
    EXPECT_EQ(outcomes.lines,
              (QStringList{separator(), u"OK     - Notifica push globale - Creata correttamente."_s}));
    EXPECT_EQ(progress.calls, (QStringList{u"1 0 Invio notifiche push..."_s,
                                           u"1 0 Invio notifica globale in corso...."_s, u"0 0 "_s}));
}

TEST_F(PushTest, AFailedGlobalNotificationIsALineAndTheRunEndsWell)
{
    host.connectorErrors() = {"Servizio sospeso"};
    EXPECT_TRUE(create({}, Everybody));
    const QString failure = u"Errore durante la creazione della notifica push globale, testo: Ciao- Errore: "
                            "Servizio sospeso"_s;
    EXPECT_EQ(errors, QStringList{failure});
    EXPECT_EQ(outcomes.lines, (QStringList{separator(), u"ERR    - "_s + failure}));
}

TEST_F(PushTest, AHostWithoutAConnectorGetsItsTextInEveryLine)
{
    FakeHost minimal;
    minimal.settings() = host.settings();
    minimal.answer(
        "IdCliente=1",
        {{"RagioneSociale1", "RagioneSociale2", "email", "ConsensoSms", "ConsensoEmail", "idClassificazione"},
         {{text("Rossi"), text("Mario"), text("r@x.it"), number(1), number(1), null()}}});
    session().setConnessione(hostlib::SqlConnection(minimal.connection()));
    EXPECT_TRUE(create({{1, u"a@b.it"_s}}, Selected));
    EXPECT_EQ(errors,
              QStringList{u"Errore durante la creazione della notifica push per idCliente: 1 (Rossi Mario, "
                          "r@x.it), email: a@b.it, testo: Ciao- Errore: Connettore app non disponibile."_s});
}

TEST_F(PushTest, AHostWithoutAMessageRecordGetsARowOfTheMailingList)
{
    FakeHost minimal;
    minimal.offer(Service::AppConnector);
    minimal.settings() = host.settings();
    minimal.answer(
        "IdCliente=1",
        {{"RagioneSociale1", "RagioneSociale2", "email", "ConsensoSms", "ConsensoEmail", "idClassificazione"},
         {{text("Rossi"), text("Mario"), text("r@x.it"), boolean(true), boolean(false), null()}}});
    minimal.answer("SELECT Max(idMailing) as maxId FROM TMK_MailingList", {{"maxId"}, {{null()}}});
    session().setConnessione(hostlib::SqlConnection(minimal.connection()));
    EXPECT_TRUE(create({{1, u"a@b.it"_s}}, Selected));
    EXPECT_EQ(outcomes.lines.last(), u"OK     - Rossi Mario - Creato correttamente."_s);
    Lines set = minimal.operations("set");
    ASSERT_FALSE(set.empty());
    EXPECT_EQ(set.front(), "set idMailing=1");
    set.erase(set.begin());
    EXPECT_EQ(set, (Lines{"set idTipoMessaggio=8", "set Descrizione='Notifica Push'", "set Testo='Ciao'",
                          "set IDCliente=1", "set Riferimento='-1'", "set Flag1=true", "set Flag2=true",
                          "set Flag3=true", "set Valore=0", "set DataCreaz=<moment>", "set OraCreaz=<moment>",
                          "set UtenteUltimoAccesso='operatore'"}));
    EXPECT_TRUE(errors.isEmpty());
    EXPECT_EQ(minimal.openRowSets(), 0);
}

TEST_F(PushTest, ARunTimeErrorEndsTheRunIsLoggedAndHidesTheProgress)
{
    for (const char* kind : {"customer", "parse", "push"}) {
        host.noFailures();
        progress.calls.clear();
        host.failNth(kind, 1, E_FAIL, u"Errore di prova");
        EXPECT_FALSE(create({{1, u"a@b.it"_s}, {2, u"c@d.it"_s}}, Selected)) << kind;
        EXPECT_EQ(progress.calls.last(), u"0 0 "_s) << kind;
    }
    const QString entry =
        u"CreatePushNotifies_ListOfContacts_BL | Error -2147467259 (Errore di prova) in procedure "
        "CreatePushNotifies_ListOfContacts_BL of Modulo modMain | "_s;
    EXPECT_EQ(logged(), (QStringList{entry, entry, entry}));
}

TEST_F(PushTest, ASaveThatFailsOutrightIsLoggedAndTheLoopGoesOn)
{
    host.failNth("save", 1, E_FAIL, u"disco pieno");
    EXPECT_TRUE(create({{1, u"a@b.it"_s}, {2, u"c@d.it"_s}}, Selected));
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors[0].endsWith(u"- Errore: Generazione messaggio su db non riuscita!"_s))
        << utf8(errors[0]);
    EXPECT_TRUE(outcomes.lines.last().endsWith(u" - Creato correttamente."_s));
    EXPECT_EQ(logged(),
              QStringList{u"CreatePushNotifies_ListOfContacts_BL | Error -2147467259 (disco pieno) in "
                          "procedure CreatePushNotifies_ListOfContacts_BL of Modulo modMain | "_s});
}

TEST_F(PushTest, TheParserGetsTheTextAndTheCustomer)
{
    const hostlib::TextParser parser(connection());
    hostlib::Customer customer(connection());
    customer.init(1);
    EXPECT_EQ(PushNotify_TextMessage_Parser(parser, u"Caro [NOME]"_s, customer),
              u"Caro [NOME]<Rossi Mario,>"_s);
}

} // namespace
} // namespace zul
