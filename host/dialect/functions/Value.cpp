#include "host/dialect/functions/Value.h"

#include "base/Utf8.h"
#include "host/dialect/base/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace zul::dialect {

using std::int64_t;

namespace {

std::string textOfReal(double number)
{
    std::array<char, 40> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 15);
    return {buffer.data(), end.ptr};
}

} // namespace

bool anyNull(Arguments arguments)
{
    return std::any_of(arguments.begin(), arguments.end(), isNull);
}

void notADate()
{
    throw FunctionError("Conversion failed when converting date and/or time from character string.");
}

void notANumber(std::string_view text, std::string_view type)
{
    constexpr std::size_t shown = 200;
    std::string value(text.substr(0, shown));
    while (!value.empty() && firstInvalidUtf8(value) != std::string::npos) {
        value.pop_back();
    }
    throw FunctionError("Conversion failed when converting the varchar value '" + value + "' to data type " +
                        std::string(type) + ".");
}

void overflow(std::string_view type)
{
    throw FunctionError("Arithmetic overflow error converting expression to data type " + std::string(type) +
                        ".");
}

std::string textOf(const Argument& argument)
{
    if (const auto* text = std::get_if<std::string_view>(&argument)) {
        return std::string(*text);
    }
    if (const auto* whole = std::get_if<int64_t>(&argument)) {
        return std::to_string(*whole);
    }
    if (const auto* real = std::get_if<double>(&argument)) {
        return textOfReal(*real);
    }
    return {};
}

Number numberOf(const Argument& argument)
{
    if (const auto* whole = std::get_if<int64_t>(&argument)) {
        return *whole;
    }
    if (const auto* real = std::get_if<double>(&argument)) {
        return *real;
    }
    const auto* text = std::get_if<std::string_view>(&argument);
    if (text == nullptr || text->find_first_not_of(' ') == std::string_view::npos) {
        return int64_t{0};
    }
    const auto parsed = parseNumber(*text);
    if (const auto* whole = std::get_if<int64_t>(&parsed)) {
        return *whole;
    }
    if (const auto* real = std::get_if<double>(&parsed)) {
        return *real;
    }
    notANumber(*text, "int");
}

double realOf(const Number& number)
{
    if (const auto* whole = std::get_if<int64_t>(&number)) {
        return static_cast<double>(*whole);
    }
    return std::get<double>(number);
}

double realOf(const Argument& argument)
{
    return realOf(numberOf(argument));
}

int64_t truncated(double real, std::string_view type)
{
    if (!(real > -9.2233720368547e18 && real < 9.2233720368547e18)) {
        overflow(type);
    }
    return static_cast<int64_t>(real);
}

int64_t wholeOf(const Argument& argument)
{
    const Number number = numberOf(argument);
    if (const auto* whole = std::get_if<int64_t>(&number)) {
        return *whole;
    }
    return truncated(std::get<double>(number), "int");
}

Result resultOf(const Number& number)
{
    if (const auto* whole = std::get_if<int64_t>(&number)) {
        return *whole;
    }
    return std::get<double>(number);
}

Result resultOf(const Argument& argument)
{
    if (const auto* text = std::get_if<std::string_view>(&argument)) {
        return std::string(*text);
    }
    return isNull(argument) ? Result{} : resultOf(numberOf(argument));
}

void checkLength(std::size_t length)
{
    if (length > longestText) {
        throw FunctionError("The resulting text is too long.");
    }
}

double roundedTo(double value, int64_t digits, bool cut)
{
    // Never a power below one: those are no exact numbers, and not the same ones in every C library.
    const int64_t places = std::clamp<int64_t>(digits, -300, 300);
    const double power = std::pow(10.0, static_cast<double>(std::abs(places)));
    const double scaled = places < 0 ? value / power : value * power;
    if (!std::isfinite(scaled)) {
        return value;
    }
    // A decimal such as 2.675 stands a hair below itself in binary; the hair is given back before rounding.
    const double hair = std::copysign(std::abs(scaled) * 4 * std::numeric_limits<double>::epsilon(), scaled);
    const double whole = cut ? std::trunc(scaled + hair) : std::round(scaled + hair);
    return places < 0 ? whole * power : whole / power;
}

std::optional<Moment> momentMaybe(const Argument& argument, int style)
{
    if (const auto* text = std::get_if<std::string_view>(&argument)) {
        return style < 0 ? parseMoment(*text) : parseMomentInStyle(*text, style);
    }
    if (const auto* whole = std::get_if<int64_t>(&argument)) {
        return momentOfNumber(static_cast<double>(*whole));
    }
    return momentOfNumber(std::get<double>(argument));
}

Moment momentOf(const Argument& argument)
{
    const auto moment = momentMaybe(argument, -1);
    if (!moment) {
        notADate();
    }
    return *moment;
}

Result plusDays(const Moment& moment, double days)
{
    const auto sum = momentOfNumber(numberOfMoment(moment) + days);
    if (!sum) {
        throw FunctionError("Adding a value to a 'datetime' column caused an overflow.");
    }
    return formatMoment(*sum);
}

} // namespace zul::dialect
