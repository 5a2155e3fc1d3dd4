#include "host/database/Decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zul::host {

namespace {

constexpr std::uint8_t largestScale = 28;

// words = words × 10 + digit; false, and unchanged, when that exceeds 96 bits.
bool appendDigit(std::array<std::uint32_t, 3>& words, unsigned digit)
{
    std::array<std::uint32_t, 3> next{};
    std::uint64_t carry = digit;
    for (std::size_t i = 0; i < words.size(); ++i) {
        carry += std::uint64_t{words[i]} * 10;
        next[i] = static_cast<std::uint32_t>(carry);
        carry >>= 32U;
    }
    if (carry != 0) {
        return false;
    }
    words = next;
    return true;
}

} // namespace

std::optional<DecimalParts> decimalFromText(std::string_view text)
{
    DecimalParts result;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        result.negative = text.front() == '-';
        text.remove_prefix(1);
    }
    bool fraction = false;
    bool full = false;
    bool any = false;
    for (const char c : text) {
        if (c == '.' && !fraction) {
            fraction = true;
            continue;
        }
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        any = true;
        if (full) {
            continue;
        }
        if (fraction && result.scale == largestScale) {
            full = true;
            continue;
        }
        if (!appendDigit(result.words, static_cast<unsigned>(c - '0'))) {
            if (!fraction) {
                return std::nullopt;
            }
            full = true;
            continue;
        }
        if (fraction) {
            ++result.scale;
        }
    }
    if (!any) {
        return std::nullopt;
    }
    return result;
}

std::string decimalToText(const DecimalParts& decimal)
{
    std::array<std::uint32_t, 3> words = decimal.words;
    std::string text;
    while (words[0] != 0 || words[1] != 0 || words[2] != 0 || text.size() <= decimal.scale) {
        std::uint64_t rest = 0;
        for (std::size_t i = words.size(); i-- > 0;) {
            rest = (rest << 32U) | words[i];
            words[i] = static_cast<std::uint32_t>(rest / 10);
            rest %= 10;
        }
        text += static_cast<char>('0' + rest);
        if (decimal.scale != 0 && text.size() == decimal.scale) {
            text += '.';
        }
        if (text.size() > 64) {
            break;
        }
    }
    if (text.back() == '.') {
        text += '0';
    }
    if (decimal.negative) {
        text += '-';
    }
    std::reverse(text.begin(), text.end());
    return text;
}

double decimalToDouble(std::string_view text)
{
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::string decimalText(double value)
{
    if (!std::isfinite(value)) {
        return "0";
    }
    std::array<char, 400> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
    return {buffer.data(), result.ptr};
}

} // namespace zul::host
