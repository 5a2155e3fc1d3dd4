#include "hostlib/Calls.h"

#include "base/AutomationDate.h"

namespace zul::calls {

namespace {

QDate dayOf(std::int64_t automationDay)
{
    return QDate(1899, 12, 30).addDays(automationDay);
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
    return static_cast<double>(dayOf(0).daysTo(day));
}

DATE toDate(const QDateTime& when)
{
    return joinDate(dayOf(0).daysTo(when.date()), when.time().msecsSinceStartOfDay());
}

QDateTime fromDate(DATE date)
{
    const DayAndTime parts = splitDate(date);
    // UTC, because a local day may lack its midnight.
    return {dayOf(parts.day), QTime::fromMSecsSinceStartOfDay(static_cast<int>(parts.milliseconds)), Qt::UTC};
}

} // namespace zul::calls
