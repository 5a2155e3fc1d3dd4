#include "grid/CellText.h"

#include "base/LocaleInput.h"

#include <algorithm>
#include <cmath>

namespace zul {

namespace {

const QDate oleEpoch(1899, 12, 30);
constexpr double firstOleDay = -657434.0;  // 0100-01-01
constexpr double endOfOleDays = 2958466.0; // 10000-01-01
constexpr int secondsPerDay = 86400;
constexpr long millisecondsPerDay = secondsPerDay * 1000L;

bool isPlainIntegral(double value)
{
    return std::floor(value) == value && std::fabs(value) < 1e15;
}

} // namespace

DateAndTime fromOleDays(double value)
{
    if (!(value > firstOleDay - 1.0 && value < endOfOleDays)) {
        return {};
    }
    // Before day 0 the fraction still counts forward from midnight: -1.25 is 1899-12-29, six in the morning.
    double day = std::trunc(value);
    auto milliseconds = std::lround(std::fabs(value - day) * millisecondsPerDay);
    if (milliseconds >= millisecondsPerDay) {
        milliseconds = 0;
        day += 1.0;
    }
    // To the nearest second, but not over midnight: a server's last moment of a day, 23:59:59.997, is of that day.
    const int seconds = std::min(static_cast<int>((milliseconds + 500) / 1000), secondsPerDay - 1);
    return {oleEpoch.addDays(static_cast<qint64>(day)), QTime(0, 0).addSecs(seconds)};
}

CellText::CellText(const QLocale& locale)
    : m_locale(locale)
{
    m_locale.setNumberOptions(QLocale::OmitGroupSeparator);
    // Two-digit years would make a birth date of 1925 look like one of 2025.
    m_dateFormat = m_locale.dateFormat(QLocale::ShortFormat);
    if (m_dateFormat.contains(QLatin1String("yy")) && !m_dateFormat.contains(QLatin1String("yyyy"))) {
        m_dateFormat.replace(QLatin1String("yy"), QLatin1String("yyyy"));
    }
    m_asciiIntegers =
        m_locale.zeroDigit() == QLatin1String("0") && m_locale.negativeSign() == QLatin1String("-");
}

QString CellText::integer(int64_t value) const
{
    return m_locale.toString(static_cast<qlonglong>(value));
}

QString CellText::real(double value) const
{
    if (isPlainIntegral(value)) {
        return m_locale.toString(static_cast<qlonglong>(value));
    }
    return m_locale.toString(value, 'g', 15);
}

QString CellText::date(double value) const
{
    const DateAndTime moment = fromOleDays(value);
    if (!moment.date.isValid()) {
        return real(value);
    }
    const bool midnight = moment.time == QTime(0, 0);
    if (!midnight && moment.date == oleEpoch) {
        return m_locale.toString(moment.time, QLocale::ShortFormat);
    }
    const QString day = m_locale.toString(moment.date, m_dateFormat);
    return midnight ? day : day + QLatin1Char(' ') + m_locale.toString(moment.time, QLocale::ShortFormat);
}

QString CellText::boolean(bool value) const
{
    if (m_locale.language() == QLocale::Italian) {
        return value ? QStringLiteral("Vero") : QStringLiteral("Falso");
    }
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

bool CellText::isNumeric(QStringView text) const
{
    return zul::isNumeric(text, m_locale);
}

} // namespace zul
