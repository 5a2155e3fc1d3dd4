#include "messages/CreateSMS.h"

#include "hostlib/Error.h"
#include "tests/messages/FakeRecipients.h"

#include <QDateTime>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class CreateSMSTest : public ComponentTest
{
protected:
    CreateSMSTest()
    {
        host.offerAll();
        host.answer("idMessaggio=12", {{"testoSMS", "Oggetto"}, {{text("Ciao [NOME]"), null()}}});
        host.customers()[1] = {"Rossi", "r@x.it", true, true, 3};
        host.customers()[2] = {"D'Amico 100% \"à\" 😀", "d@x.it", true, true, 0};
        host.customers()[3] = {"Verdi", "v@x.it", false, true, 0};
        host.answerLookup("id = 3", text("Buono"));
    }

    bool create(bool clearMarks = true, qint32 idMessaggio = 12)
    {
        return createSms(connection(), rows, outcomes, idMessaggio, clearMarks);
    }

    FakeRecipients rows;
    FakeOutcomes outcomes;
};

const std::string templateQuery =
    "open Select TestoSMS, OGGETTO from TMK_Messaggi where idMessaggio=12 static read-only";

TEST_F(CreateSMSTest, WithoutRowsReadsTheTemplateAndWritesTheSeparator)
{
    EXPECT_TRUE(create());
    EXPECT_EQ(host.operations(), Lines{templateQuery});
    EXPECT_EQ(outcomes.lines, QStringList{separator()});
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(CreateSMSTest, FillsTheRecordInItsOrder)
{
    rows.rows = {{u"1"_s, u"Rossi Mario"_s, u"+39 333 12"_s, QString()}};
    EXPECT_TRUE(create());
    EXPECT_EQ(host.operations(),
              (Lines{templateQuery, "customer 1", "lookup descrizione|tabRIC_Classificazioni|id = 3",
                     "parse Ciao [NOME]|Rossi|Buono", "save"}));
    ASSERT_EQ(host.savedRecords().size(), 1U);
    const FilledRecord& record = host.savedRecords().front();
    QStringList filled;
    for (const auto& [name, value] : record) {
        filled.append(qs(name + "=" + show(value)));
    }
    const QString today = QDate::currentDate().toString(Qt::ISODate);
    filled[11] = filled[11].section(u'=', 0, 0);
    EXPECT_EQ(filled, (QStringList{u"IdTipoMessaggio=6"_s, u"Descrizione='SMS'"_s,
                                   u"Testo='Ciao [NOME]<Rossi,Buono>'"_s, u"Contatto='+39 333 12'"_s,
                                   u"IDCliente=1"_s, u"Riferimento='-1'"_s, u"Flag1=true"_s, u"Flag2=true"_s,
                                   u"Flag3=true"_s, u"Valore=0"_s, u"DataCreaz="_s + today, u"OraCreaz"_s,
                                   u"UtenteUltimoAccesso='operatore'"_s}));
    EXPECT_GE(record[11].second.date, 0.0);
    EXPECT_LT(record[11].second.date, 1.0) << "a time of day";
    EXPECT_EQ(outcomes.lines, (QStringList{separator(), u"OK     - Preparato SMS per Rossi Mario"_s}));
}

TEST_F(CreateSMSTest, NoPrefixIsAddedToANumber)
{
    host.settings()["SMS_Aggiungi0039SeMancante"] = "1";
    rows.rows = {{u"1"_s, u"R"_s, u"3331234567"_s, QString()}};
    create();
    EXPECT_EQ(show(host.savedRecords().at(0).at(3).second), "'3331234567'");
    EXPECT_TRUE(host.operations("open").size() == 1U) << "the setting is not read";
}

TEST_F(CreateSMSTest, AnyNonEmptyTextPassesAsANumber)
{
    rows.rows = {{u"1"_s, u"R"_s, u" "_s, QString()}, {u"2"_s, u"D"_s, u"non lo so"_s, QString()}};
    EXPECT_TRUE(create());
    EXPECT_EQ(host.savedRecords().size(), 2U);
}

TEST_F(CreateSMSTest, SkipsRowsWithoutNumberOrIdAndGoesOn)
{
    rows.rows = {{u"1"_s, u"Senza numero"_s, QString(), u"a@b.it"_s},
                 {u"abc"_s, u"Senza id"_s, u"333"_s, QString()},
                 {u"2"_s, u"Buono"_s, u"333"_s, QString()}};
    EXPECT_TRUE(create());
    EXPECT_EQ(
        outcomes.lines,
        (QStringList{separator(),
                     u"ERRORE - Saltata richiesta invio SMS per Senza numero: numero cellulare non valido."_s,
                     u"ERRORE - Saltata richiesta invio SMS per Senza id: numero cellulare non valido."_s,
                     u"OK     - Preparato SMS per Buono"_s}));
    EXPECT_EQ(host.operations("customer"), Lines{"customer 2"})
        << "no customer is read before the number check";
}

TEST_F(CreateSMSTest, SkipsCustomersWithoutConsentAndChecksTheNumberFirst)
{
    rows.rows = {{u"3"_s, u"Verdi"_s, u"333"_s, QString()},
                 {u"3"_s, u"Verdi senza numero"_s, QString(), QString()},
                 {u"99"_s, u"Sconosciuto"_s, u"333"_s, QString()}};
    EXPECT_TRUE(create());
    EXPECT_EQ(
        outcomes.lines,
        (QStringList{
            separator(), u"ERRORE - Saltata richiesta invio SMS per Verdi: consenso SMS non presente."_s,
            u"ERRORE - Saltata richiesta invio SMS per Verdi senza numero: numero cellulare non valido."_s,
            u"ERRORE - Saltata richiesta invio SMS per Sconosciuto: consenso SMS non presente."_s}));
    EXPECT_TRUE(host.savedRecords().empty());
}

TEST_F(CreateSMSTest, UnmarkedRowsAreLeftOut)
{
    rows.rows = {{u"1"_s, u"R"_s, u"333"_s, QString(), false}, {u"2"_s, u"D"_s, u"333"_s, QString()}};
    EXPECT_TRUE(create());
    EXPECT_EQ(host.operations("customer"), Lines{"customer 2"});
}

TEST_F(CreateSMSTest, ClearMarksClearsEveryRowUnmarkedAndSkippedOnesIncluded)
{
    rows.rows = {{u"1"_s, u"R"_s, u"333"_s, QString()},
                 {u"2"_s, u"D"_s, QString(), QString()},
                 {u"3"_s, u"V"_s, u"333"_s, QString()},
                 {u"1"_s, u"R"_s, u"333"_s, QString(), false}};
    EXPECT_TRUE(create(false));
    EXPECT_EQ(rows.marks(), u"xxx-"_s);
    EXPECT_TRUE(create(true));
    EXPECT_EQ(rows.marks(), u"----"_s);
}

TEST_F(CreateSMSTest, AFailedSaveEndsTheRunAndKeepsTheMarkOfItsRow)
{
    host.saveAnswers() = {true, false};
    rows.rows = {{u"1"_s, u"R"_s, u"1"_s, QString()},
                 {u"2"_s, u"D"_s, u"2"_s, QString()},
                 {u"1"_s, u"R2"_s, u"3"_s, QString()}};
    EXPECT_FALSE(create());
    EXPECT_EQ(outcomes.lines, (QStringList{separator(), u"OK     - Preparato SMS per R"_s}));
    EXPECT_EQ(rows.marks(), u"-xx"_s);
    EXPECT_EQ(host.operations("save").size(), 2U);
}

TEST_F(CreateSMSTest, ATemplateThatIsNotThereGivesEmptyBodies)
{
    rows.rows = {{u"2"_s, u"D"_s, u"333"_s, QString()}};
    EXPECT_TRUE(create(true, 77));
    EXPECT_EQ(show(host.savedRecords().at(0).at(2).second), "'<D'Amico 100% \"à\" 😀,>'");
}

TEST_F(CreateSMSTest, ANullTextOfATemplateIsEmpty)
{
    host.answer("idMessaggio=13", {{"testoSMS", "Oggetto"}, {{null(), text("Oggetto")}}});
    const QString found = readTemplateText(connection(), 13);
    EXPECT_EQ(found, u""_s);
    EXPECT_FALSE(found.isNull());
    EXPECT_EQ(readTemplateText(connection(), 12), u"Ciao [NOME]"_s);
}

TEST_F(CreateSMSTest, ARunTimeErrorLeavesWhatWasStoredAndTheMarkOfItsRow)
{
    for (const char* kind : {"customer", "lookup", "parse", "save"}) {
        host.noFailures();
        host.forgetOperations();
        outcomes.lines.clear();
        rows.rows = {{u"1"_s, u"R"_s, u"1"_s, QString()}, {u"2"_s, u"D"_s, u"2"_s, QString()}};
        host.failNth(kind, 2, static_cast<HRESULT>(0x80040E14), u"Errore di prova");
        try {
            create();
            FAIL() << kind;
        } catch (const Error& error) {
            EXPECT_EQ(error.description(), u"Errore di prova"_s) << kind;
            EXPECT_EQ(error.number(), static_cast<long>(static_cast<HRESULT>(0x80040E14)));
        }
        EXPECT_EQ(rows.marks(), u"-x"_s) << kind;
        EXPECT_EQ(outcomes.lines.size(), 2) << kind;
        EXPECT_EQ(host.openRowSets(), 0);
    }
}

TEST_F(CreateSMSTest, ARunIsNotBegunWithAStandInForAServiceThatCannotBeHad)
{
    // Customer, parser and record, in the order in which they are asked for.
    for (int service = 1; service <= 3; ++service) {
        host.noFailures();
        host.forgetOperations();
        rows.rows = {{u"1"_s, u"R"_s, u"1"_s, QString()}};
        host.failNth("service", service, E_FAIL, u"Errore di prova");
        QString description;
        EXPECT_EQ(errorOf([&] { create(); }, &description), static_cast<long>(E_FAIL));
        EXPECT_EQ(description, u"Errore di prova"_s);
        EXPECT_EQ(rows.marks(), u"x"_s);
        EXPECT_TRUE(host.savedRecords().empty());
        EXPECT_EQ(host.operations(), Lines{templateQuery});
    }
}

TEST_F(CreateSMSTest, ATextOfTenThousandCharactersGoesThroughWhole)
{
    const std::string body(10000, 'x');
    host.answer("idMessaggio=14", {{"testoSMS", "Oggetto"}, {{text(body), null()}}});
    rows.rows = {{u"2"_s, u"D"_s, u"333"_s, QString()}};
    EXPECT_TRUE(create(true, 14));
    EXPECT_EQ(show(host.savedRecords().at(0).at(2).second).rfind("'" + body, 0), 0U);
}

TEST_F(CreateSMSTest, AHostWithNothingButAConnectionGetsARowOfTheMailingList)
{
    FakeHost minimal;
    const hostlib::SqlConnection bare{minimal.connection()};
    minimal.answer("idMessaggio=12", {{"testoSMS", "Oggetto"}, {{text("Ciao [NOME]"), null()}}});
    minimal.answer(
        "tabClienti WHERE IdCliente=1",
        {{"IdCliente", "RagioneSociale1", "RagioneSociale2", "email", "ConsensoSms", "ConsensoEmail",
          "idClassificazione"},
         {{number(1), text("Rossi"), text("Mario"), text("r@x.it"), boolean(true), number(0), null()}}});
    minimal.answer("SELECT Max(idMailing) as maxId FROM TMK_MailingList", {{"maxId"}, {{number(41)}}});
    rows.rows = {{u"1"_s, u"Rossi Mario"_s, u"333"_s, QString()}, {u"2"_s, u"Ignoto"_s, u"333"_s, QString()}};
    EXPECT_TRUE(createSms(bare, rows, outcomes, 12, true));
    EXPECT_EQ(minimal.operations("set"),
              (Lines{"set idMailing=42", "set idTipoMessaggio=6", "set Descrizione='SMS'",
                     "set Testo='Ciao [NOME]'", "set Contatto='333'", "set IDCliente=1",
                     "set Riferimento='-1'", "set Flag1=true", "set Flag2=true", "set Flag3=true",
                     "set Valore=0", "set DataCreaz=" + utf8(QDate::currentDate().toString(Qt::ISODate)),
                     "set OraCreaz=<moment>", "set UtenteUltimoAccesso='operatore'"}));
    EXPECT_EQ(outcomes.lines.last(),
              u"ERRORE - Saltata richiesta invio SMS per Ignoto: consenso SMS non presente."_s);
    EXPECT_EQ(minimal.openRowSets(), 0);
}

} // namespace
} // namespace zul
