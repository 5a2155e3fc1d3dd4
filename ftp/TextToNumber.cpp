#include "ftp/TextToNumber.h"

#include "ftp/FtpErrors.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

namespace zul::ftp {

namespace {

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// &H and &O texts are bit patterns: &HFFFF is -1.
std::optional<std::int16_t> fromPattern(std::string_view text)
{
    if (text.size() < 3 || text[0] != '&') {
        return std::nullopt;
    }
    int base = 0;
    if (text[1] == 'H' || text[1] == 'h') {
        base = 16;
    } else if (text[1] == 'O' || text[1] == 'o') {
        base = 8;
    } else {
        throw RunTimeError(TypeMismatch);
    }
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data() + 2, text.data() + text.size(), value, base);
    if (end != text.data() + text.size()) {
        throw RunTimeError(TypeMismatch);
    }
    if (error != std::errc() || value > std::numeric_limits<std::uint16_t>::max()) {
        throw RunTimeError(Overflow);
    }
    return static_cast<std::int16_t>(value);
}

/// The number in the form that the conversion to double reads: no group separators, a point, a plain E.
std::string normalised(std::string_view text, const NumberFormat& format)
{
    std::string number;
    bool digits = false;
    bool fraction = false;
    std::size_t i = 0;
    while (i < text.size()) {
        const std::string_view rest = text.substr(i);
        if (isDigit(text[i])) {
            digits = true;
            number += text[i++];
        } else if (!fraction && !format.decimalSeparator.empty() &&
                   rest.starts_with(format.decimalSeparator)) {
            fraction = true;
            number += '.';
            i += format.decimalSeparator.size();
        } else if (!fraction && digits && !format.groupSeparator.empty() &&
                   rest.starts_with(format.groupSeparator)) {
            i += format.groupSeparator.size();
        } else {
            break;
        }
    }
    if (!digits) {
        throw RunTimeError(TypeMismatch);
    }
    if (i < text.size()) {
        const char c = text[i++];
        if (c != 'e' && c != 'E' && c != 'd' && c != 'D') {
            throw RunTimeError(TypeMismatch);
        }
        number += 'e';
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
            number += text[i++];
        }
        if (i == text.size()) {
            throw RunTimeError(TypeMismatch);
        }
        for (; i < text.size(); ++i) {
            if (!isDigit(text[i])) {
                throw RunTimeError(TypeMismatch);
            }
            number += text[i];
        }
    }
    return number;
}

/// Whether a number in that form that no double can hold is too large for it; else it is too small.
bool isLarge(std::string_view number)
{
    const std::size_t e = std::min(number.find('e'), number.size());
    const std::string_view digits = number.substr(0, e);
    const auto point = static_cast<long long>(std::min(digits.find('.'), digits.size()));
    const auto first = static_cast<long long>(std::min(digits.find_first_not_of("0."), digits.size()));
    std::string_view power = number.substr(std::min(e + 1, number.size()));
    if (power.starts_with('+')) {
        power.remove_prefix(1);
    }
    long exponent = 0; // of more digits than it can hold: more than all digits of the number make up for
    const auto read = std::from_chars(power.data(), power.data() + power.size(), exponent);
    if (read.ec == std::errc::result_out_of_range) {
        return !power.starts_with('-');
    }
    return exponent > first - point;
}

} // namespace

std::int16_t textToInt16(std::string_view text, const NumberFormat& format)
{
    text = withoutBlanks(text);
    if (const auto pattern = fromPattern(text)) {
        return *pattern;
    }

    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text = withoutBlanks(text.substr(1));
    }
    const std::string number = normalised(text, format);

    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // Too small is as good as 0, too large is too large.
        if (isLarge(number)) {
            throw RunTimeError(Overflow);
        }
        value = 0;
    } else if (result.ec != std::errc()) {
        throw RunTimeError(TypeMismatch);
    }
    value = std::nearbyint(negative ? -value : value); // the default rounding is half to even
    if (value < std::numeric_limits<std::int16_t>::min() ||
        value > std::numeric_limits<std::int16_t>::max()) {
        throw RunTimeError(Overflow);
    }
    return static_cast<std::int16_t>(value);
}

} // namespace zul::ftp
