#include "host/services/CustomerFilterRules.h"

#include "base/DateText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace zul::host {

namespace {

// What the server's datetime holds.
constexpr CivilDay firstDay{1753, 1, 1};
constexpr CivilDay lastDay{9999, 12, 31};

CivilDay dayOf(double date)
{
    if (std::isnan(date)) {
        return firstDay;
    }
    return std::clamp(civilFromDate(date), firstDay, lastDay);
}

std::string literal(CivilDay day)
{
    const std::string number = std::to_string(day.year * 10'000 + day.month * 100 + day.day);
    return '\'' + number + '\'';
}

std::string removal(std::string_view among)
{
    std::string sql = "DELETE FROM tabSpoolReportStat2 WHERE ";
    if (!among.empty()) {
        sql += "tabSpoolReportStat2.intero1 IN (";
        sql += among;
        sql += ") AND ";
    }
    return sql;
}

// The sales of the customer of a scratch row within the days. The day behind the last one is the bound, so that
// a sale at any time of the last day counts; behind the calendar's last day nothing is left to exclude.
std::string salesOf(DateRange days)
{
    std::string sql = "FROM tabVendite WHERE tabVendite.IdCliente = tabSpoolReportStat2.intero1"
                      " AND tabVendite.DataVendita >= ";
    sql += literal(dayOf(days.from));
    const CivilDay last = dayOf(days.to);
    if (last != lastDay) {
        sql += " AND tabVendite.DataVendita < " + literal(civilFromDays(daysFromCivil(last) + 1));
    }
    return sql;
}

std::string between(NumberRange range)
{
    return "BETWEEN " + numberLiteral(range.from) + " AND " + numberLiteral(range.to);
}

int monthAndDay(CivilDay day)
{
    return day.month * 100 + day.day;
}

std::string recurrenceCondition(DateRange days)
{
    const std::string column = "tabRIC_RicorrenzeClienti.DataRicorrenza";
    const CivilDay from = dayOf(days.from);
    const CivilDay to = dayOf(days.to);
    if (to < from) {
        return "1 = 0";
    }
    const int first = monthAndDay(from);
    const int last = monthAndDay(to);
    if (to.year - from.year > 1 || (to.year > from.year && first <= last)) {
        return column + " IS NOT NULL";
    }
    const std::string number = "(MONTH(" + column + ") * 100 + DAY(" + column + "))";
    if (first <= last) {
        return number + " BETWEEN " + std::to_string(first) + " AND " + std::to_string(last);
    }
    return "(" + number + " >= " + std::to_string(first) + " OR " + number + " <= " + std::to_string(last) +
           ")";
}

} // namespace

std::string dayLiteral(double date)
{
    return literal(dayOf(date));
}

std::string numberLiteral(double value)
{
    if (std::isnan(value)) {
        value = 0.0;
    }
    value = std::clamp(value, -1.7976931348623157e308, 1.7976931348623157e308);
    std::array<char, 64> buffer{};
    const bool plain = std::fabs(value) < 1e15 && (value == 0.0 || std::fabs(value) >= 1e-9);
    const auto format = plain ? std::chars_format::fixed : std::chars_format::scientific;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format).ptr;
    std::string text(buffer.data(), end);
    return text == "-0" ? "0" : text;
}

std::string recurrenceFilter(int recurrence, DateRange days, std::string_view among)
{
    return removal(among) +
           "NOT EXISTS (SELECT 1 FROM tabRIC_RicorrenzeClienti WHERE tabRIC_RicorrenzeClienti.IdCliente ="
           " tabSpoolReportStat2.intero1 AND tabRIC_RicorrenzeClienti.idRicorrenza = " +
           std::to_string(recurrence) + " AND " + recurrenceCondition(days) + ")";
}

std::string pointsFilter(NumberRange points, std::string_view among)
{
    return removal(among) +
           "NOT EXISTS (SELECT 1 FROM tabClienti WHERE tabClienti.IdCliente = tabSpoolReportStat2.intero1"
           " AND ISNULL(tabClienti.PuntiFidelity, 0) " +
           between(points) + ")";
}

std::string classificationFilter(int classification, std::string_view among)
{
    return removal(among) +
           "NOT EXISTS (SELECT 1 FROM tabClienti WHERE tabClienti.IdCliente = tabSpoolReportStat2.intero1"
           " AND ISNULL(tabClienti.idClassificazione, 0) = " +
           std::to_string(classification) + ")";
}

// Rounded to cents: sums of binary fractions would miss a bound that they meet on paper.
std::string turnoverFilter(DateRange days, NumberRange amount, std::string_view among)
{
    return removal(among) + "ROUND(ISNULL((SELECT SUM(tabVendite.Importo) " + salesOf(days) +
           "), 0), 2) NOT " + between(amount);
}

std::string salesCountFilter(DateRange days, NumberRange count, std::string_view among)
{
    return removal(among) + "(SELECT COUNT(*) " + salesOf(days) + ") NOT " + between(count);
}

std::string salesPeriodFilter(DateRange days, std::string_view among)
{
    return removal(among) + "NOT EXISTS (SELECT 1 " + salesOf(days) + ")";
}

} // namespace zul::host
