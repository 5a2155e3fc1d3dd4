#include "host/services/CustomerFilterRules.h"
#include "base/DateText.h"

#include <gtest/gtest.h>

#include <limits>

using namespace zul;
using namespace zul::host;

namespace {

double day(int year, int month, int number)
{
    return static_cast<double>(daysFromCivil({year, month, number}));
}

} // namespace

TEST(CustomerFilterRules, WritesDaysAsTheServerReadsThemUnderEveryLanguage)
{
    EXPECT_EQ(dayLiteral(day(2024, 5, 1) + 0.75), "'20240501'");
    EXPECT_EQ(dayLiteral(day(1700, 1, 1)), "'17530101'");
    EXPECT_EQ(dayLiteral(1e9), "'99991231'");
}

TEST(CustomerFilterRules, WritesNumbersInInvariantForm)
{
    EXPECT_EQ(numberLiteral(0), "0");
    EXPECT_EQ(numberLiteral(-0.0), "0");
    EXPECT_EQ(numberLiteral(1234.5), "1234.5");
    EXPECT_EQ(numberLiteral(-0.01), "-0.01");
    EXPECT_EQ(numberLiteral(123456789012345.0), "123456789012345");
    EXPECT_EQ(numberLiteral(1.7976931348623157e308), "1.7976931348623157e+308");
    EXPECT_EQ(numberLiteral(-std::numeric_limits<double>::infinity()), "-1.7976931348623157e+308");
}

TEST(CustomerFilterRules, CountsTheLastDayUpToItsEnd)
{
    const std::string sql = salesPeriodFilter({day(2024, 1, 1), day(2024, 12, 31)});
    EXPECT_EQ(sql,
              "DELETE FROM tabSpoolReportStat2 WHERE NOT EXISTS (SELECT 1 FROM tabVendite WHERE"
              " tabVendite.IdCliente = tabSpoolReportStat2.intero1 AND tabVendite.DataVendita >= '20240101'"
              " AND tabVendite.DataVendita < '20250101')");
    EXPECT_EQ(salesPeriodFilter({day(1753, 1, 1), day(9999, 12, 31)}).find('<'), std::string::npos);
}

TEST(CustomerFilterRules, LooksAmongTheIdsOfTheSubSelect)
{
    EXPECT_EQ(
        pointsFilter({1, 2}, "Select intero1 as IdCliente from tabSpoolReportStat2"),
        "DELETE FROM tabSpoolReportStat2 WHERE tabSpoolReportStat2.intero1 IN (Select intero1 as IdCliente"
        " from tabSpoolReportStat2) AND NOT EXISTS (SELECT 1 FROM tabClienti WHERE tabClienti.IdCliente ="
        " tabSpoolReportStat2.intero1 AND ISNULL(tabClienti.PuntiFidelity, 0) BETWEEN 1 AND 2)");
}

TEST(CustomerFilterRules, TakesARecurrenceByDayAndMonth)
{
    const auto condition = [](DateRange range) {
        const std::string sql = recurrenceFilter(7, range);
        return sql.substr(sql.find("= 7 AND ") + 8);
    };
    const std::string number = "(MONTH(tabRIC_RicorrenzeClienti.DataRicorrenza) * 100 +"
                               " DAY(tabRIC_RicorrenzeClienti.DataRicorrenza))";
    EXPECT_EQ(condition({day(2024, 3, 1), day(2024, 3, 31)}), number + " BETWEEN 301 AND 331)");
    EXPECT_EQ(condition({day(2024, 12, 20), day(2025, 1, 6)}),
              "(" + number + " >= 1220 OR " + number + " <= 106))");
    EXPECT_EQ(condition({day(2024, 3, 1), day(2025, 3, 1)}),
              "tabRIC_RicorrenzeClienti.DataRicorrenza IS NOT NULL)");
    EXPECT_EQ(condition({day(1753, 1, 1), day(9999, 12, 31)}),
              "tabRIC_RicorrenzeClienti.DataRicorrenza IS NOT NULL)");
    EXPECT_EQ(condition({day(2024, 3, 2), day(2024, 3, 1)}), "1 = 0)");
}
