// The statements of the sales-figure filters and of the advanced search, run on the embedded database.
#include "tests/support/TemporaryFolder.h"

#include "base/DateText.h"
#include "host/services/CustomerFilterRules.h"
#include "host/services/SearchRules.h"
#include "host/session/HostDatabase.h"

#include <gtest/gtest.h>

using namespace zul;
using namespace zul::host;

namespace {

double day(int year, int month, int number)
{
    return static_cast<double>(daysFromCivil({year, month, number}));
}

class SearchSqlTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const std::string path = m_folder.file("x.db");
        createDemo(path, 0);
        HostDatabaseOptions options;
        options.database = path;
        m_database = std::make_unique<HostDatabase>(options);
        run("INSERT INTO tabClienti (IdCliente, RagioneSociale1, Paese, DataNascita, PuntiFidelity, "
            "idClassificazione,"
            " Cliente) VALUES (1, 'Rossi', 'L''Aquila', '19800229', 10.5, 3, 1),"
            " (2, 'Bianchi 100%', 'Forlì', '19991231', NULL, NULL, 0), (3, NULL, 'roma', NULL, 0, 3, 1),"
            " (4, 'De_Luca', 'Roma', '19500101', 9999, 1, 1)");
        // 1: 30.30 in three parts that do not add up in binary; 2: one sale on the last minute of a year; 3: none.
        run("INSERT INTO tabVendite (idVendita, IdCliente, DataVendita, Importo) VALUES"
            " (1, 1, '20240105', 10.10), (2, 1, '20240106', 10.10), (3, 1, '20240107', 10.10),"
            " (4, 2, '20241231 23:59:59', 500), (5, 4, '20230601', 7)");
        run("INSERT INTO tabRIC_RicorrenzeClienti (idRicorrenza, IdCliente, DataRicorrenza) VALUES"
            " (1, 1, '19800229'), (1, 2, '19991231'), (1, 4, '19500101'), (2, 3, '20000615'), (1, 3, NULL)");
    }

    void run(std::string_view sql) const { m_database->run(sql); }

    std::string left() const
    {
        std::string ids;
        for (const auto& row :
             m_database->run("SELECT intero1 FROM tabSpoolReportStat2 ORDER BY intero1").rows) {
            ids += *row[0];
        }
        return ids;
    }

    // What is left of everybody behind the plain statement and the restricted one.
    template <typename Filter>
    std::string filtered(const Filter& filter) const
    {
        run("DELETE FROM tabSpoolReportStat2");
        run("INSERT INTO tabSpoolReportStat2(intero1) SELECT IdCliente FROM tabClienti");
        run(filter(std::string_view()));
        std::string plain = left();
        run(filter(std::string_view("Select intero1 as IdCliente from tabSpoolReportStat2")));
        EXPECT_EQ(left(), plain);
        return plain;
    }

    std::string turnover(DateRange days, NumberRange amount) const
    {
        return filtered([&](std::string_view among) { return turnoverFilter(days, amount, among); });
    }
    std::string count(DateRange days, NumberRange number) const
    {
        return filtered([&](std::string_view among) { return salesCountFilter(days, number, among); });
    }
    std::string recurrence(int kind, DateRange days) const
    {
        return filtered([&](std::string_view among) { return recurrenceFilter(kind, days, among); });
    }

    std::string searched(const char* column, SearchComparison comparison, const char* value) const
    {
        int index = 0;
        for (const SearchField& field : searchFields()) {
            if (std::string_view(field.column) == column) {
                break;
            }
            ++index;
        }
        const SearchResult result = buildSearch({{index, comparison, QString::fromUtf8(value)}}, true,
                                                QLocale(QLocale::Italian, QLocale::Italy));
        EXPECT_TRUE(result.error.isEmpty()) << result.error.toStdString();
        run("DELETE FROM tabSpoolReportStat2");
        run("INSERT INTO tabSpoolReportStat2(intero1)  SELECT tabClienti.idCliente  FROM tabclienti WHERE "
            "1=1  and"
            " tabClienti.idcliente in (" +
            result.sql.toStdString() + ") ");
        return left();
    }

    const DateRange m_always{day(1753, 1, 1), day(9999, 12, 31)};
    const DateRange m_2024{day(2024, 1, 1), day(2024, 12, 31)};
    TemporaryFolder m_folder;
    std::unique_ptr<HostDatabase> m_database;
};

constexpr double lowest = -1.7976931348623157e308;
constexpr double highest = 1.7976931348623157e308;

} // namespace

using enum SearchComparison;

TEST_F(SearchSqlTest, TurnoverIncludesBothBoundsAndTheLastMinute)
{
    EXPECT_EQ(turnover(m_2024, {30.3, 500}), "12");
    EXPECT_EQ(turnover(m_2024, {30.31, 499.99}), "");
    EXPECT_EQ(turnover(m_2024, {30.3, 30.3}), "1");
    EXPECT_EQ(turnover(m_always, {lowest, highest}), "1234");
}

TEST_F(SearchSqlTest, WhoBoughtNothingHasTurnoverAndNumberZero)
{
    EXPECT_EQ(turnover(m_2024, {0, 0}), "34");
    EXPECT_EQ(count(m_2024, {0, 0}), "34");
    EXPECT_EQ(count(m_2024, {0, 1}), "234");
    EXPECT_EQ(count(m_2024, {2.5, highest}), "1");
    EXPECT_EQ(count({day(2024, 1, 6), day(2024, 1, 6)}, {1, 1}), "1");
}

TEST_F(SearchSqlTest, PeriodTakesWhoBoughtInIt)
{
    const auto period = [&](DateRange days) {
        return filtered([&](std::string_view among) { return salesPeriodFilter(days, among); });
    };
    EXPECT_EQ(period(m_2024), "12");
    EXPECT_EQ(period({day(2024, 12, 31), day(2024, 12, 31)}), "2");
    EXPECT_EQ(period(m_always), "124");
    EXPECT_EQ(period({day(2024, 12, 31), day(2024, 1, 1)}), "");
}

TEST_F(SearchSqlTest, RecurrencesFallInAnyYear)
{
    EXPECT_EQ(recurrence(1, {day(2023, 2, 28), day(2023, 3, 1)}), "1");
    EXPECT_EQ(recurrence(1, {day(2023, 12, 31), day(2024, 1, 1)}), "24");
    EXPECT_EQ(recurrence(1, {day(2024, 1, 1), day(2024, 1, 1)}), "4");
    EXPECT_EQ(recurrence(2, m_always), "3");
    EXPECT_EQ(recurrence(1, m_always), "124");
    EXPECT_EQ(recurrence(9, m_always), "");
}

TEST_F(SearchSqlTest, PointsAndClassificationTakeNothingForZero)
{
    const auto points = [&](NumberRange range) {
        return filtered([&](std::string_view among) { return pointsFilter(range, among); });
    };
    const auto classification = [&](int id) {
        return filtered([&](std::string_view among) { return classificationFilter(id, among); });
    };
    EXPECT_EQ(points({0, 10.5}), "123");
    EXPECT_EQ(points({10.5, highest}), "14");
    EXPECT_EQ(classification(3), "13");
    EXPECT_EQ(classification(0), "2");
    EXPECT_EQ(classification(77), "");
}

TEST_F(SearchSqlTest, RestrictedToOtherIdsLeavesTheRestAlone)
{
    run("DELETE FROM tabSpoolReportStat2");
    run("INSERT INTO tabSpoolReportStat2(intero1) SELECT IdCliente FROM tabClienti");
    run(classificationFilter(3, "SELECT 2"));
    EXPECT_EQ(left(), "134");
}

TEST_F(SearchSqlTest, AdvancedSearchFindsWhatItSays)
{
    EXPECT_EQ(searched("Paese", Equal, "L'Aquila"), "1");
    EXPECT_EQ(searched("Paese", Equal, "ROMA"), "34");
    EXPECT_EQ(searched("Paese", NotEqual, "Roma"), "12");
    EXPECT_EQ(searched("Paese", Contains, "orl"), "2");
    EXPECT_EQ(searched("Paese", Equal, "Forlì"), "2");
    EXPECT_EQ(searched("RagioneSociale1", Contains, "100%"), "2");
    EXPECT_EQ(searched("RagioneSociale1", BeginsWith, "De_"), "4");
    EXPECT_EQ(searched("RagioneSociale1", BeginsWith, "D__L"), "");
    EXPECT_EQ(searched("RagioneSociale1", ContainsNot, "ros"), "234");
    EXPECT_EQ(searched("RagioneSociale1", Empty, ""), "3");
    EXPECT_EQ(searched("RagioneSociale1", NotEmpty, ""), "124");
    EXPECT_EQ(searched("PuntiFidelity", GreaterOrEqual, "10,5"), "14");
    EXPECT_EQ(searched("PuntiFidelity", NotEqual, "0"), "124");
    EXPECT_EQ(searched("DataNascita", Equal, "29/2/1980"), "1");
    EXPECT_EQ(searched("DataNascita", Less, "29/02/1980"), "4");
    EXPECT_EQ(searched("DataNascita", Greater, "29/02/80"), "2");
    EXPECT_EQ(searched("DataNascita", Empty, ""), "3");
    EXPECT_EQ(searched("Cliente", Yes, ""), "134");
    EXPECT_EQ(searched("Cliente", No, ""), "2");
    EXPECT_EQ(searched("Paese", Equal, "' OR 1=1 --"), "");
    EXPECT_EQ(searched("Paese", Equal, ""), "1234");
}
