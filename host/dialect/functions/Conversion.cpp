#include "host/dialect/functions/Conversion.h"

#include "base/Utf8.h"
#include "host/dialect/base/ColumnType.h"
#include "host/dialect/base/DateTime.h"
#include "host/dialect/base/NumberText.h"
#include "host/dialect/base/Words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace zul::dialect {

namespace {

using std::int64_t;

// float as text: six digits, an exponent of three
std::string textOfFloat(double number)
{
    std::array<char, 40> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 6);
    std::string text(buffer.data(), end.ptr);
    const std::size_t exponent = text.find('e');
    if (exponent != std::string::npos && text.size() - exponent == 4) {
        text.insert(exponent + 2, "0");
    }
    return text;
}

struct Target
{
    std::string_view type;
    ColumnType kind = ColumnType::Unknown;
    int64_t length = -1;
    int64_t scale = -1;
    int style = -1;
    std::string_view source; ///< what the value is known to be: "date", "datetime", "time", "real" or nothing
};

Result castToWhole(const Argument& value, const Target& target)
{
    int64_t whole = 0;
    const auto* text = std::get_if<std::string_view>(&value);
    if (text != nullptr && (target.source == "datetime" || target.source == "date")) {
        whole = static_cast<int64_t>(std::round(numberOfMoment(momentOf(value))));
    } else if (text != nullptr && text->find_first_not_of(' ') != std::string_view::npos) {
        const auto parsed = parseNumber(*text);
        if (!std::holds_alternative<int64_t>(parsed)) {
            notANumber(*text, target.type);
        }
        whole = std::get<int64_t>(parsed);
    } else {
        whole = wholeOf(value);
    }
    int64_t least = std::numeric_limits<int64_t>::min();
    int64_t most = std::numeric_limits<int64_t>::max();
    if (target.type == "int" || target.type == "integer") {
        least = std::numeric_limits<std::int32_t>::min();
        most = std::numeric_limits<std::int32_t>::max();
    } else if (target.type == "smallint") {
        least = std::numeric_limits<std::int16_t>::min();
        most = std::numeric_limits<std::int16_t>::max();
    } else if (target.type == "tinyint") {
        least = 0;
        most = 255;
    }
    if (whole < least || whole > most) {
        overflow(target.type);
    }
    return whole;
}

Result castToBit(const Argument& value)
{
    if (const auto* text = std::get_if<std::string_view>(&value)) {
        if (sameWord(*text, "true")) {
            return int64_t{1};
        }
        if (sameWord(*text, "false")) {
            return int64_t{0};
        }
        if (text->find_first_not_of(' ') != std::string_view::npos &&
            std::holds_alternative<std::monostate>(parseNumber(*text))) {
            notANumber(*text, "bit");
        }
    }
    return int64_t{realOf(value) != 0 ? 1 : 0};
}

Result castToReal(const Argument& value, const Target& target)
{
    const auto* text = std::get_if<std::string_view>(&value);
    if (text != nullptr && (target.source == "datetime" || target.source == "date")) {
        return numberOfMoment(momentOf(value));
    }
    if (text != nullptr && text->find_first_not_of(' ') != std::string_view::npos &&
        std::holds_alternative<std::monostate>(parseNumber(*text))) {
        notANumber(*text, target.type);
    }
    return realOf(value);
}

Result castToDecimal(const Argument& value, const Target& target)
{
    const bool money = target.type == "money" || target.type == "smallmoney";
    const int64_t precision = money ? 19 : target.length < 0 ? 18 : target.length;
    const int64_t scale = money ? 4 : std::max<int64_t>(target.scale, 0);
    const auto* text = std::get_if<std::string_view>(&value);
    if (text != nullptr && std::holds_alternative<std::monostate>(parseNumber(*text))) {
        notANumber(*text, target.type);
    }
    const Number number = numberOf(value);
    const double rounded = roundedTo(realOf(number), scale, false);
    if (!(std::abs(rounded) < std::pow(10.0, static_cast<double>(precision - scale)))) {
        overflow(target.type);
    }
    if (scale > 0 && !std::holds_alternative<int64_t>(number)) {
        return rounded;
    }
    if (std::holds_alternative<int64_t>(number)) {
        return scale > 0 ? Result(realOf(number)) : resultOf(number);
    }
    return truncated(rounded, target.type);
}

std::string wholeText(const Argument& value, const Target& target)
{
    const bool moment = target.source == "datetime" || target.source == "date";
    if (moment && isText(value)) {
        const int usual = target.source == "date" ? 23 : 0;
        const auto text = momentInStyle(momentOf(value), target.style < 0 ? usual : target.style);
        if (!text) {
            throw FunctionError(
                std::to_string(target.style) +
                " is not a valid style number when converting from datetime to a character string.");
        }
        return *text;
    }
    const auto* real = std::get_if<double>(&value);
    return real != nullptr && target.source == "real" ? textOfFloat(*real) : textOf(value);
}

Result castToText(const Argument& value, const Target& target)
{
    std::string text = wholeText(value, target);
    if (target.length < 0) {
        return text;
    }
    const std::u32string characters = charactersFromUtf8(text);
    const auto length = static_cast<std::size_t>(target.length);
    if (characters.size() > length) {
        if (!isText(value) && std::holds_alternative<int64_t>(value)) {
            return std::string("*"); // a whole number that does not fit
        }
        return utf8FromCharacters(std::u32string_view(characters).substr(0, length));
    }
    if (target.type == "char" || target.type == "nchar") {
        checkLength(length);
        text.append(length - characters.size(), ' ');
    }
    return text;
}

Result castToMoment(const Argument& value, const Target& target)
{
    auto moment = momentMaybe(value, target.style);
    if (!moment) {
        notADate();
    }
    if (target.kind == ColumnType::Time) {
        return formatTime(*moment);
    }
    if (target.kind == ColumnType::Date) {
        moment->millisecond = 0;
    }
    if (target.type == "smalldatetime") {
        moment->millisecond -=
            moment->millisecond % 60'000 - (moment->millisecond % 60'000 >= 29'999 ? 60'000 : 0);
        moment = dateSum(DatePart::Second, 0, *moment);
        if (!moment) {
            notADate();
        }
    }
    return formatMoment(*moment);
}

Result castTo(const Argument& value, const Target& target)
{
    switch (target.kind) {
    case ColumnType::Integer:
        return castToWhole(value, target);
    case ColumnType::Bit:
        return castToBit(value);
    case ColumnType::Real:
        return castToReal(value, target);
    case ColumnType::Decimal:
        return castToDecimal(value, target);
    case ColumnType::Text:
        return castToText(value, target);
    case ColumnType::Date:
    case ColumnType::DateTime:
    case ColumnType::Time:
        return castToMoment(value, target);
    case ColumnType::Unknown:
    case ColumnType::Binary:
        break;
    }
    throw FunctionError("A conversion to " + std::string(target.type) + " is not supported.");
}

// zul_cast(value, type, length, scale, style, source): length, scale and style are -1 when not given.
Result cast(Arguments arguments)
{
    if (isNull(arguments[0])) {
        return {};
    }
    const TextView type(arguments[1]);
    const TextView source(arguments[5]);
    Target target;
    target.type = *type;
    target.kind = columnTypeNamed(*type);
    target.length = wholeOf(arguments[2]);
    target.scale = wholeOf(arguments[3]);
    target.style =
        static_cast<int>(std::clamp<int64_t>(isNull(arguments[4]) ? -1 : wholeOf(arguments[4]), -1, 100000));
    target.source = *source;
    return castTo(arguments[0], target);
}

constexpr Function table[] = {
    {"zul_cast", 6, 6, cast},
};

} // namespace

std::span<const Function> conversions()
{
    return table;
}

} // namespace zul::dialect
