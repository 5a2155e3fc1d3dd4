#include "base/LocaleInput.h"

#include <QByteArray>

#include <array>
#include <cmath>

namespace zul {

namespace {

constexpr int earliestYear = 1753;
constexpr int latestYear = 9999;
constexpr int firstTwoDigitYearOf1900 = 30;

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool isBlankSeparator(QStringView separator)
{
    return separator.size() == 1 && separator[0].isSpace();
}

// The length of a separator at the text's beginning, 0 when there is none. Keyboards have no narrow or
// no-break blank and one apostrophe only, so those stand for the typographic ones.
qsizetype separatorLength(QStringView text, QStringView separator)
{
    if (text.isEmpty() || separator.isEmpty()) {
        return 0;
    }
    if (text.startsWith(separator)) {
        return separator.size();
    }
    if (isBlankSeparator(separator) && text[0].isSpace()) {
        return 1;
    }
    if (separator == u"’" && text[0] == u'\'') {
        return 1;
    }
    return 0;
}

qsizetype signLength(QStringView text, const QLocale& locale, bool& negative)
{
    const QString minus = locale.negativeSign();
    negative = false;
    if (text.startsWith(u'-') || text.startsWith(u'\u2212') || (!minus.isEmpty() && text.startsWith(minus))) {
        negative = true;
        return (!minus.isEmpty() && text.startsWith(minus)) ? minus.size() : 1;
    }
    return text.startsWith(u'+') ? 1 : 0;
}

// The digits before the decimal separator. False when a group has the wrong length.
bool readWhole(QStringView& text, const QString& grouping, QByteArray& digits)
{
    bool grouped = false;
    int inGroup = 0;
    while (!text.isEmpty()) {
        if (isDigit(text[0])) {
            digits.append(text[0].toLatin1());
            ++inGroup;
            text = text.mid(1);
            continue;
        }
        const qsizetype length = separatorLength(text, grouping);
        if (length == 0) {
            break;
        }
        if (inGroup == 0 || inGroup > 3 || (grouped && inGroup != 3)) {
            return false;
        }
        grouped = true;
        inGroup = 0;
        text = text.mid(length);
    }
    return !grouped || inGroup == 3;
}

enum class Part
{
    Day,
    Month,
    Year
};
using Order = std::array<Part, 3>;

Order orderOf(const QLocale& locale)
{
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype day = format.indexOf(u'd', 0, Qt::CaseInsensitive);
    const qsizetype month = format.indexOf(u'm', 0, Qt::CaseInsensitive);
    const qsizetype year = format.indexOf(u'y', 0, Qt::CaseInsensitive);
    if (year >= 0 && year < day && year < month) {
        return {Part::Year, Part::Month, Part::Day};
    }
    if (month >= 0 && month < day) {
        return {Part::Month, Part::Day, Part::Year};
    }
    return {Part::Day, Part::Month, Part::Year};
}

bool isDateSeparator(QChar character)
{
    return character == u'/' || character == u'-' || character == u'.';
}

// Three runs of digits between two equal separators.
std::optional<std::array<QStringView, 3>> splitDate(QStringView text)
{
    std::array<QStringView, 3> runs;
    QChar separator;
    std::size_t run = 0;
    qsizetype begin = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && isDigit(text[i])) {
            continue;
        }
        if (i == begin || run == runs.size()) {
            return std::nullopt;
        }
        runs[run++] = text.mid(begin, i - begin);
        begin = i + 1;
        if (i == text.size()) {
            break;
        }
        if (!isDateSeparator(text[i]) || (!separator.isNull() && separator != text[i])) {
            return std::nullopt;
        }
        separator = text[i];
    }
    if (run != runs.size()) {
        return std::nullopt;
    }
    return runs;
}

int fullYear(QStringView digits)
{
    const int year = digits.toInt();
    if (digits.size() == 4) {
        return year;
    }
    if (digits.size() != 2) {
        return 0;
    }
    return year >= firstTwoDigitYearOf1900 ? 1900 + year : 2000 + year;
}

QChar dateSeparator(const QLocale& locale)
{
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    for (const QChar character : format) {
        if (isDateSeparator(character)) {
            return character;
        }
    }
    return u'/';
}

} // namespace

std::optional<double> toNumber(QStringView text, const QLocale& locale)
{
    text = text.trimmed();
    bool negative = false;
    text = text.mid(signLength(text, locale, negative));

    QByteArray digits;
    if (!readWhole(text, locale.groupSeparator(), digits)) {
        return std::nullopt;
    }
    bool anyDigit = !digits.isEmpty();
    const qsizetype point = separatorLength(text, locale.decimalPoint());
    if (point > 0) {
        text = text.mid(point);
        digits.append('.');
        while (!text.isEmpty() && isDigit(text[0])) {
            digits.append(text[0].toLatin1());
            anyDigit = true;
            text = text.mid(1);
        }
    }
    if (!anyDigit || !text.isEmpty()) {
        return std::nullopt;
    }
    if (digits.startsWith('.')) {
        digits.prepend('0');
    }
    if (digits.endsWith('.')) {
        digits.chop(1);
    }
    bool read = false;
    const double value = digits.toDouble(&read);
    if (!read || !std::isfinite(value)) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

bool isNumeric(QStringView text, const QLocale& locale)
{
    return toNumber(text, locale).has_value();
}

std::optional<QDate> toDate(QStringView text, const QLocale& locale)
{
    const auto runs = splitDate(text.trimmed());
    if (!runs) {
        return std::nullopt;
    }
    const bool yearFirst = (*runs)[0].size() == 4;
    const Order order = yearFirst ? Order{Part::Year, Part::Month, Part::Day} : orderOf(locale);
    int day = 0;
    int month = 0;
    int year = 0;
    for (std::size_t i = 0; i < runs->size(); ++i) {
        const QStringView digits = (*runs)[i];
        if (order[i] == Part::Year) {
            year = fullYear(digits);
        } else if (digits.size() > 2) {
            return std::nullopt;
        } else {
            (order[i] == Part::Day ? day : month) = digits.toInt();
        }
    }
    if (year < earliestYear || year > latestYear || !QDate::isValid(year, month, day)) {
        return std::nullopt;
    }
    return QDate(year, month, day);
}

bool isDate(QStringView text, const QLocale& locale)
{
    return toDate(text, locale).has_value();
}

QString dateText(const QDate& date, const QLocale& locale)
{
    if (!date.isValid()) {
        return {};
    }
    QString text;
    for (const Part part : orderOf(locale)) {
        if (!text.isEmpty()) {
            text += dateSeparator(locale);
        }
        switch (part) {
        case Part::Day:
            text += QStringLiteral("%1").arg(date.day(), 2, 10, QLatin1Char('0'));
            break;
        case Part::Month:
            text += QStringLiteral("%1").arg(date.month(), 2, 10, QLatin1Char('0'));
            break;
        case Part::Year:
            text += QStringLiteral("%1").arg(date.year(), 4, 10, QLatin1Char('0'));
            break;
        }
    }
    return text;
}

QString datePlaceholder(const QLocale& locale)
{
    const bool italian = locale.language() == QLocale::Italian;
    QString text;
    for (const Part part : orderOf(locale)) {
        if (!text.isEmpty()) {
            text += dateSeparator(locale);
        }
        switch (part) {
        case Part::Day:
            text += italian ? QStringLiteral("gg") : QStringLiteral("dd");
            break;
        case Part::Month:
            text += QStringLiteral("mm");
            break;
        case Part::Year:
            text += italian ? QStringLiteral("aaaa") : QStringLiteral("yyyy");
            break;
        }
    }
    return text;
}

} // namespace zul
