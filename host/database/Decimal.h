#pragma once
// Decimal numbers as texts ("-12.50") and as the 96-bit form of automation.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zul::host {

/// The parts of an automation DECIMAL: (-1)^negative × words × 10^-scale, words from the lowest.
struct DecimalParts
{
    std::array<std::uint32_t, 3> words{};
    std::uint8_t scale = 0;
    bool negative = false;
};

/// Reads "[+-]digits[.digits]". Fraction digits that 96 bits do not hold are dropped; nothing when the text is
/// no such number or its whole part is too large.
std::optional<DecimalParts> decimalFromText(std::string_view text);

std::string decimalToText(const DecimalParts& decimal);

/// The nearest double; 0 for a text that is no number.
double decimalToDouble(std::string_view text);

/// A double as a decimal text without an exponent, the shortest that reads back the same.
std::string decimalText(double value);

} // namespace zul::host
