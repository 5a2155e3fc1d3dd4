#include "hostlib/Calls.h"

#include <cmath>

namespace zul::calls {

namespace {

constexpr double MillisecondsADay = 86'400'000.0;

QDate dayZero()
{
    return {1899, 12, 30};
}

} // namespace

ComError comError(const Error& error)
{
    constexpr auto controlErrors = 0x800A0000U;
    const auto number = static_cast<HRESULT>(error.number());
    const HRESULT code =
        FAILED(number) ? number
                       : static_cast<HRESULT>(controlErrors | (static_cast<unsigned>(number) & 0xFFFFU));
    return {code,
            {reinterpret_cast<const char16_t*>(error.description().utf16()),
             static_cast<std::size_t>(error.description().size())}};
}

DATE toDate(QDate day)
{
    return static_cast<double>(dayZero().daysTo(day));
}

DATE toDate(const QDateTime& when)
{
    const double days = toDate(when.date());
    const double fraction = when.time().msecsSinceStartOfDay() / MillisecondsADay;
    return days < 0 ? days - fraction : days + fraction;
}

QDateTime fromDate(DATE date)
{
    const double days = std::trunc(date);
    const double milliseconds = std::nearbyint(std::fabs(date - days) * MillisecondsADay);
    // UTC, because a local day may lack its midnight.
    QDateTime when(dayZero().addDays(static_cast<qint64>(days)), QTime(0, 0), Qt::UTC);
    const auto whole = static_cast<int>(milliseconds);
    if (whole >= static_cast<int>(MillisecondsADay))
        return when.addDays(1);
    when.setTime(QTime::fromMSecsSinceStartOfDay(whole));
    return when;
}

} // namespace zul::calls
