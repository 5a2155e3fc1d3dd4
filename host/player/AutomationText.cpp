#include "host/player/AutomationText.h"

#include "host/player/ScenarioParser.h"

#include <QDateTime>

#include <cmath>

namespace zul::host
{
namespace
{
constexpr LCID americanEnglish = 0x0409;
constexpr qint64 millisecondsPerDay = 24LL * 60 * 60 * 1000;

// Any other type as the automation library writes it.
QString plainText(const VARIANT& value)
{
    Variant copy(value);
    if (FAILED(copy.changeType(VT_BSTR, americanEnglish))) {
        return QStringLiteral("?");
    }
    return toQString(copy.text());
}

QString dateText(DATE date)
{
    // Before the first day the fraction counts forward from the day all the same.
    const double day = std::trunc(date);
    const auto milliseconds =
        static_cast<qint64>(std::llround(std::fabs(date - day) * static_cast<double>(millisecondsPerDay)));
    const QDate calendar = QDate(1899, 12, 30).addDays(static_cast<qint64>(day));
    const QString clock = QTime::fromMSecsSinceStartOfDay(static_cast<int>(milliseconds % millisecondsPerDay))
                              .toString(QStringLiteral("HH:mm:ss"));
    if (milliseconds == 0) {
        return calendar.toString(Qt::ISODate);
    }
    return day == 0 ? clock : calendar.toString(Qt::ISODate) + QLatin1Char(' ') + clock;
}
} // namespace

QString resultText(const VARIANT& value)
{
    switch (value.vt) {
    case VT_EMPTY:
        return QStringLiteral("empty");
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE ? QStringLiteral("true") : QStringLiteral("false");
    case VT_BSTR:
        return quoted(toQString(textOf(value.bstrVal)));
    default:
        return plainText(value);
    }
}

QString cellText(const VARIANT& value)
{
    switch (value.vt) {
    case VT_NULL:
    case VT_EMPTY:
        return QStringLiteral("NULL");
    case VT_BOOL:
        return quoted(value.boolVal != VARIANT_FALSE ? QStringLiteral("1") : QStringLiteral("0"));
    case VT_DATE:
        return quoted(dateText(value.date));
    default:
        return quoted(plainText(value));
    }
}
} // namespace zul::host
