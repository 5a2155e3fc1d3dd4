// Reading and writing numbers and truth values.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "automation/runtime/VariantText.h"
#include "base/CaseFold.h"
#include "base/Utf8.h"

namespace zul::runtime {

namespace {

class NumberReader
{
public:
    NumberReader(std::u16string_view text, const LocaleStyle& style) noexcept
        : m_text(text.substr(0, text.find(u'\0')))
        , m_style(style)
    {}

    std::optional<NumberText> read()
    {
        readFront();
        if (peek() == u'&' && !m_currency) {
            return readBits() && readEnd(false) ? std::optional(NumberText{{}, m_bits}) : std::nullopt;
        }
        if (!readDigits() || !readEnd(true)) {
            return std::nullopt;
        }
        NumberText number;
        number.plain = m_frontMinus || m_endMinus || m_bracket ? "-" : "";
        number.plain += m_mantissa;
        if (!m_exponent.empty()) {
            number.plain += 'e';
            number.plain += m_exponent;
        }
        return number;
    }

private:
    char16_t peek() const noexcept { return m_at < m_text.size() ? m_text[m_at] : u'\0'; }

    // A blank stands for the unbreakable one that some countries part groups with.
    bool isGroupSign(char16_t c) const noexcept
    {
        return c == m_style.thousands || (m_style.thousands == 0xA0 && (c == u' ' || c == 0x202F));
    }

    bool takeCurrency() noexcept
    {
        if (m_text.substr(m_at, m_style.currency.size()) != m_style.currency) {
            return false;
        }
        m_at += m_style.currency.size();
        return true;
    }

    // What may stand before the digits, each once and in any order.
    void readFront() noexcept
    {
        for (;;) {
            const char16_t c = peek();
            if (isBlank(c)) {
                ++m_at;
            } else if (c == u'-' && !m_frontMinus) {
                m_frontMinus = true;
                ++m_at;
            } else if (c == u'+' && !m_frontPlus) {
                m_frontPlus = true;
                ++m_at;
            } else if (c == u'(' && !m_bracket) {
                m_bracket = true;
                ++m_at;
            } else if (m_currency || !takeCurrency()) {
                return;
            } else {
                m_currency = true;
            }
        }
    }

    bool readBits() noexcept
    {
        const char16_t base = m_at + 1 < m_text.size() ? m_text[m_at + 1] : u'\0';
        const unsigned shift = base == u'H' || base == u'h' ? 4 : base == u'O' || base == u'o' ? 3 : 0;
        m_at += 2;
        const std::size_t begin = m_at;
        std::uint64_t value = 0;
        for (; shift != 0 && m_at < m_text.size(); ++m_at) {
            const char16_t c = m_text[m_at];
            const char16_t small = static_cast<char16_t>(c | 0x20);
            const unsigned digit = isDigit(c)                       ? static_cast<unsigned>(c - u'0')
                                   : small >= u'a' && small <= u'f' ? static_cast<unsigned>(small - u'a' + 10)
                                                                    : 16U;
            if (digit >> shift != 0) {
                break;
            }
            if (value >> (64 - shift) != 0) {
                return false;
            }
            value = value << shift | digit;
        }
        m_bits = value;
        return m_at > begin;
    }

    // "e", its signs and at least one digit; more digits follow by themselves.
    bool readExponent()
    {
        ++m_at;
        bool plus = false;
        bool minus = false;
        for (; (peek() == u'+' && !plus) || (peek() == u'-' && !minus); ++m_at) {
            (peek() == u'+' ? plus : minus) = true;
        }
        m_exponent = minus ? "-" : "";
        while (isGroupSign(peek())) {
            ++m_at;
        }
        if (!isDigit(peek())) {
            return false;
        }
        for (; isDigit(peek()); ++m_at) {
            m_exponent.push_back(static_cast<char>(peek()));
        }
        return true;
    }

    bool readDigits()
    {
        bool point = false;
        bool digits = false;
        for (const std::size_t begin = m_at; m_at < m_text.size();) {
            const char16_t c = m_text[m_at];
            if (isDigit(c)) {
                m_mantissa.push_back(static_cast<char>(c));
                digits = true;
                ++m_at;
            } else if (c == m_style.decimal && !point && m_exponent.empty()) {
                m_mantissa += digits ? "." : "0.";
                point = true;
                ++m_at;
            } else if ((c == u'e' || c == u'E') && m_exponent.empty() && !m_currency) {
                if (!readExponent()) {
                    return false;
                }
            } else if (isGroupSign(c) && m_at > begin && followsPart()) {
                ++m_at;
            } else {
                break;
            }
        }
        if (m_mantissa.ends_with('.')) {
            m_mantissa.pop_back(); // "5," is five
        }
        return digits;
    }

    // A blank as a group sign must not swallow those at the end.
    bool followsPart() const noexcept
    {
        return !isBlank(peek()) || (m_at + 1 < m_text.size() && isDigit(m_text[m_at + 1]));
    }

    // What may stand behind the digits. A sign that stood before them may not come again.
    bool readEnd(bool groups) noexcept
    {
        bool closed = false;
        while (m_at < m_text.size()) {
            const char16_t c = peek();
            if ((c == u'-' && m_frontMinus) || (c == u'+' && m_frontPlus) || (c == u')' && !m_bracket)) {
                return false;
            }
            m_endMinus = m_endMinus || c == u'-';
            closed = closed || c == u')';
            if (isBlank(c) || c == u'-' || c == u'+' || c == u')' || (groups && isGroupSign(c))) {
                ++m_at;
            } else if (!takeCurrency()) {
                return false;
            }
        }
        return closed == m_bracket;
    }

    std::u16string_view m_text;
    const LocaleStyle& m_style;
    std::size_t m_at = 0;
    bool m_frontMinus = false;
    bool m_frontPlus = false;
    bool m_endMinus = false;
    bool m_bracket = false;
    bool m_currency = false;
    std::string m_mantissa;
    std::string m_exponent;
    std::uint64_t m_bits = 0;
};

} // namespace

std::optional<NumberText> readNumber(std::u16string_view text, const LocaleStyle& style)
{
    return NumberReader(text, style).read();
}

std::string plainReal(double value, int digits)
{
    if (!std::isfinite(value)) {
        return std::isnan(value) ? "NAN" : value < 0 ? "-INF" : "INF";
    }
    if (value == 0.0) {
        return "0";
    }
    // So many digits that what comes behind them decides no half.
    constexpr int enough = 40;
    char text[64];
    const std::to_chars_result end =
        std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific, enough);
    const std::string_view all(text, static_cast<std::size_t>(end.ptr - text));
    const std::size_t e = all.find('e');
    int exponent = 0;
    std::from_chars(all.data() + e + (all[e + 1] == '+' ? 2 : 1), all.data() + all.size(), exponent);
    std::string number(1, all[0]);
    number += all.substr(2, static_cast<std::size_t>(digits) - 1);

    if (all[static_cast<std::size_t>(digits) + 1] >= '5') {
        std::size_t i = number.find_last_not_of('9');
        if (i == std::string::npos) {
            number.insert(number.begin(), '0');
            ++exponent;
            i = 0;
        }
        ++number[i];
        number.resize(i + 1);
    }
    number.resize(number.find_last_not_of('0') + 1);

    std::string result = value < 0 ? "-" : "";
    const auto length = static_cast<int>(number.size());
    if (exponent < -4 || exponent >= digits) {
        result += number[0];
        result += length > 1 ? "." : "";
        result += number.substr(1);
        result += exponent < 0 ? "e-" : "e+";
        result += std::abs(exponent) < 10 ? "0" : "";
        result += std::to_string(std::abs(exponent));
    } else if (exponent < 0) {
        result += "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + number;
    } else {
        number.resize(std::max(number.size(), static_cast<std::size_t>(exponent) + 1), '0');
        result += number.substr(0, static_cast<std::size_t>(exponent) + 1);
        result += length > exponent + 1 ? "." : "";
        result += length > exponent + 1 ? number.substr(static_cast<std::size_t>(exponent) + 1) : "";
    }
    return result;
}

std::u16string localNumber(std::string_view plain, const LocaleStyle& style)
{
    std::u16string text;
    for (const char c : plain) {
        text.push_back(c == '.'   ? style.decimal
                       : c == 'e' ? u'E'
                                  : static_cast<char16_t>(static_cast<unsigned char>(c)));
    }
    return text;
}

std::optional<bool> readTruth(std::u16string_view text, const LocaleStyle& style, bool localized)
{
    if (equalNames(text, u"True") || text == u"#TRUE#" || (localized && equalNames(text, style.words->yes))) {
        return true;
    }
    if (equalNames(text, u"False") || text == u"#FALSE#" ||
        (localized && equalNames(text, style.words->no))) {
        return false;
    }
    return std::nullopt;
}

} // namespace zul::runtime
