#include "host/services/SearchRules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

using namespace zul::host;

namespace {

int fieldNamed(std::string_view column)
{
    const auto fields = searchFields();
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const SearchField& field) { return field.column == column; });
    return static_cast<int>(found - fields.begin());
}

std::string where(std::string_view column, SearchComparison comparison, const char* value)
{
    const SearchResult result = buildSearch({{fieldNamed(column), comparison, QString::fromUtf8(value)}},
                                            true, QLocale(QLocale::Italian, QLocale::Italy));
    return result.error.isEmpty() ? result.sql.toStdString().substr(
                                        std::string("SELECT idCliente FROM tabClienti WHERE ").size())
                                  : "error: " + result.error.toStdString();
}

} // namespace

using enum SearchComparison;

TEST(SearchRules, MeansEveryCustomerWithoutConditions)
{
    EXPECT_EQ(buildSearch({}, true, QLocale()).sql, "SELECT idCliente FROM tabClienti");
    EXPECT_EQ(buildSearch({{0, Equal, "  "}}, true, QLocale()).sql, "SELECT idCliente FROM tabClienti");
}

TEST(SearchRules, JoinsTheRowsByAndOrOr)
{
    const std::vector<SearchRow> rows{{fieldNamed("Paese"), Equal, "Roma"}, {fieldNamed("Cliente"), Yes, {}}};
    EXPECT_EQ(buildSearch(rows, true, QLocale()).sql,
              "SELECT idCliente FROM tabClienti WHERE tabClienti.Paese = 'Roma' AND tabClienti.Cliente <> 0");
    EXPECT_EQ(buildSearch(rows, false, QLocale()).sql,
              "SELECT idCliente FROM tabClienti WHERE tabClienti.Paese = 'Roma' OR tabClienti.Cliente <> 0");
}

TEST(SearchRules, KeepsEveryTextATextInsideTheQuotes)
{
    EXPECT_EQ(where("Paese", Equal, "L'Aquila"), "tabClienti.Paese = 'L''Aquila'");
    EXPECT_EQ(where("Paese", Equal, "Forlì 😀"), "tabClienti.Paese = N'Forlì 😀'");
    EXPECT_EQ(where("Paese", Contains, "50%_[x]'"), "tabClienti.Paese LIKE '%50[%][_][[]x]''%'");
    EXPECT_EQ(where("Paese", BeginsWith, "Ro"), "tabClienti.Paese LIKE 'Ro%'");
    EXPECT_EQ(where("Paese", EndsWith, "ma"), "tabClienti.Paese LIKE '%ma'");
    EXPECT_EQ(where("Paese", Empty, ""), "(tabClienti.Paese IS NULL OR tabClienti.Paese = '')");
    EXPECT_EQ(where("Paese", NotEmpty, "ignored"), "tabClienti.Paese <> ''");
    EXPECT_EQ(where("Paese", NotEqual, "Roma"), "(tabClienti.Paese <> 'Roma' OR tabClienti.Paese IS NULL)");
    EXPECT_EQ(where("Paese", ContainsNot, "x"),
              "(tabClienti.Paese NOT LIKE '%x%' OR tabClienti.Paese IS NULL)");
}

TEST(SearchRules, ReadsNumbersInTheUsersWay)
{
    EXPECT_EQ(where("PuntiFidelity", Greater, "1.234,5"), "tabClienti.PuntiFidelity > 1234.5");
    EXPECT_EQ(where("PuntiFidelity", Equal, "-3"), "tabClienti.PuntiFidelity = -3");
    EXPECT_EQ(where("PuntiFidelity", Less, "molti"),
              "error: Punti fidelity: \"molti\" non è un numero valido.");
    EXPECT_EQ(where("PuntiFidelity", Less, "1 OR 1=1"),
              "error: Punti fidelity: \"1 OR 1=1\" non è un numero valido.");
}

TEST(SearchRules, ReadsDatesInTheUsersWay)
{
    EXPECT_EQ(where("DataNascita", Equal, "1/2/1980"),
              "(tabClienti.DataNascita >= '19800201' AND tabClienti.DataNascita < '19800202')");
    EXPECT_EQ(where("DataNascita", Less, "01/02/80"), "tabClienti.DataNascita < '19800201'");
    EXPECT_EQ(where("DataNascita", Less, "01/02/05"), "tabClienti.DataNascita < '20050201'");
    EXPECT_EQ(where("DataNascita", Greater, "31/12/1999"), "tabClienti.DataNascita >= '20000101'");
    EXPECT_EQ(where("DataNascita", LessOrEqual, "1980-02-01"), "tabClienti.DataNascita < '19800202'");
    EXPECT_EQ(where("DataNascita", Equal, "31/02/1980"),
              "error: Data di nascita: \"31/02/1980\" non è una data valida.");
    EXPECT_EQ(where("DataNascita", Empty, ""), "tabClienti.DataNascita IS NULL");
}

TEST(SearchRules, ReadsAmericanDatesForAnAmerican)
{
    const QLocale american(QLocale::English, QLocale::UnitedStates);
    const SearchResult result = buildSearch({{fieldNamed("DataNascita"), Less, "2/1/1980"}}, true, american);
    EXPECT_EQ(result.sql, "SELECT idCliente FROM tabClienti WHERE tabClienti.DataNascita < '19800201'");
}

TEST(SearchRules, SaysWhichRowIsWrong)
{
    const std::vector<SearchRow> rows{{fieldNamed("Paese"), Equal, "Roma"},
                                      {fieldNamed("PuntiFidelity"), Less, "x"}};
    const SearchResult result = buildSearch(rows, true, QLocale());
    EXPECT_EQ(result.row, 1);
    EXPECT_TRUE(result.sql.isEmpty());
}

TEST(SearchRules, OffersComparisonsForEveryField)
{
    for (const SearchField& field : searchFields()) {
        EXPECT_FALSE(comparisonsFor(field.kind).empty()) << field.column;
        for (const SearchComparison comparison : comparisonsFor(field.kind)) {
            EXPECT_FALSE(comparisonLabel(comparison).isEmpty());
        }
    }
}
