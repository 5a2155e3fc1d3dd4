#include "host/services/SearchRules.h"

#include "host/services/CustomerFilterRules.h"

#include <QDate>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>

namespace zul::host {

namespace {

using enum SearchComparison;

constexpr std::array<SearchField, 20> fields{{
    {"RagioneSociale1", "Ragione sociale 1", SearchKind::Text},
    {"RagioneSociale2", "Ragione sociale 2", SearchKind::Text},
    {"IdCliente", "Codice cliente", SearchKind::Number},
    {"Cliente", "Cliente", SearchKind::Flag},
    {"Fornitore", "Fornitore", SearchKind::Flag},
    {"Contatto", "Contatto", SearchKind::Flag},
    {"DataNascita", "Data di nascita", SearchKind::Date},
    {"Sesso", "Sesso", SearchKind::Text},
    {"Paese", "Comune", SearchKind::Text},
    {"provincia", "Provincia", SearchKind::Text},
    {"Telefono", "Telefono", SearchKind::Text},
    {"Telefono2", "Cellulare", SearchKind::Text},
    {"email", "E-mail", SearchKind::Text},
    {"MailCommerciale", "E-mail commerciale", SearchKind::Text},
    {"MailAmministrazione", "E-mail amministrazione", SearchKind::Text},
    {"NoteCliente", "Note", SearchKind::Text},
    {"ConsensoSms", "Consenso SMS", SearchKind::Flag},
    {"ConsensoEmail", "Consenso e-mail", SearchKind::Flag},
    {"idClassificazione", "Codice classificazione", SearchKind::Number},
    {"PuntiFidelity", "Punti fidelity", SearchKind::Number},
}};

constexpr std::array textComparisons{Equal,    NotEqual, Contains, ContainsNot, BeginsWith,
                                     EndsWith, Greater,  Less,     Empty,       NotEmpty};
constexpr std::array orderComparisons{Equal, NotEqual,    Greater, GreaterOrEqual,
                                      Less,  LessOrEqual, Empty,   NotEmpty};
constexpr std::array flagComparisons{Yes, No};

// A text between quotes; with the mark for national characters only where it has some, since the server keeps
// nothing beyond its code page without it.
QString textLiteral(QString text)
{
    const bool wide = std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() > 0x7F; });
    return (wide ? QStringLiteral("N'") : QStringLiteral("'")) + text.replace('\'', QLatin1String("''")) +
           '\'';
}

QString likeText(const QString& text)
{
    QString escaped;
    for (const QChar c : text) {
        if (c == '%' || c == '_' || c == '[') {
            escaped += '[' + QString(c) + ']';
        } else {
            escaped += c;
        }
    }
    return escaped;
}

QString negated(const QString& column, const QString& condition)
{
    return QStringLiteral("(%1 OR %2 IS NULL)").arg(condition, column);
}

QString sign(SearchComparison comparison)
{
    switch (comparison) {
    case NotEqual:
        return QStringLiteral("<>");
    case Greater:
        return QStringLiteral(">");
    case GreaterOrEqual:
        return QStringLiteral(">=");
    case Less:
        return QStringLiteral("<");
    case LessOrEqual:
        return QStringLiteral("<=");
    default:
        return QStringLiteral("=");
    }
}

QString textCondition(const QString& column, SearchComparison comparison, const QString& value)
{
    const QString like = likeText(value);
    switch (comparison) {
    case Contains:
        return column + QLatin1String(" LIKE ") + textLiteral('%' + like + '%');
    case ContainsNot:
        return negated(column, column + QLatin1String(" NOT LIKE ") + textLiteral('%' + like + '%'));
    case BeginsWith:
        return column + QLatin1String(" LIKE ") + textLiteral(like + '%');
    case EndsWith:
        return column + QLatin1String(" LIKE ") + textLiteral('%' + like);
    case NotEqual:
        return negated(column, column + QLatin1String(" <> ") + textLiteral(value));
    default:
        return column + ' ' + sign(comparison) + ' ' + textLiteral(value);
    }
}

QString numberCondition(const QString& column, SearchComparison comparison, double value)
{
    const QString condition =
        column + ' ' + sign(comparison) + ' ' + QString::fromStdString(numberLiteral(value));
    return comparison == NotEqual ? negated(column, condition) : condition;
}

// A column holds a moment, a value is a whole day.
QString dateCondition(const QString& column, SearchComparison comparison, const QDate& day)
{
    const double date = static_cast<double>(QDate(1899, 12, 30).daysTo(day));
    const QString from = QString::fromStdString(dayLiteral(date));
    const QString behind = QString::fromStdString(dayLiteral(date + 1));
    switch (comparison) {
    case NotEqual:
        return QStringLiteral("(%1 < %2 OR %1 >= %3 OR %1 IS NULL)").arg(column, from, behind);
    case Greater:
        return QStringLiteral("%1 >= %2").arg(column, behind);
    case GreaterOrEqual:
        return QStringLiteral("%1 >= %2").arg(column, from);
    case Less:
        return QStringLiteral("%1 < %2").arg(column, from);
    case LessOrEqual:
        return QStringLiteral("%1 < %2").arg(column, behind);
    default:
        return QStringLiteral("(%1 >= %2 AND %1 < %3)").arg(column, from, behind);
    }
}

// A date in the locale's short form, with four digits for the year or with two, which then mean 1930 to 2029.
QDate dateOf(const QString& text, const QLocale& locale)
{
    QString format = locale.dateFormat(QLocale::ShortFormat);
    format.replace(QLatin1String("dd"), QLatin1String("d")).replace(QLatin1String("MM"), QLatin1String("M"));
    format.replace(QRegularExpression(QStringLiteral("y+")), QStringLiteral("yyyy"));
    QDate date = QDate::fromString(text, format);
    if (date.isValid()) {
        return date;
    }
    date = QDate::fromString(text, format.replace(QLatin1String("yyyy"), QLatin1String("yy")));
    if (date.isValid()) {
        return date.year() < 1930 ? date.addYears(100) : date;
    }
    return QDate::fromString(text, Qt::ISODate);
}

struct Condition
{
    QString sql;
    QString error;
};

Condition conditionOf(const SearchField& field, const SearchRow& row, const QString& value,
                      const QLocale& locale)
{
    const QString column = QStringLiteral("tabClienti.") + QLatin1String(field.column);
    switch (row.comparison) {
    case Empty:
        return {field.kind == SearchKind::Text ? QStringLiteral("(%1 IS NULL OR %1 = '')").arg(column)
                                               : column + QLatin1String(" IS NULL"),
                {}};
    case NotEmpty:
        return {field.kind == SearchKind::Text ? column + QLatin1String(" <> ''")
                                               : column + QLatin1String(" IS NOT NULL"),
                {}};
    case Yes:
        return {column + QLatin1String(" <> 0"), {}};
    case No:
        return {QStringLiteral("(%1 = 0 OR %1 IS NULL)").arg(column), {}};
    default:
        break;
    }
    if (field.kind == SearchKind::Number) {
        bool ok = false;
        const double number = locale.toDouble(value, &ok);
        if (!ok) {
            return {{}, QStringLiteral("\"%1\" non è un numero valido.").arg(value)};
        }
        return {numberCondition(column, row.comparison, number), {}};
    }
    if (field.kind == SearchKind::Date) {
        const QDate day = dateOf(value, locale);
        if (!day.isValid() || day.year() < 1753 || day.year() > 9998) {
            return {{}, QStringLiteral("\"%1\" non è una data valida.").arg(value)};
        }
        return {dateCondition(column, row.comparison, day), {}};
    }
    return {textCondition(column, row.comparison, value), {}};
}

} // namespace

std::span<const SearchField> searchFields()
{
    return fields;
}

std::span<const SearchComparison> comparisonsFor(SearchKind kind)
{
    switch (kind) {
    case SearchKind::Text:
        return textComparisons;
    case SearchKind::Flag:
        return flagComparisons;
    default:
        return orderComparisons;
    }
}

QString comparisonLabel(SearchComparison comparison)
{
    switch (comparison) {
    case Equal:
        return QStringLiteral("uguale a");
    case NotEqual:
        return QStringLiteral("diverso da");
    case Greater:
        return QStringLiteral("maggiore di");
    case GreaterOrEqual:
        return QStringLiteral("maggiore o uguale a");
    case Less:
        return QStringLiteral("minore di");
    case LessOrEqual:
        return QStringLiteral("minore o uguale a");
    case Contains:
        return QStringLiteral("contiene");
    case ContainsNot:
        return QStringLiteral("non contiene");
    case BeginsWith:
        return QStringLiteral("inizia con");
    case EndsWith:
        return QStringLiteral("finisce con");
    case Empty:
        return QStringLiteral("è vuoto");
    case NotEmpty:
        return QStringLiteral("non è vuoto");
    case Yes:
        return QStringLiteral("sì");
    case No:
        return QStringLiteral("no");
    }
    return {};
}

bool takesValue(SearchComparison comparison)
{
    return comparison != Empty && comparison != NotEmpty && comparison != Yes && comparison != No;
}

SearchResult buildSearch(const std::vector<SearchRow>& rows, bool matchAll, const QLocale& locale)
{
    SearchResult result;
    QStringList conditions;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const SearchRow& row = rows[i];
        if (row.field < 0 || row.field >= static_cast<int>(fields.size())) {
            continue;
        }
        const SearchField& field = fields[static_cast<std::size_t>(row.field)];
        // A text is taken with its inner blanks; those around it are a slip of the hand.
        const QString value = row.value.trimmed();
        if (takesValue(row.comparison) && value.isEmpty()) {
            continue;
        }
        Condition condition = conditionOf(field, row, value, locale);
        if (!condition.error.isEmpty()) {
            return {{},
                    QString::fromUtf8(field.label) + QLatin1String(": ") + condition.error,
                    static_cast<int>(i)};
        }
        conditions.push_back(std::move(condition.sql));
    }
    result.sql = QStringLiteral("SELECT idCliente FROM tabClienti");
    if (!conditions.isEmpty()) {
        result.sql += QLatin1String(" WHERE ") +
                      conditions.join(matchAll ? QLatin1String(" AND ") : QLatin1String(" OR "));
    }
    return result;
}

} // namespace zul::host
