#include "selection/TargetQuery.h"

#include "hostlib/Ado.h"
#include "hostlib/Error.h"
#include "hostlib/Host.h"
#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>
#include <limits>

namespace zul {
namespace {

using namespace test;
using Lines = std::vector<std::string>;

const QDate today(2025, 3, 7);
const QLocale italian(QLocale::Italian, QLocale::Italy);
const QLocale american(QLocale::English, QLocale::UnitedStates);
const QString beginning = QStringLiteral(
    "INSERT INTO tabSpoolReportStat2(intero1)  SELECT tabClienti.idCliente  FROM tabclienti WHERE 1=1 ");
const std::string ids = "Select intero1 as IdCliente from tabSpoolReportStat2";

QString clauses(const Criteria& criteria)
{
    const QString statement = selectionStatement(criteria, today);
    EXPECT_TRUE(statement.startsWith(beginning)) << utf8(statement);
    return statement.mid(beginning.size());
}

TEST(SelectionStatementTest, WithNoCriterionSelectsEverybodyAndKeepsTheDoubleBlank)
{
    EXPECT_EQ(selectionStatement(Criteria(), today), beginning);
}

TEST(SelectionStatementTest, SubTypesAreJoinedByOrInTheirOrder)
{
    Criteria c;
    c.chkANA_Tipo = 1;
    c.chkANA_Tipo_Con = 1;
    c.chkANA_Tipo_Cli = 1;
    EXPECT_EQ(clauses(c), QStringLiteral(" and ( tabClienti.Cliente<>0 or tabClienti.Contatto<>0 )"));
    c.chkANA_Tipo_For = 1;
    EXPECT_EQ(clauses(c),
              QStringLiteral(
                  " and ( tabClienti.Cliente<>0 or tabClienti.Fornitore<>0 or tabClienti.Contatto<>0 )"));
    c.chkANA_Tipo_Cli = c.chkANA_Tipo_Con = 0;
    EXPECT_EQ(clauses(c), QStringLiteral(" and ( tabClienti.Fornitore<>0 )"));
}

TEST(SelectionStatementTest, ATypeWithoutSubTypeAddsNothing)
{
    Criteria c;
    c.chkANA_Tipo = 1;
    EXPECT_EQ(clauses(c), QString());
    c.chkANA_Tipo_Cli = 2; // enough for the check, not for the statement
    EXPECT_EQ(clauses(c), QString());
    c.chkANA_Tipo = 0;
    c.chkANA_Tipo_Cli = 1;
    EXPECT_EQ(clauses(c), QString());
}

TEST(SelectionStatementTest, AgeCountsCalendarYearsAndBothBoundsAreIn)
{
    Criteria c;
    c.chkANA_Eta = 1;
    c.eta = ageRange(QStringLiteral("18"), QStringLiteral("30"), italian);
    EXPECT_EQ(clauses(c), QStringLiteral(" and DateDiff(year,tabClienti.DataNascita,'20250307') >= 18"
                                         " and DateDiff(year,tabClienti.DataNascita,'20250307') <= 30"));
}

TEST(SelectionStatementTest, AgeTextsGoInAsTheyWereTyped)
{
    Criteria c;
    c.chkANA_Eta = 1;
    c.eta = ageRange(QStringLiteral(" 18,5 "), QStringLiteral("+030"), italian);
    EXPECT_EQ(clauses(c), QStringLiteral(" and DateDiff(year,tabClienti.DataNascita,'20250307') >=  18,5 "
                                         " and DateDiff(year,tabClienti.DataNascita,'20250307') <= +030"));
}

TEST(SelectionStatementTest, Sex)
{
    Criteria c;
    c.chkANA_Sesso = 1;
    EXPECT_EQ(clauses(c), QString());
    c.optFemmina = true;
    EXPECT_EQ(clauses(c), QStringLiteral(" and tabClienti.Sesso='F'"));
    c.optMaschio = true; // the first that is asked wins
    EXPECT_EQ(clauses(c), QStringLiteral(" and tabClienti.Sesso='M'"));
    c.chkANA_Sesso = 0;
    EXPECT_EQ(clauses(c), QString());
}

TEST(SelectionStatementTest, PlacesAreSafeBetweenQuotes)
{
    Criteria c;
    c.chkLOC_Comune = c.chkLOC_Provincia = 1;
    EXPECT_EQ(clauses(c), QString());
    c.comune = QStringLiteral("L'Aquila 100% \"à\" 😀");
    c.provincia = QStringLiteral("'");
    EXPECT_EQ(clauses(c), QStringLiteral(" and tabClienti.Paese='L''Aquila 100% \"à\" 😀'"
                                         " and tabClienti.provincia=''''"));
    c.chkLOC_Comune = c.chkLOC_Provincia = 0;
    EXPECT_EQ(clauses(c), QString());
}

TEST(SelectionStatementTest, TheAdvancedFilterIsJoinedOnlyWhenItIsInForce)
{
    Criteria c;
    c.parametriRicercaAvanzata = QStringLiteral("SELECT IdCliente FROM x");
    EXPECT_EQ(clauses(c), QString());
    c.chk_Avanzata = 1;
    EXPECT_EQ(clauses(c), QStringLiteral(" and tabClienti.idcliente in (SELECT IdCliente FROM x) "));
}

TEST(SelectionStatementTest, ClausesStandInThisOrder)
{
    Criteria c;
    c.chk_Avanzata = c.chkLOC_Provincia = c.chkLOC_Comune = c.chkANA_Sesso = c.chkANA_Eta = c.chkANA_Tipo = 1;
    c.chkANA_Tipo_Cli = 1;
    c.eta = ageRange(QStringLiteral("1"), QStringLiteral("2"), italian);
    c.optMaschio = true;
    c.comune = QStringLiteral("Roma");
    c.provincia = QStringLiteral("RM");
    c.parametriRicercaAvanzata = QStringLiteral("select 1");
    EXPECT_EQ(clauses(c),
              QStringLiteral(" and ( tabClienti.Cliente<>0 )"
                             " and DateDiff(year,tabClienti.DataNascita,'20250307') >= 1"
                             " and DateDiff(year,tabClienti.DataNascita,'20250307') <= 2"
                             " and tabClienti.Sesso='M' and tabClienti.Paese='Roma'"
                             " and tabClienti.provincia='RM' and tabClienti.idcliente in (select 1) "));
}

class FillScratchTableTest : public ComponentTest
{
protected:
    void fill(const Criteria& criteria)
    {
        hostlib::CustomerFilterSql filters(connection());
        fillScratchTable(connection().connection(), filters, criteria, today);
    }
};

TEST_F(FillScratchTableTest, EmptiesTheTableFirstAndThenFillsIt)
{
    fill(Criteria());
    EXPECT_EQ(host.operations(),
              (Lines{"execute Delete from tabSpoolReportStat2", "execute " + utf8(beginning)}));
}

TEST_F(FillScratchTableTest, WithoutSalesCriteriaAHostWithoutFiltersWillDo)
{
    EXPECT_NO_THROW(fill(Criteria()));
    Criteria sales;
    sales.chkECO_PerAcq = 1;
    try {
        fill(sales);
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), 91);
    }
}

TEST_F(FillScratchTableTest, SalesCriteriaRunInTheirFixedOrderPlainThenRestricted)
{
    host.offer(Service::CustomerFilterSql);
    Criteria c;
    c.chkANA_Ricorr = c.chkECO_PtFid = c.chkECO_Classif = c.chkECO_Fatt = c.chkECO_NAcq = c.chkECO_PerAcq = 1;
    c.idRicorrenza = 4;
    c.dateRicorrenza = dateRange(QStringLiteral("1/2/2024"), QStringLiteral("29/2/2024"), italian);
    c.puntiFidelity = numberRange(QStringLiteral("1.000,5"), QStringLiteral("2000"), italian);
    c.idClassificazione = 9;
    c.dateFatturato = dateRange(QStringLiteral("1/1/2023"), QStringLiteral("31/12/2023"), italian);
    c.fatturato = numberRange(QStringLiteral("-10"), QStringLiteral("10"), italian);
    c.dateAcquisti = dateRange(QStringLiteral("2/1/2023"), QStringLiteral("30/12/2023"), italian);
    c.numeroAcquisti = numberRange(QStringLiteral("1"), QStringLiteral("5"), italian);
    c.periodoAcquisto = dateRange(QStringLiteral("3/1/2023"), QStringLiteral("29/12/2023"), italian);
    fill(c);
    const Lines calls{
        "Ricorrenze(4,2024-02-01,2024-02-29",
        "PuntiFidelity(1000.5,2000",
        "Classificazione(9",
        "Fatturato(2023-01-01,2023-12-31,-10,10",
        "NumeroAcquisti(2023-01-02,2023-12-30,1,5",
        "PeriodoAcquisto(2023-01-03,2023-12-29",
    };
    Lines expected{"execute Delete from tabSpoolReportStat2", "execute " + utf8(beginning)};
    const auto expectBoth = [&](const std::string& text) {
        expected.push_back("filter " + text);
        expected.push_back("execute " + text);
    };
    for (std::string call : calls) {
        expectBoth(call + ")");
        call.insert(call.find('('), "In");
        expectBoth(call + "," + ids + ")");
    }
    EXPECT_EQ(host.operations(), expected);
}

TEST_F(FillScratchTableTest, ARangeWithOneUsableBoundIsOpenAtTheOtherEnd)
{
    host.offer(Service::CustomerFilterSql);
    Criteria c;
    c.chkECO_Fatt = 1;
    c.dateFatturato = dateRange(QString(), QStringLiteral("31/12/2023"), italian);
    c.fatturato = numberRange(QStringLiteral("5"), QStringLiteral("abc"), italian);
    fill(c);
    EXPECT_EQ(host.operations("filter").front(),
              "filter Fatturato(1753-01-01,2023-12-31,5,1.79769313486232e+308)");
    host.forgetOperations();
    c.dateFatturato = dateRange(QStringLiteral("1/1/2023"), QStringLiteral("non so"), italian);
    c.fatturato = numberRange(QString(), QStringLiteral("5"), italian);
    fill(c);
    EXPECT_EQ(host.operations("filter").front(),
              "filter Fatturato(2023-01-01,9999-12-31,-1.79769313486232e+308,5)");
}

TEST_F(FillScratchTableTest, DatesAndNumbersFollowTheLocale)
{
    host.offer(Service::CustomerFilterSql);
    Criteria c;
    c.chkECO_NAcq = 1;
    c.dateAcquisti = dateRange(QStringLiteral("3/4/2024"), QStringLiteral("3/4/2024"), italian);
    c.numeroAcquisti = numberRange(QStringLiteral("1,234"), QStringLiteral("1,234"), italian);
    fill(c);
    EXPECT_EQ(host.operations("filter").front(), "filter NumeroAcquisti(2024-04-03,2024-04-03,1.234,1.234)");
    host.forgetOperations();
    c.dateAcquisti = dateRange(QStringLiteral("3/4/2024"), QStringLiteral("3/4/2024"), american);
    c.numeroAcquisti = numberRange(QStringLiteral("1,234"), QStringLiteral("1,234"), american);
    fill(c);
    EXPECT_EQ(host.operations("filter").front(), "filter NumeroAcquisti(2024-03-04,2024-03-04,1234,1234)");
}

TEST_F(FillScratchTableTest, AnErrorEndsItWhereItStands)
{
    host.offer(Service::CustomerFilterSql);
    Criteria c;
    c.chkANA_Ricorr = c.chkECO_PtFid = 1;
    c.idRicorrenza = 1;
    host.failNth("execute", 3, E_FAIL, u"Invalid object name 'x'.");
    try {
        fill(c);
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), static_cast<long>(E_FAIL));
        EXPECT_EQ(error.description(), QStringLiteral("Invalid object name 'x'."));
    }
    EXPECT_EQ(host.operations("execute").size(), 3U);
    EXPECT_EQ(host.operations("filter").size(), 1U);
}

} // namespace
} // namespace zul
