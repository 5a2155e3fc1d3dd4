// The values that are converted: chosen ones, and many that a small generator makes, the same on every platform.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <oleauto.h>

namespace differential {

// UTF-16 of a BSTR; empty for null.
std::u16string_view textOf(BSTR text) noexcept;
BSTR makeText(std::u16string_view text);

VARIANT empty(VARTYPE type) noexcept;
VARIANT fromInteger(VARTYPE type, std::int64_t value) noexcept;
VARIANT fromReal(double value, VARTYPE type = VT_R8) noexcept;
VARIANT fromFloat(float value) noexcept;
VARIANT fromDecimal(std::uint32_t high, std::uint64_t low, unsigned scale, bool negative) noexcept;
VARIANT fromText(std::u16string_view text);

// Numbers without pattern; the same after the same seed.
class Random
{
public:
    explicit Random(std::uint64_t seed) noexcept
        : m_state(seed)
    {}
    std::uint64_t next() noexcept;
    // 0 … limit - 1
    std::uint64_t below(std::uint64_t limit) noexcept { return next() % limit; }

private:
    std::uint64_t m_state;
};

// Every numeric type, Booleans, dates, and what is no value. The variants own nothing.
std::vector<VARIANT> plainValues();
// Numbers, dates, truth values and what is none of them.
std::vector<std::u16string> chosenTexts();
// Texts of a number's characters, in any order.
std::vector<std::u16string> numberLikeTexts(std::size_t count);
// Texts of a date's parts, in any order.
std::vector<std::u16string> dateLikeTexts(std::size_t count);

} // namespace differential
