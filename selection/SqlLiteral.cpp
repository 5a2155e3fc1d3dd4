#include "selection/SqlLiteral.h"

namespace zul::SqlLiteral {

QString DateLiteral(QDate date)
{
    return QLatin1Char('\'') + date.toString(QStringLiteral("yyyyMMdd")) + QLatin1Char('\'');
}

QString TextLiteral(const QString& text)
{
    QString safe = text;
    safe.replace(QLatin1Char('\''), QStringLiteral("''"));
    return safe;
}

} // namespace zul::SqlLiteral
