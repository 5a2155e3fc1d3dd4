// Decimal numbers: 96 bits, and up to 28 places behind the point.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <wtypes.h>

namespace zul::runtime {

__extension__ typedef __int128 Wide;           // every integer type of automation, and more
__extension__ typedef unsigned __int128 UWide; // 96 bits of a decimal number

struct Decimal
{
    UWide mantissa = 0; // below 2^96
    unsigned scale = 0; // 0 … 28
    bool negative = false;

    // No more than 28 places, and a sign that is plus or minus.
    static bool isWellFormed(const DECIMAL& storage) noexcept;
    static Decimal fromStorage(const DECIMAL& storage) noexcept;
    static Decimal fromCurrency(CY currency) noexcept;
    static Decimal fromInteger(Wide value) noexcept;
    // "-12.5e3": a sign, digits, a point, an exponent. Places that do not fit are rounded away; nothing when
    // the number itself does not fit.
    static std::optional<Decimal> fromPlain(std::string_view text) noexcept;
    // The digits that a real number is good for, 15 or 7, with as few places as hold them.
    static std::optional<Decimal> fromDouble(double value, int digits) noexcept;

    // Takes off the zeros at the end of the places.
    void dropZeros() noexcept;

    // Every bit of it counts: what looks like a half in 15 digits seldom is one.
    static std::optional<CY> currencyFromDouble(double value) noexcept;

    DECIMAL toStorage() const noexcept; // wReserved is 0
    std::optional<CY> toCurrency() const noexcept;
    double toDouble() const noexcept;
    // Rounded to the nearest, halves to the even one.
    Wide toInteger() const noexcept;
    // "-12.5", without zeros at the end.
    std::string toPlain() const;
};

} // namespace zul::runtime
