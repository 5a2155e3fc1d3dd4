// The local time, for runs that ask for it once or twice a row.
#pragma once

#include <QDateTime>

namespace zul {

/// Answers as QDateTime::currentDateTime does, without asking the system for its time zone each time: what the
/// local time is ahead of UTC changes at a quarter of an hour at most, and is asked anew at each. Held in UTC, as
/// all values are that go to the database.
class LocalClock
{
public:
    QDateTime now();

private:
    qint64 m_quarter = -1; ///< of an hour, since 1970, for which m_ahead holds
    qint64 m_ahead = 0;    ///< of UTC, in milliseconds
};

} // namespace zul
