#include "hostlib/LocalClock.h"

namespace zul {

QDateTime LocalClock::now()
{
    constexpr qint64 quarterHour = qint64{15} * 60 * 1000;
    const qint64 utc = QDateTime::currentMSecsSinceEpoch();
    if (utc / quarterHour != m_quarter) {
        m_quarter = utc / quarterHour;
        m_ahead = qint64{1000} * QDateTime::fromMSecsSinceEpoch(utc).offsetFromUtc();
    }
    return QDateTime::fromMSecsSinceEpoch(utc + m_ahead, Qt::UTC);
}

} // namespace zul
