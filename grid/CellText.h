// How numbers and dates of a grid are shown to the user, and which shown texts are numbers.
#pragma once

#include <QDate>
#include <QLocale>
#include <QString>
#include <QStringView>
#include <QTime>

#include <cstdint>

namespace zul {

/// Shows typed cell values in one locale; made once and kept, because a locale's formats are dear to ask for.
class CellText
{
public:
    explicit CellText(const QLocale& locale = QLocale());

    /// Without group separators, so that ids and phone numbers can be read back and searched as typed.
    QString integer(int64_t value) const;
    /// At most 15 significant digits, the locale's decimal separator, no group separators: 1234.5 is "1234,5".
    QString real(double value) const;
    /// OLE days (since 1899-12-30, the fraction is the time of day): the locale's short date with a year of
    /// four digits; with the time when there is one; the time alone on day 0. A value outside the years 100
    /// to 9999 is shown as the number it is.
    QString date(double value) const;
    /// "Vero"/"Falso" in Italian, "True"/"False" elsewhere.
    QString boolean(bool value) const;

    /// Whether a text is a number as operators type them, see LocaleInput.
    bool isNumeric(QStringView text) const;

    const QLocale& locale() const { return m_locale; }
    /// Whether integers are shown with the ASCII digits and minus sign.
    bool asciiIntegers() const { return m_asciiIntegers; }

private:
    QLocale m_locale;
    QString m_dateFormat;
    bool m_asciiIntegers = true;
};

/// OLE days to date and time of day; an invalid date when out of range.
struct DateAndTime
{
    QDate date;
    QTime time;
};
DateAndTime fromOleDays(double value);

} // namespace zul
