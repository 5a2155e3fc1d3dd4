#include "messages/CreateMAIL.h"

#include "hostlib/Error.h"
#include "messages/Campaign.h"
#include "tests/messages/FakeRecipients.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class CreateMAILTest : public ComponentTest
{
protected:
    CreateMAILTest()
    {
        host.offerAll();
        host.nextId() = 100;
        host.customers()[1] = {"Rossi", "cliente@rossi.it", true, true, 0};
        host.customers()[2] = {"Verdi", "v@x.it", true, false, 0};
    }

    void create(bool clearMarks = true) { createMail(connection(), rows, outcomes, 5, 7, clearMarks); }

    FakeRecipients rows;
    FakeOutcomes outcomes;
};

/// What a new mail campaign writes; the description is left open.
Lines campaignLines(long id)
{
    const QDate today = QDate::currentDate();
    return {
        "nextid TMK_Campagne idCampagna",
        "open select * from TMK_Campagne where 1=2 static pessimistic",
        "addnew",
        "set idCampagna=" + std::to_string(id),
        "set Predefinita=false",
        "set MessaggiPerSettore=false",
        "set Descrizione=…",
        "set DataLancio=" + utf8(today.toString(Qt::ISODate)),
        "set datatermine=" + utf8(today.addDays(1).toString(Qt::ISODate)),
        "execute update TMK_Chiamate set IdScript= -1 where IdStatoChiamata<>5 and IdStatoChiamata<>1 and "
        "idCampagna=" +
            std::to_string(id),
        "set IdScript=-1",
        "set idMessaggio=5",
        "set tipoCampagna=2",
        "set IdStatoCampagna=1",
        "set idOperatore=7",
        "set Colore=-1",
        "set MessaggioPredAppuntamento=''",
        "set BloccaRichiami=true",
        "set IgnoraFiltriOrariAttivita=true",
        "set IdCampagnaRichiami=-1",
        "set IdCampagnaAssociata=-1",
        "set NrRichiami_NonRisponde=-1",
        "set NrRichiami_Occupato=-1",
        "set NrRichiami_RispondeFax=-1",
        "set MinutiPerRichiamoOccupato=-1",
        "set MinutiPerRichiamoNonRisponde=-1",
        "set MinutiPerRichiamoFax=-1",
        "set NrRichiami_Totali=-1",
        "set DataAgg=<moment>",
        "set UtenteUltimoAccesso='operatore'",
        "update"};
}

Lines withoutDescription(Lines lines)
{
    for (std::string& line : lines) {
        if (line.rfind("set Descrizione='CAMPAGNA MAIL DEL:", 0) == 0) {
            line = "set Descrizione=…";
        }
    }
    return lines;
}

Lines operator+(Lines left, const Lines& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

const std::string queue = "open SELECT * FROM TMK_MailingList WHERE 1=2 static pessimistic";

TEST_F(CreateMAILTest, EveryRunMakesACampaignAlsoWhenNobodyQualifies)
{
    create();
    EXPECT_EQ(withoutDescription(host.operations()), (campaignLines(100) + Lines{queue}));
    EXPECT_EQ(outcomes.lines, QStringList{separator()});
    host.forgetOperations();
    create();
    EXPECT_EQ(withoutDescription(host.operations()), (campaignLines(101) + Lines{queue}));
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(CreateMAILTest, QueuesOneRowPerCustomerColumnsInTheirOrder)
{
    rows.rows = {{u"1"_s, u"Rossi Mario"_s, QString(), u"griglia@rossi.it"_s}};
    create();
    const Lines rowLines{queue, "customer 1", "addnew", "nextid TMK_MailingList idMailing",
                         "set idMailing=101", "set idCampagna=100", "set idMessaggio=5", "set IDCliente=1",
                         // The customer's own address, not the grid's.
                         "set Contatto='cliente@rossi.it'", "set DataCreaz=<moment>", "set DataAgg=<moment>",
                         "set Locked=false", "set idReferente=-1s", "update"};
    EXPECT_EQ(withoutDescription(host.operations()), campaignLines(100) + rowLines);
    EXPECT_EQ(outcomes.lines, (QStringList{separator(), u"OK     - Preparata EMAIL per Rossi Mario"_s}));
}

TEST_F(CreateMAILTest, SkipsWhoHasNoAddressOrNoConsent)
{
    rows.rows = {{u"1"_s, u"Senza"_s, u"333"_s, QString()},
                 {u"2"_s, u"Verdi"_s, QString(), u"v@x.it"_s},
                 {u"99"_s, u"Sconosciuto"_s, QString(), u"s@x.it"_s},
                 {u"2"_s, u"Non marcato"_s, QString(), QString(), false}};
    create();
    EXPECT_EQ(
        outcomes.lines,
        (QStringList{
            separator(), u"ERRORE - Saltata richiesta invio EMAIL per Senza: email non presente."_s,
            u"ERRORE - Saltata richiesta invio EMAIL per Verdi: consenso EMAIL non presente."_s,
            u"ERRORE - Saltata richiesta invio EMAIL per Sconosciuto: consenso EMAIL non presente."_s}));
}

TEST_F(CreateMAILTest, ARowWithoutANumericIdIsPassedOverWithoutALine)
{
    rows.rows = {{u"abc"_s, u"Senza id"_s, QString(), u"a@b.it"_s},
                 {u"abc"_s, u"Senza id e senza email"_s, QString(), QString()}};
    create();
    EXPECT_EQ(
        outcomes.lines,
        (QStringList{
            separator(),
            u"ERRORE - Saltata richiesta invio EMAIL per Senza id e senza email: email non presente."_s}));
    EXPECT_TRUE(host.operations("customer").empty());
}

TEST_F(CreateMAILTest, ClearMarksClearsEveryRow)
{
    rows.rows = {{u"1"_s, u"R"_s, QString(), u"a@b.it"_s},
                 {u"1"_s, u"S"_s, QString(), QString()},
                 {u"1"_s, u"T"_s, QString(), u"a@b.it"_s, false}};
    create(false);
    EXPECT_EQ(rows.marks(), u"xx-"_s);
    create(true);
    EXPECT_EQ(rows.marks(), u"---"_s);
}

TEST_F(CreateMAILTest, ARunTimeErrorKeepsTheRowsAlreadyWritten)
{
    rows.rows = {{u"1"_s, u"R"_s, QString(), u"a@b.it"_s}, {u"1"_s, u"S"_s, QString(), u"a@b.it"_s}};
    host.failNth("update", 3, E_FAIL, u"Violation of PRIMARY KEY");
    EXPECT_THROW(create(), Error);
    EXPECT_EQ(outcomes.lines, (QStringList{separator(), u"OK     - Preparata EMAIL per R"_s}));
    EXPECT_EQ(rows.marks(), u"-x"_s);
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(CreateMAILTest, WithoutAGeneratorEachLargestIdAndItsRowStandInOneTransaction)
{
    FakeHost minimal;
    minimal.answer("Max(idCampagna)", {{"maxId"}, {{number(7)}}});
    minimal.answer("Max(idMailing)", {{"maxId"}, {{number(41)}}});
    minimal.answer(
        "tabClienti WHERE IdCliente=",
        {{"RagioneSociale1", "RagioneSociale2", "email", "ConsensoSms", "ConsensoEmail", "idClassificazione"},
         {{text("R"), null(), text("a@b.it"), number(1), number(1), null()}}});
    const hostlib::SqlConnection bare{minimal.connection()};
    rows.rows = {{u"1"_s, u"R"_s, QString(), u"a@b.it"_s}, {u"2"_s, u"S"_s, QString(), u"a@b.it"_s}};
    createMail(bare, rows, outcomes, 5, 7, true);
    Lines steps;
    for (const std::string& line : minimal.operations()) {
        if (line == "begin" || line == "commit" || line == "update" || line == "addnew" ||
            line.find("Max(") != std::string::npos) {
            steps.push_back(line);
        }
    }
    const auto largest = [](const char* key, const char* table) {
        return std::string("open SELECT Max(") + key + ") as maxId FROM " + table +
               " WITH (UPDLOCK, HOLDLOCK) static read-only";
    };
    const Lines campaign{"begin", largest("idCampagna", "TMK_Campagne"), "addnew", "update", "commit"};
    const Lines mail{"addnew", "begin", largest("idMailing", "TMK_MailingList"), "update", "commit"};
    EXPECT_EQ(steps, campaign + mail + mail);

    minimal.forgetOperations();
    rows.rows[0].marked = true;
    minimal.failNth("update", 2, E_FAIL, u"no");
    EXPECT_THROW(createMail(bare, rows, outcomes, 5, 7, false), Error);
    EXPECT_EQ(minimal.operations().back(), "rollback");
    EXPECT_EQ(minimal.openRowSets(), 0);
}

TEST_F(CreateMAILTest, AFailedCampaignQueuesNothing)
{
    rows.rows = {{u"1"_s, u"R"_s, QString(), u"a@b.it"_s}};
    host.failNth("nextid", 1, E_FAIL, u"no");
    EXPECT_THROW(create(), Error);
    EXPECT_EQ(host.operations(), Lines{"nextid TMK_Campagne idCampagna"});
    EXPECT_EQ(rows.marks(), u"x"_s);
}

TEST(CampaignDescriptionTest, HasNoBlankAfterTheColonAndTheUsersShortFormats)
{
    const QLocale before;
    const QDateTime when(QDate(2025, 3, 7), QTime(9, 5, 59));
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    EXPECT_EQ(campaignDescription(when), u"CAMPAGNA MAIL DEL:07/03/25 09:05"_s);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(campaignDescription(when).simplified().replace(QChar(0x202F), u' '),
              u"CAMPAGNA MAIL DEL:3/7/25 9:05 AM"_s);
    QLocale::setDefault(before);
}

class CampaignTest : public ComponentTest
{
protected:
    CampaignTest()
    {
        host.offerAll();
        campaign.DataLancio = QDate(2025, 3, 7);
        campaign.datatermine = QDate(2025, 3, 8);
        campaign.Descrizione = u"L'offerta 100% \"à\" 😀"_s;
    }
    Campaign campaign;
};

TEST_F(CampaignTest, AnExistingCampaignIsChangedInPlaceAndKeepsItsId)
{
    host.answer("where IdCampagna=9", {{"idCampagna", "IdScript"}, {{number(9), number(4)}}});
    campaign.IdScript = 6;
    EXPECT_EQ(saveCampaign(connection(), campaign, 9), 9);
    EXPECT_EQ(host.operations().front(),
              "open select * from TMK_Campagne where IdCampagna=9 static pessimistic");
    EXPECT_EQ(host.operations().at(1), "set Predefinita=false") << "neither added nor given an id";
    EXPECT_EQ(host.operations("execute"),
              Lines{"execute update TMK_Chiamate set IdScript= 6 where IdStatoChiamata<>5 and "
                    "IdStatoChiamata<>1 and idCampagna=9"});
    EXPECT_EQ(host.operations("set").at(2), "set Descrizione='L'offerta 100% \"à\" 😀'");
}

TEST_F(CampaignTest, CallsAreMovedOnlyWhenTheScriptChanges)
{
    host.answer("where IdCampagna=9", {{"IdScript"}, {{number(-1)}}});
    saveCampaign(connection(), campaign, 9);
    EXPECT_TRUE(host.operations("execute").empty());
}

TEST_F(CampaignTest, ANullScriptReadsAsZero)
{
    host.answer("where IdCampagna=9", {{"IdScript"}, {{null()}}});
    campaign.IdScript = 0;
    saveCampaign(connection(), campaign, 9);
    EXPECT_TRUE(host.operations("execute").empty());
    campaign.IdScript = -1;
    saveCampaign(connection(), campaign, 9);
    EXPECT_EQ(host.operations("execute").size(), 1U);
}

TEST_F(CampaignTest, AnIdWithoutARowIsAnError)
{
    EXPECT_THROW(saveCampaign(connection(), campaign, 9), Error);
    EXPECT_TRUE(host.operations("update").empty());
    EXPECT_EQ(host.openRowSets(), 0);
}

} // namespace
} // namespace zul
