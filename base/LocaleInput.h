// What operators type as numbers and dates, judged by a locale. No widget is needed.
#pragma once

#include <QDate>
#include <QLocale>
#include <QString>
#include <QStringView>

#include <optional>

namespace zul {

// A number: digits, with an optional leading sign, the locale's decimal separator and its grouping separator
// in groups of three; blanks around it are passed over. Italian: "18", "18,5", "1.234,50", "-3". The empty
// text is no number, nor is "18.5" in Italian (its groups are wrong), nor one too large for a double.
[[nodiscard]] std::optional<double> toNumber(QStringView text, const QLocale& locale);
[[nodiscard]] bool isNumeric(QStringView text, const QLocale& locale);

// A date: day, month and year in the order of the locale's short date, or year, month and day when the year
// comes first with four digits; separated by '/', '-' or '.', the same one twice; blanks around it are passed
// over. Two-digit years: 30 to 99 are 1930 to 1999, 00 to 29 are 2000 to 2029. Dates before 1753-01-01 are
// none, because the database cannot hold them. The empty text is no date.
[[nodiscard]] std::optional<QDate> toDate(QStringView text, const QLocale& locale);
[[nodiscard]] bool isDate(QStringView text, const QLocale& locale);

// The date as toDate reads it back: two-digit day and month, four-digit year. Italian: "25/12/2025".
[[nodiscard]] QString dateText(const QDate& date, const QLocale& locale);

// What an empty date field shows. Italian: "gg/mm/aaaa".
[[nodiscard]] QString datePlaceholder(const QLocale& locale);

} // namespace zul
