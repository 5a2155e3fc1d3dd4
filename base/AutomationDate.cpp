#include "base/AutomationDate.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace zul {

DayAndTime splitDate(double date)
{
    constexpr double beyondCounting = 1e15;
    if (std::isnan(date)) {
        return {};
    }
    const double whole = std::trunc(std::clamp(date, -beyondCounting, beyondCounting));
    const double fraction = std::fabs(date) < beyondCounting ? std::fabs(date - whole) : 0.0;
    DayAndTime parts{static_cast<std::int64_t>(whole),
                     std::llround(fraction * static_cast<double>(millisecondsPerDay))};
    if (parts.milliseconds >= millisecondsPerDay) {
        parts = {parts.day + 1, 0};
    }
    return parts;
}

DayAndTime splitDateInRange(double date)
{
    const DayAndTime parts = splitDate(date);
    if (parts.day < firstAutomationDay) {
        return {firstAutomationDay, 0};
    }
    if (parts.day > lastAutomationDay) {
        return {lastAutomationDay, millisecondsPerDay - 1};
    }
    return parts;
}

double joinDate(std::int64_t day, std::int64_t milliseconds)
{
    const auto days = static_cast<double>(day);
    const double fraction = static_cast<double>(milliseconds) / static_cast<double>(millisecondsPerDay);
    return day < 0 ? days - fraction : days + fraction;
}

CivilDay civilFromDate(double date)
{
    if (std::isnan(date)) {
        return {};
    }
    return civilFromDays(static_cast<std::int64_t>(std::trunc(
        std::clamp(date, static_cast<double>(firstAutomationDay), static_cast<double>(lastAutomationDay)))));
}

double currentDate()
{
    const auto now = std::chrono::system_clock::now();
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &seconds);
#else
    localtime_r(&seconds, &local);
#endif
    const std::int64_t day = daysFromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday});
    const std::int64_t time =
        ((local.tm_hour * 60 + local.tm_min) * 60 + std::min(local.tm_sec, 59)) * std::int64_t{1000};
    return joinDate(day, time + milliseconds);
}

} // namespace zul
