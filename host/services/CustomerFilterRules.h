#pragma once
// The statements that narrow the scratch table tabSpoolReportStat2 to the customers who meet a sales-figure
// criterion, in Transact-SQL that the server and the dialect layer both run.
//
// Each takes away the ids that do not meet the criterion; with `among`, a sub-select of customer ids, only ids
// that it yields are looked at. Both bounds of a range belong to it, the last day up to its end. Ranges turned
// round are met by nobody.
#include <string>
#include <string_view>

namespace zul::host {

/// Automation dates; the time of day is dropped.
struct DateRange
{
    double from = 0.0;
    double to = 0.0;
};

struct NumberRange
{
    double from = 0.0;
    double to = 0.0;
};

/// A recurrence of that kind whose day and month fall in the range, in whatever year. A range over New Year's
/// Eve wraps around, one of a year or more takes every day.
std::string recurrenceFilter(int recurrence, DateRange days, std::string_view among = {});

/// Fidelity points; none stored counts as 0.
std::string pointsFilter(NumberRange points, std::string_view among = {});

/// The classification's id; 0 is the customers without one.
std::string classificationFilter(int classification, std::string_view among = {});

/// The sum of the sales in the period; no sale is 0.
std::string turnoverFilter(DateRange days, NumberRange amount, std::string_view among = {});

/// The number of sales in the period; no sale is 0.
std::string salesCountFilter(DateRange days, NumberRange count, std::string_view among = {});

/// At least one sale in the period.
std::string salesPeriodFilter(DateRange days, std::string_view among = {});

/// A day as the server reads it under every language setting: 'yyyymmdd', quotes included.
std::string dayLiteral(double date);

/// A number in invariant form, without an exponent up to 15 digits before the point.
std::string numberLiteral(double value);

} // namespace zul::host
