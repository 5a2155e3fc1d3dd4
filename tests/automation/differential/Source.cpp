#include "tests/automation/differential/Source.h"

#include "tests/automation/differential/Answer.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <set>

namespace differential {

namespace {

constexpr VARTYPE integerTypes[] = {VT_I1, VT_UI1, VT_I2,  VT_UI2,  VT_I4,   VT_UI4,
                                    VT_I8, VT_UI8, VT_INT, VT_UINT, VT_BOOL, VT_ERROR};

void addIntegers(std::vector<VARIANT>& values)
{
    for (const VARTYPE type : integerTypes) {
        for (const std::int64_t value :
             {0LL, 1LL, 2LL, 3LL, 10LL, 99LL, -1LL, -2LL, -7LL, 12345LL, -12345LL}) {
            values.push_back(fromInteger(type, value));
        }
        for (const unsigned bits : {7U, 8U, 15U, 16U, 31U, 32U, 53U, 63U}) {
            const auto edge = static_cast<std::int64_t>(std::uint64_t{1} << bits);
            for (const std::int64_t off : {-1LL, 0LL, 1LL}) {
                const auto sum = static_cast<std::int64_t>(static_cast<std::uint64_t>(edge) +
                                                           static_cast<std::uint64_t>(off));
                values.push_back(fromInteger(type, sum));
                values.push_back(fromInteger(
                    type, static_cast<std::int64_t>(std::uint64_t{0} - static_cast<std::uint64_t>(sum))));
            }
        }
    }
}

const double chosenReals[] = {
    0.0,
    -0.0,
    0.1,
    0.2,
    0.3,
    0.5,
    -0.5,
    1.5,
    2.5,
    3.5,
    -1.5,
    -2.5,
    0.49999999999999994,
    1.0 / 3,
    2.0 / 3,
    100.0,
    123456.789,
    -123456.789,
    1e5,
    1e10,
    1e14,
    1e15,
    1e16,
    1e20,
    1e28,
    1e29,
    1e30,
    1e100,
    1e300,
    -1e300,
    1e-5,
    1e-10,
    1e-28,
    1e-29,
    1e-30,
    1e-100,
    1e-300,
    5e-324,
    1.7976931348623157e308,
    3.4028234663852886e38,
    3.4028235677973366e38,
    3.5e38,
    1.17549435e-38,
    1e-45,
    123456789012345.0,
    1234567890123456.0,
    999999999999999.0,
    9999999999999999.0,
    0.000123456789012345,
    0.0001,
    0.00001,
    922337203685477.5807,
    922337203685477.5,
    922337203685478.0,
    -922337203685477.5808,
    -922337203685478.0,
    0.00005,
    0.00015,
    1.00005,
    1.00015,
    -1.00015,
    2.00025,
    0.00004999,
    79228162514264337593543950335.0,
    79228162514264337593543950336.0,
    7.9228162514264338e28,
    -657434.0,
    -657434.5,
    -657434.99999,
    -657435.0,
    -657435.5,
    2958465.0,
    2958465.5,
    2958465.99999999,
    2958466.0,
    37980.0,
    37980.25,
    37980.75,
    37980.9999999,
    37980.99999421,
    37980.99999422,
    -1.25,
    -1.75,
    -0.25,
    1.000011574,
    60.0,
    61.0,
    1.0 + 1.0 / 86400,
    2.0 - 0.4 / 86400,
    2.0 - 0.6 / 86400,
};

// Halves and near halves at the ends of the integer types.
void addEdges(std::vector<double>& reals)
{
    for (const unsigned bits : {7U, 8U, 15U, 16U, 31U, 32U, 53U, 63U, 64U}) {
        const double edge = std::ldexp(1.0, static_cast<int>(bits));
        for (const double off : {-1.5, -1.0, -0.5, -0.25, 0.0, 0.25, 0.5, 1.0}) {
            reals.push_back(edge + off);
            reals.push_back(-edge + off);
        }
        reals.push_back(std::nextafter(edge, 0.0));
        reals.push_back(std::nextafter(edge - 0.5, 0.0));
    }
}

void addRandomReals(std::vector<double>& reals)
{
    Random random(20031225);
    for (int i = 0; i < 220; ++i) {
        // Few decimal digits, as an operator types them.
        const auto digits = static_cast<double>(random.below(2000000)) - 1000000;
        reals.push_back(digits / std::pow(10.0, static_cast<double>(random.below(9))));
        // Sixteen or seventeen digits that end in a five which binary numbers hold exactly.
        const auto whole = static_cast<double>(random.below(1000000000000ULL));
        reals.push_back(whole + static_cast<double>(random.below(16)) / 16);
        reals.push_back(static_cast<double>(random.below(10000)) +
                        static_cast<double>(random.below(4096)) / 4096);
        // Any number.
        const std::uint64_t bits = (random.next() & 0x800FFFFFFFFFFFFFULL) | (943 + random.below(160)) << 52;
        double any = 0;
        std::memcpy(&any, &bits, sizeof any);
        reals.push_back(any);
    }
}

void addReals(std::vector<VARIANT>& values)
{
    std::vector<double> reals(std::begin(chosenReals), std::end(chosenReals));
    addEdges(reals);
    addRandomReals(reals);
    for (const double special :
         {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        reals.push_back(special);
    }
    for (std::size_t i = 0; i < reals.size(); ++i) {
        values.push_back(fromReal(reals[i]));
        values.push_back(fromFloat(static_cast<float>(reals[i])));
        if (std::fabs(reals[i]) < 4e6 || i % 8 == 0) {
            values.push_back(fromReal(reals[i], VT_DATE));
        }
    }
}

void addCurrencies(std::vector<VARIANT>& values)
{
    Random random(7);
    for (const std::int64_t value :
         {0LL, 1LL, -1LL, 4999LL, 5000LL, 5001LL, 10000LL, 15000LL, 25000LL, -5000LL, -15000LL, -25000LL,
          12345600LL, 100000LL, 9223372036854775807LL}) {
        values.push_back(fromInteger(VT_CY, value));
    }
    values.push_back(fromInteger(VT_CY, std::numeric_limits<std::int64_t>::min()));
    for (int i = 0; i < 250; ++i) {
        const auto bits = static_cast<std::int64_t>(random.next());
        values.push_back(fromInteger(VT_CY, bits >> random.below(60)));
    }
}

void addDecimals(std::vector<VARIANT>& values)
{
    Random random(14);
    constexpr std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
    values.push_back(fromDecimal(0, 0, 0, false));
    values.push_back(fromDecimal(0, 0, 0, true));
    values.push_back(fromDecimal(0, 0, 5, false));
    values.push_back(fromDecimal(0, 1, 28, true));
    values.push_back(fromDecimal(0xFFFFFFFFU, all, 0, false));
    values.push_back(fromDecimal(0xFFFFFFFFU, all, 0, true));
    values.push_back(fromDecimal(0xFFFFFFFFU, all, 28, false));
    values.push_back(fromDecimal(0xFFFFFFFFU, all, 29, false)); // no such scale
    values.push_back(fromDecimal(0, 922337203685477580ULL, 0, false));
    for (const std::uint64_t digits :
         {5ULL, 15ULL, 25ULL, 35ULL, 50ULL, 150ULL, 250ULL, 100ULL, 1000ULL, 12340ULL, 2147483647ULL,
          2147483648ULL, 4294967295ULL, 4294967296ULL, 9223372036854775807ULL, 9223372036854775808ULL,
          18446744073709551615ULL}) {
        for (const unsigned scale : {0U, 1U, 2U, 4U, 5U}) {
            values.push_back(fromDecimal(0, digits, scale, false));
            values.push_back(fromDecimal(0, digits, scale, true));
        }
    }
    for (int i = 0; i < 250; ++i) {
        const std::uint64_t low = random.next() >> random.below(64);
        const auto high = static_cast<std::uint32_t>(random.below(3) == 0 ? random.next() : 0);
        values.push_back(
            fromDecimal(high, low, static_cast<unsigned>(random.below(29)), random.below(2) == 0));
    }
    // A sign byte that is neither plus nor minus.
    VARIANT odd = fromDecimal(0, 12, 0, false);
    odd.decVal.sign = 1;
    values.push_back(odd);
}

} // namespace

std::u16string_view textOf(BSTR text) noexcept
{
    return text == nullptr ? std::u16string_view()
                           : std::u16string_view(reinterpret_cast<const char16_t*>(text), SysStringLen(text));
}

BSTR makeText(std::u16string_view text)
{
    return SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
}

VARIANT empty(VARTYPE type) noexcept
{
    VARIANT value{};
    value.vt = type;
    return value;
}

VARIANT fromInteger(VARTYPE type, std::int64_t number) noexcept
{
    VARIANT value = empty(type);
    // Little endian: the low bytes are where every smaller type looks for them.
    value.llVal = number;
    return value;
}

VARIANT fromReal(double number, VARTYPE type) noexcept
{
    VARIANT value = empty(type);
    value.dblVal = number;
    return value;
}

VARIANT fromFloat(float number) noexcept
{
    VARIANT value = empty(VT_R4);
    value.fltVal = number;
    return value;
}

VARIANT fromDecimal(std::uint32_t high, std::uint64_t low, unsigned scale, bool negative) noexcept
{
    VARIANT value{};
    value.decVal.Hi32 = high;
    value.decVal.Lo64 = low;
    value.decVal.scale = static_cast<BYTE>(scale);
    value.decVal.sign = negative ? DECIMAL_NEG : BYTE{0};
    value.vt = VT_DECIMAL;
    return value;
}

VARIANT fromText(std::u16string_view text)
{
    VARIANT value = empty(VT_BSTR);
    value.bstrVal = makeText(text);
    return value;
}

std::uint64_t Random::next() noexcept
{
    m_state += 0x9E3779B97F4A7C15ULL;
    std::uint64_t z = m_state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

std::vector<VARIANT> plainValues()
{
    std::vector<VARIANT> values;
    for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_DISPATCH, VT_UNKNOWN, VT_BSTR}) {
        values.push_back(empty(type));
    }
    addIntegers(values);
    addReals(values);
    addCurrencies(values);
    addDecimals(values);
    // Cut to a smaller type, several numbers are the same one.
    std::set<std::string> seen;
    std::erase_if(values, [&](const VARIANT& value) { return !seen.insert(typedText(value)).second; });
    return values;
}

} // namespace differential
