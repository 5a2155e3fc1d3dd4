#include "automation/runtime/Decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace zul::runtime {

namespace {

constexpr unsigned maxScale = 28;
constexpr UWide maxMantissa = (UWide{1} << 96) - 1;

// Divides by a power of ten, rounding to the nearest and halves to the even one.
UWide dividedByPower(UWide value, unsigned power) noexcept
{
    if (power == 0) {
        return value;
    }
    // All digits but the last one go unrounded; what they were decides only whether it is exactly a half.
    bool rest = false;
    for (; power > 1; --power) {
        rest = rest || value % 10 != 0;
        value /= 10;
    }
    const auto last = static_cast<unsigned>(value % 10);
    value /= 10;
    const bool up = last > 5 || (last == 5 && (rest || (value & 1) != 0));
    return up ? value + 1 : value;
}

} // namespace

bool Decimal::isWellFormed(const DECIMAL& storage) noexcept
{
    return storage.scale <= maxScale && (storage.sign & ~DECIMAL_NEG) == 0;
}

Decimal Decimal::fromStorage(const DECIMAL& storage) noexcept
{
    return {UWide{storage.Hi32} << 64 | storage.Lo64, std::min<unsigned>(storage.scale, maxScale),
            (storage.sign & DECIMAL_NEG) != 0};
}

Decimal Decimal::fromCurrency(CY currency) noexcept
{
    Decimal result = fromInteger(currency.int64);
    result.scale = 4;
    return result;
}

Decimal Decimal::fromInteger(Wide value) noexcept
{
    Decimal result;
    result.negative = value < 0;
    result.mantissa = result.negative ? UWide{0} - static_cast<UWide>(value) : static_cast<UWide>(value);
    return result;
}

std::optional<Decimal> Decimal::fromPlain(std::string_view text) noexcept
{
    Decimal result;
    if (!text.empty() && text.front() == '-') {
        result.negative = true;
        text.remove_prefix(1);
    }
    int exponent = 0;
    const std::size_t e = text.find('e');
    if (e != std::string_view::npos) {
        std::string_view digits = text.substr(e + 1);
        if (!digits.empty() && digits.front() == '+') {
            digits.remove_prefix(1);
        }
        if (std::from_chars(digits.data(), digits.data() + digits.size(), exponent).ec != std::errc()) {
            exponent = digits.front() == '-' ? -1000 : 1000;
        }
        exponent = std::clamp(exponent, -1000, 1000);
        text = text.substr(0, e);
    }
    const std::size_t point = std::min(text.find('.'), text.size());
    // Places behind the point of the digits read so far; below zero: zeros that are missing before it.
    long places = -static_cast<long>(point) - exponent;
    bool full = false;
    int firstDropped = -1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '.') {
            continue;
        }
        const auto digit = static_cast<unsigned>(text[i] - '0');
        full = full || result.mantissa > (maxMantissa - digit) / 10;
        if (full) {
            firstDropped = firstDropped < 0 ? static_cast<int>(digit) : firstDropped;
            continue;
        }
        result.mantissa = result.mantissa * 10 + digit;
        ++places;
    }
    if (result.mantissa == 0) {
        return Decimal{};
    }
    for (; places < 0; ++places) {
        if (full || result.mantissa > maxMantissa / 10) {
            return std::nullopt;
        }
        result.mantissa *= 10;
    }
    if (firstDropped >= 5 && result.mantissa < maxMantissa) {
        ++result.mantissa;
    }
    if (places > static_cast<long>(maxScale)) {
        result.mantissa = places - static_cast<long>(maxScale) > 40
                              ? 0
                              : dividedByPower(result.mantissa, static_cast<unsigned>(places) - maxScale);
        places = static_cast<long>(maxScale);
    }
    result.scale = static_cast<unsigned>(places);
    result.negative = result.negative && result.mantissa != 0;
    return result;
}

std::optional<Decimal> Decimal::fromDouble(double value, int digits) noexcept
{
    char text[32];
    const std::to_chars_result end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, digits - 1);
    if (value != value || value > std::numeric_limits<double>::max() ||
        value < std::numeric_limits<double>::lowest()) {
        return std::nullopt;
    }
    std::optional<Decimal> result = fromPlain({text, static_cast<std::size_t>(end.ptr - text)});
    if (result) {
        result->dropZeros();
    }
    return result;
}

void Decimal::dropZeros() noexcept
{
    for (; scale > 0 && mantissa % 10 == 0; --scale) {
        mantissa /= 10;
    }
}

DECIMAL Decimal::toStorage() const noexcept
{
    DECIMAL storage{};
    storage.Hi32 = static_cast<ULONG>(mantissa >> 64);
    storage.Lo64 = static_cast<ULONGLONG>(mantissa);
    storage.scale = static_cast<BYTE>(scale);
    storage.sign = negative ? DECIMAL_NEG : BYTE{0};
    return storage;
}

std::optional<CY> Decimal::toCurrency() const noexcept
{
    UWide value = mantissa;
    if (scale > 4) {
        value = dividedByPower(value, scale - 4);
    }
    for (unsigned i = scale; i < 4; ++i) {
        value *= 10; // 96 bits and four digits more still fit
    }
    const UWide limit = UWide{std::numeric_limits<std::uint64_t>::max() / 2} + (negative ? 1 : 0);
    if (value > limit) {
        return std::nullopt;
    }
    CY currency;
    currency.int64 = static_cast<LONGLONG>(negative ? -static_cast<Wide>(value) : static_cast<Wide>(value));
    return currency;
}

std::optional<CY> Decimal::currencyFromDouble(double value) noexcept
{
    int exponent = 0;
    const double fraction = std::frexp(std::fabs(value), &exponent);
    if (!std::isfinite(value) || exponent > 63) {
        return std::nullopt;
    }
    // 53 bits of the number and 14 of the factor: nothing is lost.
    UWide scaled = static_cast<UWide>(std::ldexp(fraction, 53)) * 10000;
    const int places = 53 - exponent;
    if (places >= 100) {
        scaled = 0;
    } else if (places > 0) {
        const UWide rest = scaled & ((UWide{1} << places) - 1);
        const UWide half = UWide{1} << (places - 1);
        scaled >>= places;
        scaled += rest > half || (rest == half && (scaled & 1) != 0) ? 1 : 0;
    } else {
        scaled <<= -places;
    }
    Decimal result;
    result.mantissa = scaled;
    result.scale = 4;
    result.negative = value < 0;
    return result.toCurrency();
}

double Decimal::toDouble() const noexcept
{
    if (mantissa == 0) {
        return 0; // there is no negative zero
    }
    // Through the digits, so that the nearest Double comes out.
    char text[48];
    char* end = text + sizeof text;
    char* begin = end;
    UWide rest = mantissa;
    do {
        *--begin = static_cast<char>('0' + static_cast<int>(rest % 10));
        rest /= 10;
    } while (rest != 0);
    std::string plain(begin, end);
    plain += 'e';
    plain += std::to_string(-static_cast<int>(scale));
    double value = 0;
    std::from_chars(plain.data(), plain.data() + plain.size(), value);
    return negative ? -value : value;
}

Wide Decimal::toInteger() const noexcept
{
    const auto value = static_cast<Wide>(dividedByPower(mantissa, scale));
    return negative ? -value : value;
}

std::string Decimal::toPlain() const
{
    std::string digits;
    for (UWide rest = mantissa; rest != 0 || digits.size() <= scale; rest /= 10) {
        digits.push_back(static_cast<char>('0' + static_cast<int>(rest % 10)));
    }
    std::reverse(digits.begin(), digits.end());
    if (scale > 0) {
        digits.insert(digits.size() - scale, 1, '.');
        digits.erase(digits.find_last_not_of('0') + 1);
        if (digits.back() == '.') {
            digits.pop_back();
        }
    }
    return (negative && digits != "0" ? "-" : "") + digits;
}

} // namespace zul::runtime
