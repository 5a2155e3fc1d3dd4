#include "messages/salvaMessaggio.h"

#include "tests/support/ComponentTest.h"

#include <QDateTime>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class SalvaMessaggioTest : public ComponentTest
{
protected:
    SalvaMessaggioTest()
    {
        host.offerAll();
        host.nextId() = 33;
    }
};

TEST_F(SalvaMessaggioTest, AppendsATemplateColumnsInTheirOrderAndTellsTheTracker)
{
    const QString text = u"L'offerta 100% \"à è\" € 😀"_s;
    EXPECT_EQ(salvaMessaggio(session().connectionOrNone(), text), 33);
    EXPECT_EQ(
        host.operations(),
        (Lines{"nextid TMK_Messaggi idMessaggio",
               "open Select * from TMK_Messaggi where 1=2 static pessimistic", "addnew", "set idMessaggio=33",
               "set DataCreaz=<moment>", "set DataAgg=<moment>", "set UtenteUltimoAccesso='operatore'",
               "set IdTipoMessaggio=6", "set Descrizione='SMS'", "set testoSMS='" + utf8(text) + "'",
               "set isAttivo=true", "update", "tracked TMK_Messaggi 33"}));
    EXPECT_EQ(host.openRowSets(), 0);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SalvaMessaggioTest, ATypedTextLosesItsOuterBlanksAndBreaksItsLinesWithCrLf)
{
    EXPECT_EQ(templateText(u"  L'offerta 100%\nè qui 😀\r  "_s), u"L'offerta 100%\r\nè qui 😀\r\n"_s);
    EXPECT_EQ(templateText(u"   "_s), QString());
    EXPECT_EQ(templateText(u"\t"_s), u"\t"_s) << "a tab is text";
}

TEST_F(SalvaMessaggioTest, BothDatesAreTheSameMoment)
{
    salvaMessaggio(session().connectionOrNone(), u"x"_s);
    EXPECT_EQ(host.valuesOf("DataCreaz").at(0).date, host.valuesOf("DataAgg").at(0).date);
}

TEST_F(SalvaMessaggioTest, TwoSavesOfOneTextMakeTwoRows)
{
    EXPECT_EQ(salvaMessaggio(session().connectionOrNone(), u"x"_s), 33);
    EXPECT_EQ(salvaMessaggio(session().connectionOrNone(), u"x"_s), 34);
    EXPECT_EQ(host.operations("update").size(), 2U);
}

TEST_F(SalvaMessaggioTest, AnyFailureGivesMinusOneAndIsReportedInItsOwnWords)
{
    const std::vector<std::string> kinds{"nextid", "open", "addnew", "set", "user", "update", "tracked"};
    for (const std::string& kind : kinds) {
        host.noFailures();
        host.failNth(kind, 1, static_cast<HRESULT>(0x80040E57), u"Errore di prova");
        EXPECT_EQ(salvaMessaggio(session().connectionOrNone(), u"x"_s), -1) << kind;
        EXPECT_EQ(host.openRowSets(), 0) << kind;
    }
    QStringList expected;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        expected.append(u"salvaMessaggio | -2147217833-Errore di prova | erroreNonPrevistoDalProgramma"_s);
    }
    EXPECT_EQ(logged(), expected);
    EXPECT_TRUE(messages.empty()) << "no message box of its own";
}

TEST_F(SalvaMessaggioTest, WithoutAConnectionItFails)
{
    session() = Session();
    EXPECT_EQ(salvaMessaggio(session().connectionOrNone(), u"x"_s), -1);
    EXPECT_EQ(logged(), QStringList{u"salvaMessaggio | 91-Object variable or With block variable not set | "
                                    "erroreNonPrevistoDalProgramma"_s});
}

TEST_F(SalvaMessaggioTest, WithoutAGeneratorTheLargestIdAndTheRowStandInOneTransaction)
{
    FakeHost minimal;
    minimal.answer("Max(idMessaggio)", {{"maxId"}, {{number(7)}}});
    const hostlib::SqlConnection bare{minimal.connection()};
    EXPECT_EQ(salvaMessaggio(bare, u"x"_s), 8);
    const Lines operations = minimal.operations();
    EXPECT_EQ(
        Lines(operations.begin(), operations.begin() + 3),
        (Lines{"begin",
               "open SELECT Max(idMessaggio) as maxId FROM TMK_Messaggi WITH (UPDLOCK, HOLDLOCK) static "
               "read-only",
               "open Select * from TMK_Messaggi where 1=2 static pessimistic"}));
    EXPECT_EQ(Lines(operations.end() - 2, operations.end()), (Lines{"update", "commit"}));

    for (const char* kind : {"open", "user", "update", "commit"}) {
        minimal.failNth(kind, 1, E_FAIL, u"no");
        minimal.forgetOperations();
        EXPECT_EQ(salvaMessaggio(bare, u"x"_s), -1) << kind;
        EXPECT_EQ(minimal.operations().back(), "rollback") << kind;
    }
    EXPECT_EQ(minimal.openRowSets(), 0);
}

} // namespace
} // namespace zul
