// Texts read as dates.
#include <array>
#include <ctime>
#include <vector>

#include "automation/runtime/Calendar.h"
#include "automation/runtime/VariantText.h"
#include "base/CaseFold.h"
#include "base/Utf8.h"

namespace zul::runtime {

namespace {

enum class Link
{
    None,  // blanks and commas, or the end
    Date,  // "/", "-", "." in some countries
    Colon, // of a time
    Dot    // of a time where it is no sign of a date
};

// A number of the text, or the name of a month.
struct Part
{
    long value = 0;
    bool isMonth = false;
    Link next = Link::None; // to the next part
};

enum class Half
{
    None,
    Am,
    Pm
};

bool isLetter(char16_t c) noexcept
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= 0xC0 && c <= 0x24F);
}

// The place of a word among names, from 1; 0 where it is none of them.
template <std::size_t N>
long placeOf(std::u16string_view word, const std::array<std::u16string_view, N>& names) noexcept
{
    for (std::size_t i = 0; i < N; ++i) {
        if (equalNames(word, names[i])) {
            return static_cast<long>(i) + 1;
        }
    }
    return 0;
}

class DateReader
{
public:
    DateReader(std::u16string_view text, const LocaleStyle& style)
        : m_text(text.substr(0, text.find(u'\0')))
        , m_style(style)
    {}

    std::optional<DATE> read()
    {
        if (!readParts() || !takeTime()) {
            return std::nullopt;
        }
        if (m_parts.empty()) {
            return m_timeOfDay;
        }
        const std::optional<Day> day = dayFromParts();
        if (!day) {
            return std::nullopt;
        }
        const auto days = static_cast<double>(dayNumber(*day));
        const double time = m_timeOfDay.value_or(0.0);
        // The time of day counts away from the day, also before day 0.
        return days < 0 ? days - time : days + time;
    }

private:
    // --- the text into parts ---

    bool readParts()
    {
        while (m_at < m_text.size()) {
            const char16_t c = m_text[m_at];
            m_comma = m_comma && isBlank(c);
            const bool read = isDigit(c) ? readNumber() : isLetter(c) ? readWord() : readSign(c);
            if (!read) {
                return false;
            }
        }
        return !m_parts.empty() && !m_open && !m_comma;
    }

    bool readNumber()
    {
        Part part;
        for (; m_at < m_text.size() && isDigit(m_text[m_at]); ++m_at) {
            part.value = part.value * 10 + (m_text[m_at] - u'0');
            if (part.value > 9999) {
                return false;
            }
        }
        m_open = false;
        m_parts.push_back(part);
        return true;
    }

    bool readWord()
    {
        const std::size_t begin = m_at;
        while (m_at < m_text.size() && isLetter(m_text[m_at])) {
            ++m_at;
        }
        const std::u16string_view word = m_text.substr(begin, m_at - begin);
        const bool attached = begin > 0 && isDigit(m_text[begin - 1]);
        // "6p", "6:00 p"; elsewhere a letter alone is too little.
        const bool mayBeShort =
            attached || (m_parts.size() > 1 && isTimeLink(m_parts[m_parts.size() - 2].next));
        if (equalNames(word, u"am") || (mayBeShort && equalNames(word, u"a"))) {
            return takeHalf(Half::Am);
        }
        if (equalNames(word, u"pm") || (mayBeShort && equalNames(word, u"p"))) {
            return takeHalf(Half::Pm);
        }
        // Between a day and its time, as dates are written for machines.
        if (attached && equalNames(word, u"t") && m_parts.size() == 3) {
            return true;
        }
        Part part;
        for (const LocaleWords* const words : {m_style.words, &englishWords()}) {
            for (const auto* const names : {&words->months, &words->shortMonths}) {
                part.value = part.value != 0 ? part.value : placeOf(word, *names);
            }
            if (part.value == 0 &&
                (placeOf(word, words->days) != 0 || placeOf(word, words->shortDays) != 0)) {
                return !m_open; // the day of the week tells nothing new
            }
        }
        if (part.value == 0) {
            return false;
        }
        if (m_at + 1 < m_text.size() && m_text[m_at] == u'.' && isBlank(m_text[m_at + 1])) {
            ++m_at; // "dec. 25"
        }
        part.isMonth = true;
        m_open = false;
        m_parts.push_back(part);
        return true;
    }

    // The half of the day stands behind the hour or behind the whole time.
    bool takeHalf(Half half)
    {
        if (m_half != Half::None || m_parts.empty() || m_open || m_parts.back().isMonth ||
            (m_parts.size() > 1 && m_parts[m_parts.size() - 2].next == Link::Date)) {
            return false;
        }
        m_half = half;
        m_halfAt = m_parts.size() - 1;
        return true;
    }

    bool readSign(char16_t c)
    {
        ++m_at;
        if (isBlank(c)) {
            return true;
        }
        if (c == u',') {
            m_comma = !m_parts.empty();
            return true;
        }
        const Link link = c == u'/' || c == u'-' || (c == u'.' && m_style.dotInDates()) ? Link::Date
                          : c == u'.'                                                   ? Link::Dot
                          : c == u':'                                                   ? Link::Colon
                                                                                        : Link::None;
        if (link == Link::None || m_parts.empty()) {
            return false;
        }
        // Signs may stand twice, but a day has no more than two of them.
        Link& next = m_parts.back().next;
        m_dateSigns += link == Link::Date ? 1 : 0;
        if (m_dateSigns > 2 || (next != Link::None && isTimeLink(next) != isTimeLink(link))) {
            return false;
        }
        next = next == Link::Colon ? next : link;
        m_open = true;
        return true;
    }

    // --- the time out of the parts ---

    static bool isTimeLink(Link link) noexcept { return link == Link::Colon || link == Link::Dot; }

    static bool isTime(const std::vector<Part>& parts) noexcept
    {
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (parts[i].value >= (i == 0 ? 24 : 60)) {
                return false;
            }
        }
        return true;
    }

    std::size_t endOfRun(std::size_t begin) const noexcept
    {
        while (isTimeLink(m_parts[begin].next)) {
            ++begin;
        }
        return begin + 1;
    }

    // "25.12.2003" is no time, so it is a day where dots do not part days too.
    void relinkDottedDay(std::size_t begin, std::size_t end)
    {
        const bool dotted =
            m_parts[begin].next == Link::Dot && end - begin == 3 && m_parts[begin + 1].next == Link::Dot;
        if (dotted && !isTime({m_parts.begin() + static_cast<std::ptrdiff_t>(begin),
                               m_parts.begin() + static_cast<std::ptrdiff_t>(end)})) {
            m_parts[begin].next = Link::Date;
            m_parts[begin + 1].next = Link::Date;
        }
    }

    // Takes the time away from the parts; false where there are two, or one that is none. It stands first or last.
    bool takeTime()
    {
        std::size_t begin = m_parts.size();
        std::size_t end = begin;
        for (std::size_t i = 0; i < m_parts.size(); i = std::max(endOfRun(i), i + 1)) {
            relinkDottedDay(i, endOfRun(i));
            if (endOfRun(i) == i + 1) {
                continue;
            }
            if (begin != m_parts.size()) {
                return false;
            }
            begin = i;
            end = endOfRun(i);
        }
        if (begin == m_parts.size() && m_half != Half::None) {
            begin = m_halfAt;
            end = begin + 1;
        }
        if (begin == m_parts.size()) {
            return true;
        }
        const std::vector<Part> time(m_parts.begin() + static_cast<std::ptrdiff_t>(begin),
                                     m_parts.begin() + static_cast<std::ptrdiff_t>(end));
        const bool atEdge = begin == 0 || end == m_parts.size();
        if (!atEdge || time.size() > 3 || !isTime(time) || (m_half != Half::None && m_halfAt + 1 != end)) {
            return false;
        }
        long hours = time[0].value;
        hours += m_half == Half::Pm && hours < 12 ? 12 : 0;
        hours -= m_half == Half::Am && hours == 12 ? 12 : 0;
        m_timeOfDay = static_cast<double>(hours) / 24.0;
        *m_timeOfDay += time.size() > 1 ? static_cast<double>(time[1].value) / 1440.0 : 0.0;
        *m_timeOfDay += time.size() > 2 ? static_cast<double>(time[2].value) / 86400.0 : 0.0;
        m_parts.erase(m_parts.begin() + static_cast<std::ptrdiff_t>(begin),
                      m_parts.begin() + static_cast<std::ptrdiff_t>(end));
        return true;
    }

    // --- the day out of what is left ---

    static long fullYear(long year) noexcept
    {
        return year < 50 ? 2000 + year : year < 100 ? 1900 + year : year;
    }

    static long thisYear() noexcept
    {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        localtime_r(&now, &local);
        return local.tm_year + 1900;
    }

    // The parts in the order that the letters D, M and Y say.
    std::optional<Day> tryOrder(std::string_view order) const noexcept
    {
        Day day{0, 0, 1};
        bool hasYear = false;
        for (std::size_t i = 0; i < order.size(); ++i) {
            const Part& part = m_parts[i];
            if (part.isMonth != (order[i] == 'M') && m_monthAt < m_parts.size()) {
                return std::nullopt;
            }
            if (order[i] == 'D') {
                day.day = part.value;
            } else if (order[i] == 'M') {
                day.month = part.value;
            } else {
                day.year = fullYear(part.value);
                hasYear = true;
            }
        }
        day.year = hasYear ? day.year : thisYear();
        return isDay(day) ? std::optional(day) : std::nullopt;
    }

    std::optional<Day> dayFromParts()
    {
        m_monthAt = m_parts.size();
        for (std::size_t i = 0; i < m_parts.size(); ++i) {
            if (m_parts[i].isMonth) {
                if (m_monthAt < m_parts.size()) {
                    return std::nullopt; // two months
                }
                m_monthAt = i;
            }
        }
        const bool named = m_monthAt < m_parts.size();
        const DateOrder order = m_style.dateOrder();
        std::array<std::string_view, 4> orders;
        if (m_parts.size() == 3) {
            orders = named ? std::array<std::string_view, 4>{"MDY", "DMY", "YMD", "YDM"}
                     : order == DateOrder::DayMonthYear
                         ? std::array<std::string_view, 4>{"DMY", "MDY", "YMD", "YDM"}
                     : order == DateOrder::MonthDayYear
                         ? std::array<std::string_view, 4>{"MDY", "YMD", "DMY", "YDM"}
                         : std::array<std::string_view, 4>{"YMD", "MDY", "DMY", "YDM"};
        } else if (m_parts.size() == 2) {
            orders = order == DateOrder::DayMonthYear
                         ? std::array<std::string_view, 4>{"DM", "MD", "MY", "YM"}
                         : std::array<std::string_view, 4>{"MD", "DM", "MY", "YM"};
        } else {
            return std::nullopt;
        }
        for (const std::string_view tried : orders) {
            if (const std::optional<Day> day = tryOrder(tried)) {
                return day;
            }
        }
        return std::nullopt;
    }

    std::u16string_view m_text;
    const LocaleStyle& m_style;
    std::size_t m_at = 0;
    std::vector<Part> m_parts;
    bool m_open = false;  // a sign waits for the next part
    bool m_comma = false; // a comma waits for more
    int m_dateSigns = 0;
    Half m_half = Half::None;
    std::size_t m_halfAt = 0;
    std::optional<double> m_timeOfDay;
    std::size_t m_monthAt = 0;
};

} // namespace

std::optional<DATE> readDate(std::u16string_view text, const LocaleStyle& style)
{
    return DateReader(text, style).read();
}

} // namespace zul::runtime
