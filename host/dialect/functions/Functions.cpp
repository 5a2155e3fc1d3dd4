#include "host/dialect/functions/Functions.h"

#include "host/dialect/base/ColumnType.h"
#include "host/dialect/base/DateTime.h"
#include "host/dialect/base/Like.h"
#include "host/dialect/base/Utf8.h"
#include "host/dialect/base/Words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>

namespace zul::dialect {

namespace {

using std::int64_t;

constexpr std::size_t longestText = 64U << 20U;

bool isNull(const Argument& argument)
{
    return std::holds_alternative<std::monostate>(argument);
}

bool anyNull(Arguments arguments)
{
    return std::any_of(arguments.begin(), arguments.end(), isNull);
}

[[noreturn]] void notADate()
{
    throw FunctionError("Conversion failed when converting date and/or time from character string.");
}

[[noreturn]] void notANumber(std::string_view text, std::string_view type)
{
    constexpr std::size_t shown = 200;
    std::string value(text.substr(0, shown));
    while (!value.empty() && firstInvalidUtf8(value) != std::string::npos)
        value.pop_back();
    throw FunctionError("Conversion failed when converting the varchar value '" + value + "' to data type " +
                        std::string(type) + ".");
}

[[noreturn]] void overflow(std::string_view type)
{
    throw FunctionError("Arithmetic overflow error converting expression to data type " + std::string(type) +
                        ".");
}

std::string textOfReal(double number)
{
    std::array<char, 40> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 15);
    return {buffer.data(), end.ptr};
}

// float as text: six digits, an exponent of three
std::string textOfFloat(double number)
{
    std::array<char, 40> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 6);
    std::string text(buffer.data(), end.ptr);
    const std::size_t exponent = text.find('e');
    if (exponent != std::string::npos && text.size() - exponent == 4)
        text.insert(exponent + 2, "0");
    return text;
}

std::string textOf(const Argument& argument)
{
    if (const auto* text = std::get_if<std::string_view>(&argument))
        return std::string(*text);
    if (const auto* whole = std::get_if<int64_t>(&argument))
        return std::to_string(*whole);
    if (const auto* real = std::get_if<double>(&argument))
        return textOfReal(*real);
    return {};
}

// The text without a copy where it is one already.
class TextView
{
public:
    explicit TextView(const Argument& argument)
    {
        if (const auto* text = std::get_if<std::string_view>(&argument))
            m_view = *text;
        else {
            m_owned = textOf(argument);
            m_view = m_owned;
        }
    }
    TextView(const TextView&) = delete;
    TextView& operator=(const TextView&) = delete;
    std::string_view operator*() const { return m_view; }

private:
    std::string m_owned;
    std::string_view m_view;
};

using Number = std::variant<int64_t, double>;

// A text that is no number is an error; an empty one is 0.
Number numberOf(const Argument& argument)
{
    if (const auto* whole = std::get_if<int64_t>(&argument))
        return *whole;
    if (const auto* real = std::get_if<double>(&argument))
        return *real;
    const auto* text = std::get_if<std::string_view>(&argument);
    if (text == nullptr || text->find_first_not_of(' ') == std::string_view::npos)
        return int64_t{0};
    const auto parsed = parseNumber(*text);
    if (const auto* whole = std::get_if<int64_t>(&parsed))
        return *whole;
    if (const auto* real = std::get_if<double>(&parsed))
        return *real;
    notANumber(*text, "int");
}

double realOf(const Number& number)
{
    if (const auto* whole = std::get_if<int64_t>(&number))
        return static_cast<double>(*whole);
    return std::get<double>(number);
}

double realOf(const Argument& argument)
{
    return realOf(numberOf(argument));
}

int64_t truncated(double real, std::string_view type)
{
    if (!(real > -9.2233720368547e18 && real < 9.2233720368547e18))
        overflow(type);
    return static_cast<int64_t>(real);
}

int64_t wholeOf(const Argument& argument)
{
    const Number number = numberOf(argument);
    if (const auto* whole = std::get_if<int64_t>(&number))
        return *whole;
    return truncated(std::get<double>(number), "int");
}

Result resultOf(const Number& number)
{
    if (const auto* whole = std::get_if<int64_t>(&number))
        return *whole;
    return std::get<double>(number);
}

Result resultOf(const Argument& argument)
{
    if (const auto* text = std::get_if<std::string_view>(&argument))
        return std::string(*text);
    return isNull(argument) ? Result{} : resultOf(numberOf(argument));
}

// --- operators --------------------------------------------------------------------------------------------

Number sum(const Number& a, const Number& b, bool minus)
{
    const auto* x = std::get_if<int64_t>(&a);
    const auto* y = std::get_if<int64_t>(&b);
    if (x == nullptr || y == nullptr)
        return minus ? realOf(a) - realOf(b) : realOf(a) + realOf(b);
    int64_t total = 0;
    if (minus ? __builtin_sub_overflow(*x, *y, &total) : __builtin_add_overflow(*x, *y, &total))
        overflow("bigint");
    return total;
}

bool isText(const Argument& argument)
{
    return std::holds_alternative<std::string_view>(argument);
}

// A text in the stored form of a date, and a number beside it: days are added.
std::optional<Moment> storedMoment(const Argument& argument)
{
    const auto* text = std::get_if<std::string_view>(&argument);
    if (text == nullptr || text->size() != 23 || (*text)[4] != '-' || (*text)[19] != '.')
        return std::nullopt;
    return parseMoment(*text);
}

Result plusDays(const Moment& moment, double days)
{
    const auto sum = momentOfNumber(numberOfMoment(moment) + days);
    if (!sum)
        throw FunctionError("Adding a value to a 'datetime' column caused an overflow.");
    return formatMoment(*sum);
}

Result addTwo(const Argument& a, const Argument& b, bool minus)
{
    if (isText(a) && isText(b) && !minus)
        return textOf(a) + textOf(b);
    if (const auto moment = storedMoment(a); moment && !isText(b))
        return plusDays(*moment, minus ? -realOf(b) : realOf(b));
    if (const auto moment = storedMoment(b); moment && !isText(a) && !minus)
        return plusDays(*moment, realOf(a));
    return resultOf(sum(numberOf(a), numberOf(b), minus));
}

Argument argumentOf(const Result& result)
{
    if (const auto* text = std::get_if<std::string>(&result))
        return std::string_view(*text);
    if (const auto* whole = std::get_if<int64_t>(&result))
        return *whole;
    if (const auto* real = std::get_if<double>(&result))
        return *real;
    return {};
}

// '+' between values whose kinds are known only now: two texts are joined, numbers are added, a text beside a
// number must be one.
Result add(Arguments arguments)
{
    if (arguments.empty() || anyNull(arguments))
        return {};
    if (std::all_of(arguments.begin(), arguments.end(), isText)) {
        std::string joined;
        for (const Argument& argument : arguments)
            joined += std::get<std::string_view>(argument);
        return joined;
    }
    Result total = resultOf(arguments[0]);
    for (const Argument& argument : arguments.subspan(1))
        total = addTwo(argumentOf(total), argument, false);
    return total;
}

Result subtract(Arguments arguments)
{
    return anyNull(arguments) ? Result{} : addTwo(arguments[0], arguments[1], true);
}

// The server refuses to divide by zero where the engine answers NULL.
Result divide(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const Number a = numberOf(arguments[0]);
    const Number b = numberOf(arguments[1]);
    if (realOf(b) == 0)
        throw FunctionError("Divide by zero error encountered.");
    const auto* x = std::get_if<int64_t>(&a);
    const auto* y = std::get_if<int64_t>(&b);
    if (x == nullptr || y == nullptr)
        return realOf(a) / realOf(b);
    if (*y == -1)
        return resultOf(sum(int64_t{0}, a, true));
    return *x / *y;
}

Result modulo(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const Number a = numberOf(arguments[0]);
    const Number b = numberOf(arguments[1]);
    if (realOf(b) == 0)
        throw FunctionError("Divide by zero error encountered.");
    const auto* x = std::get_if<int64_t>(&a);
    const auto* y = std::get_if<int64_t>(&b);
    if (x == nullptr || y == nullptr)
        return std::fmod(realOf(a), realOf(b));
    return *y == -1 ? 0 : *x % *y;
}

Result number(Arguments arguments)
{
    return anyNull(arguments) ? Result{} : resultOf(numberOf(arguments[0]));
}

// --- texts ------------------------------------------------------------------------------------------------

std::optional<char32_t> escapeOf(Arguments arguments)
{
    if (arguments.size() < 3)
        return std::nullopt;
    const std::u32string characters = toCharacters(*TextView(arguments[2]));
    if (characters.size() != 1)
        throw FunctionError("The invalid escape character was specified in a LIKE predicate.");
    return characters.front();
}

Result like(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const TextView pattern(arguments[0]);
    const TextView text(arguments[1]);
    return int64_t{likeMatch(*pattern, *text, escapeOf(arguments)) ? 1 : 0};
}

Result patIndex(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    return static_cast<int64_t>(patternIndex(*TextView(arguments[0]), *TextView(arguments[1])));
}

std::u32string folded(std::string_view text)
{
    std::u32string characters = toCharacters(text);
    for (char32_t& c : characters)
        c = lowerCharacter(c);
    return characters;
}

Result charIndex(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const std::u32string sought = folded(*TextView(arguments[0]));
    const std::u32string text = folded(*TextView(arguments[1]));
    const int64_t start = arguments.size() > 2 ? std::max<int64_t>(wholeOf(arguments[2]), 1) : 1;
    if (sought.empty() || start > static_cast<int64_t>(text.size()))
        return int64_t{0};
    const std::size_t found = text.find(sought, static_cast<std::size_t>(start - 1));
    return found == std::u32string::npos ? int64_t{0} : static_cast<int64_t>(found) + 1;
}

void checkLength(std::size_t length)
{
    if (length > longestText)
        throw FunctionError("The resulting text is too long.");
}

// Finds without regard to case, as the server's collation does.
Result replace(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const std::u32string text = toCharacters(*TextView(arguments[0]));
    const std::u32string haystack = folded(*TextView(arguments[0]));
    const std::u32string sought = folded(*TextView(arguments[1]));
    const std::u32string with = toCharacters(*TextView(arguments[2]));
    if (sought.empty())
        return toUtf8(text);
    std::u32string replaced;
    std::size_t from = 0;
    while (true) {
        const std::size_t found = haystack.find(sought, from);
        replaced += text.substr(from, found == std::u32string::npos ? found : found - from);
        if (found == std::u32string::npos)
            return toUtf8(replaced);
        replaced += with;
        checkLength(replaced.size());
        from = found + sought.size();
    }
}

Result mapped(Arguments arguments, char32_t (*map)(char32_t))
{
    if (anyNull(arguments))
        return {};
    const TextView text(arguments[0]);
    std::string result;
    result.reserve((*text).size());
    for (std::size_t at = 0; at < (*text).size();)
        appendCharacter(result, map(nextCharacter(*text, at)));
    return result;
}

Result upper(Arguments arguments)
{
    return mapped(arguments, upperCharacter);
}

Result lower(Arguments arguments)
{
    return mapped(arguments, lowerCharacter);
}

std::string slice(std::string_view text, int64_t start, int64_t length)
{
    // Positions before the first character count, but hold nothing.
    const int64_t first = std::max<int64_t>(start, 1);
    if (start < 1 && length < std::numeric_limits<int64_t>::max() + start)
        length += start - 1;
    std::size_t at = 0;
    for (int64_t i = 1; i < first && at < text.size(); ++i)
        nextCharacter(text, at);
    const std::size_t from = at;
    for (int64_t i = 0; i < length && at < text.size(); ++i)
        nextCharacter(text, at);
    return std::string(text.substr(from, at - from));
}

int64_t lengthArgument(const Argument& argument, const char* function)
{
    const int64_t length = wholeOf(argument);
    if (length < 0)
        throw FunctionError(std::string("Invalid length parameter passed to the ") + function + " function.");
    return length;
}

Result left(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    return slice(*TextView(arguments[0]), 1, lengthArgument(arguments[1], "left"));
}

Result right(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const std::u32string text = toCharacters(*TextView(arguments[0]));
    const int64_t length = lengthArgument(arguments[1], "right");
    if (length >= static_cast<int64_t>(text.size()))
        return toUtf8(text);
    return toUtf8(std::u32string_view(text).substr(text.size() - static_cast<std::size_t>(length)));
}

Result substring(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const int64_t start = std::max<int64_t>(wholeOf(arguments[1]), std::numeric_limits<int>::min());
    return slice(*TextView(arguments[0]), start, lengthArgument(arguments[2], "substring"));
}

Result replicate(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const TextView text(arguments[0]);
    const int64_t count = wholeOf(arguments[1]);
    if (count < 0)
        return {};
    if ((*text).empty())
        return std::string();
    if (count > static_cast<int64_t>(longestText / (*text).size()))
        checkLength(longestText + 1);
    std::string result;
    result.reserve((*text).size() * static_cast<std::size_t>(count));
    for (int64_t i = 0; i < count; ++i)
        result += *text;
    return result;
}

// The characters 128 to 159 of the server's code page (1252); 0 where it has none.
constexpr std::array<char32_t, 32> codePage = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

Result charOf(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const int64_t code = wholeOf(arguments[0]);
    if (code < 1 || code > 255)
        return {};
    auto character = static_cast<char32_t>(code);
    if (code >= 128 && code < 160)
        character = codePage[static_cast<std::size_t>(code - 128)];
    if (character == 0)
        return {};
    std::string text;
    appendCharacter(text, character);
    return text;
}

Result ncharOf(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const int64_t code = wholeOf(arguments[0]);
    if (code < 1 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return {};
    std::string text;
    appendCharacter(text, static_cast<char32_t>(code));
    return text;
}

Result ascii(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const TextView text(arguments[0]);
    if ((*text).empty())
        return {};
    std::size_t at = 0;
    const char32_t character = nextCharacter(*text, at);
    for (std::size_t i = 0; i < codePage.size(); ++i)
        if (codePage[i] == character)
            return static_cast<int64_t>(i) + 128;
    return static_cast<int64_t>(character < 256 ? character : U'?');
}

double roundedTo(double value, int64_t digits, bool cut)
{
    const double power = std::pow(10.0, static_cast<double>(std::clamp<int64_t>(digits, -300, 300)));
    const double scaled = value * power;
    if (!std::isfinite(scaled) || power == 0)
        return value;
    // A decimal such as 2.675 stands a hair below itself in binary; the hair is given back before rounding.
    const double hair = std::copysign(std::abs(scaled) * 4 * std::numeric_limits<double>::epsilon(), scaled);
    const double whole = cut ? std::trunc(scaled + hair) : std::round(scaled + hair);
    return whole / power;
}

// STR(number, length, decimals): right-aligned; asterisks when it does not fit.
Result str(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const int64_t length = arguments.size() > 1 ? wholeOf(arguments[1]) : 10;
    const int64_t decimals = std::clamp<int64_t>(arguments.size() > 2 ? wholeOf(arguments[2]) : 0, 0, 16);
    if (length < 1 || length > 8000)
        return {};
    const double value = roundedTo(realOf(arguments[0]), decimals, false);
    if (!std::isfinite(value))
        return {};
    std::array<char, 400> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed, static_cast<int>(decimals));
    std::string text(buffer.data(), end.ptr);
    const auto width = static_cast<std::size_t>(length);
    const std::size_t point = std::min(text.find('.'), text.size());
    if (point > width)
        return std::string(width, '*');
    if (text.size() > width)
        text.resize(point + 1 < width ? width : point);
    return std::string(width - text.size(), ' ') + text;
}

// --- numbers ----------------------------------------------------------------------------------------------

Result round(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const Number value = numberOf(arguments[0]);
    const int64_t digits = wholeOf(arguments[1]);
    const bool cut = arguments.size() > 2 && wholeOf(arguments[2]) != 0;
    const auto* whole = std::get_if<int64_t>(&value);
    if (whole == nullptr)
        return roundedTo(std::get<double>(value), digits, cut);
    if (digits >= 0)
        return *whole;
    return truncated(roundedTo(static_cast<double>(*whole), digits, cut), "bigint");
}

Result wholeStep(Arguments arguments, double (*step)(double))
{
    if (anyNull(arguments))
        return {};
    const Number value = numberOf(arguments[0]);
    if (std::holds_alternative<int64_t>(value))
        return resultOf(value);
    return step(std::get<double>(value));
}

Result floorOf(Arguments arguments)
{
    return wholeStep(arguments, [](double x) { return std::floor(x); });
}

Result ceilingOf(Arguments arguments)
{
    return wholeStep(arguments, [](double x) { return std::ceil(x); });
}

Result isNumericText(Arguments arguments)
{
    const auto* text = std::get_if<std::string_view>(&arguments[0]);
    if (text == nullptr)
        return int64_t{isNull(arguments[0]) ? 0 : 1};
    std::string_view rest = *text;
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    if (!rest.empty() && rest.front() == '$')
        rest.remove_prefix(1);
    return int64_t{std::holds_alternative<std::monostate>(parseNumber(rest)) ? 0 : 1};
}

// --- dates ------------------------------------------------------------------------------------------------

std::optional<Moment> momentMaybe(const Argument& argument, int style)
{
    if (const auto* text = std::get_if<std::string_view>(&argument))
        return style < 0 ? parseMoment(*text) : parseMomentInStyle(*text, style);
    if (const auto* whole = std::get_if<int64_t>(&argument))
        return momentOfNumber(static_cast<double>(*whole));
    return momentOfNumber(std::get<double>(argument));
}

Moment momentOf(const Argument& argument)
{
    const auto moment = momentMaybe(argument, -1);
    if (!moment)
        notADate();
    return *moment;
}

DatePart partArgument(const Argument& argument)
{
    const TextView name(argument);
    const auto part = datePartNamed(*name);
    if (!part)
        throw FunctionError("'" + std::string(*name) + "' is not a recognized date part.");
    return *part;
}

// Year, month or day of a date; the common case without reading the rest of the text.
Result digitsOf(Arguments arguments, DatePart part, std::size_t from, std::size_t count)
{
    if (isNull(arguments[0]))
        return {};
    const auto* text = std::get_if<std::string_view>(&arguments[0]);
    if (text != nullptr && text->size() == 23 && (*text)[4] == '-' && (*text)[7] == '-') {
        int number = 0;
        const char* end = text->data() + from + count;
        const auto read = std::from_chars(text->data() + from, end, number);
        if (read.ec == std::errc() && read.ptr == end && number > 0)
            return int64_t{number};
    }
    return partOf(part, momentOf(arguments[0]));
}

Result year(Arguments arguments)
{
    return digitsOf(arguments, DatePart::Year, 0, 4);
}

Result month(Arguments arguments)
{
    return digitsOf(arguments, DatePart::Month, 5, 2);
}

Result day(Arguments arguments)
{
    return digitsOf(arguments, DatePart::Day, 8, 2);
}

Result dateDiff(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const int64_t number =
        dateDifference(partArgument(arguments[0]), momentOf(arguments[1]), momentOf(arguments[2]));
    if (number > std::numeric_limits<std::int32_t>::max() ||
        number < std::numeric_limits<std::int32_t>::min())
        throw FunctionError(
            "The datediff function resulted in an overflow. Try to use datediff with a less precise "
            "datepart.");
    return number;
}

Result dateAdd(Arguments arguments)
{
    if (anyNull(arguments))
        return {};
    const auto sum = dateSum(partArgument(arguments[0]), wholeOf(arguments[1]), momentOf(arguments[2]));
    if (!sum)
        throw FunctionError("Adding a value to a 'datetime' column caused an overflow.");
    return formatMoment(*sum);
}

// A date plus a number of days, as '+' between the two means.
Result datePlus(Arguments arguments)
{
    return anyNull(arguments) ? Result{} : plusDays(momentOf(arguments[0]), realOf(arguments[1]));
}

Result datePart(Arguments arguments)
{
    return anyNull(arguments) ? Result{} : Result(partOf(partArgument(arguments[0]), momentOf(arguments[1])));
}

Result isDate(Arguments arguments)
{
    const auto* text = std::get_if<std::string_view>(&arguments[0]);
    if (text == nullptr || text->find_first_not_of(' ') == std::string_view::npos)
        return int64_t{0};
    return int64_t{parseMoment(*text) ? 1 : 0};
}

// --- CAST and CONVERT -------------------------------------------------------------------------------------

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
    if (text != nullptr && (target.source == "datetime" || target.source == "date"))
        whole = static_cast<int64_t>(std::round(numberOfMoment(momentOf(value))));
    else if (text != nullptr && text->find_first_not_of(' ') != std::string_view::npos) {
        const auto parsed = parseNumber(*text);
        if (!std::holds_alternative<int64_t>(parsed))
            notANumber(*text, target.type);
        whole = std::get<int64_t>(parsed);
    } else
        whole = wholeOf(value);
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
    if (whole < least || whole > most)
        overflow(target.type);
    return whole;
}

Result castToBit(const Argument& value)
{
    if (const auto* text = std::get_if<std::string_view>(&value)) {
        if (sameWord(*text, "true"))
            return int64_t{1};
        if (sameWord(*text, "false"))
            return int64_t{0};
        if (text->find_first_not_of(' ') != std::string_view::npos &&
            std::holds_alternative<std::monostate>(parseNumber(*text)))
            notANumber(*text, "bit");
    }
    return int64_t{realOf(value) != 0 ? 1 : 0};
}

Result castToReal(const Argument& value, const Target& target)
{
    const auto* text = std::get_if<std::string_view>(&value);
    if (text != nullptr && (target.source == "datetime" || target.source == "date"))
        return numberOfMoment(momentOf(value));
    if (text != nullptr && text->find_first_not_of(' ') != std::string_view::npos &&
        std::holds_alternative<std::monostate>(parseNumber(*text)))
        notANumber(*text, target.type);
    return realOf(value);
}

Result castToDecimal(const Argument& value, const Target& target)
{
    const bool money = target.type == "money" || target.type == "smallmoney";
    const int64_t precision = money ? 19 : target.length < 0 ? 18 : target.length;
    const int64_t scale = money ? 4 : std::max<int64_t>(target.scale, 0);
    const auto* text = std::get_if<std::string_view>(&value);
    if (text != nullptr && std::holds_alternative<std::monostate>(parseNumber(*text)))
        notANumber(*text, target.type);
    const Number number = numberOf(value);
    const double rounded = roundedTo(realOf(number), scale, false);
    if (!(std::abs(rounded) < std::pow(10.0, static_cast<double>(precision - scale))))
        overflow(target.type);
    if (scale > 0 && !std::holds_alternative<int64_t>(number))
        return rounded;
    if (std::holds_alternative<int64_t>(number))
        return scale > 0 ? Result(realOf(number)) : resultOf(number);
    return truncated(rounded, target.type);
}

std::string wholeText(const Argument& value, const Target& target)
{
    const bool moment = target.source == "datetime" || target.source == "date";
    if (moment && isText(value)) {
        const int usual = target.source == "date" ? 23 : 0;
        const auto text = momentInStyle(momentOf(value), target.style < 0 ? usual : target.style);
        if (!text)
            throw FunctionError(
                std::to_string(target.style) +
                " is not a valid style number when converting from datetime to a character string.");
        return *text;
    }
    const auto* real = std::get_if<double>(&value);
    return real != nullptr && target.source == "real" ? textOfFloat(*real) : textOf(value);
}

Result castToText(const Argument& value, const Target& target)
{
    std::string text = wholeText(value, target);
    if (target.length < 0)
        return text;
    const std::u32string characters = toCharacters(text);
    const auto length = static_cast<std::size_t>(target.length);
    if (characters.size() > length) {
        if (!isText(value) && std::holds_alternative<int64_t>(value))
            return std::string("*"); // a whole number that does not fit
        return toUtf8(std::u32string_view(characters).substr(0, length));
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
    if (!moment)
        notADate();
    if (target.kind == ColumnType::Time)
        return formatTime(*moment);
    if (target.kind == ColumnType::Date)
        moment->millisecond = 0;
    if (target.type == "smalldatetime") {
        moment->millisecond -=
            moment->millisecond % 60'000 - (moment->millisecond % 60'000 >= 29'999 ? 60'000 : 0);
        moment = dateSum(DatePart::Second, 0, *moment);
        if (!moment)
            notADate();
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
    if (isNull(arguments[0]))
        return {};
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
    {"zul_add", 1, -1, add},
    {"zul_sub", 2, 2, subtract},
    {"zul_div", 2, 2, divide},
    {"zul_mod", 2, 2, modulo},
    {"zul_number", 1, 1, number},
    {"zul_like", 2, 3, like},
    {"zul_patindex", 2, 2, patIndex},
    {"zul_charindex", 2, 3, charIndex},
    {"zul_replace", 3, 3, replace},
    {"zul_upper", 1, 1, upper},
    {"zul_lower", 1, 1, lower},
    {"zul_left", 2, 2, left},
    {"zul_right", 2, 2, right},
    {"zul_substring", 3, 3, substring},
    {"zul_replicate", 2, 2, replicate},
    {"zul_char", 1, 1, charOf},
    {"zul_nchar", 1, 1, ncharOf},
    {"zul_ascii", 1, 1, ascii},
    {"zul_str", 1, 3, str},
    {"zul_round", 2, 3, round},
    {"zul_floor", 1, 1, floorOf},
    {"zul_ceiling", 1, 1, ceilingOf},
    {"zul_isnumeric", 1, 1, isNumericText},
    {"zul_year", 1, 1, year},
    {"zul_month", 1, 1, month},
    {"zul_day", 1, 1, day},
    {"zul_datediff", 3, 3, dateDiff},
    {"zul_dateadd", 3, 3, dateAdd},
    {"zul_dateplus", 2, 2, datePlus},
    {"zul_datepart", 2, 2, datePart},
    {"zul_isdate", 1, 1, isDate},
    {"zul_cast", 6, 6, cast},
};

} // namespace

std::span<const Function> functions()
{
    return table;
}

Result callFunction(std::string_view name, Arguments arguments)
{
    const auto count = static_cast<int>(arguments.size());
    for (const Function& function : table)
        if (name == function.name) {
            if (count < function.least || (function.most >= 0 && count > function.most))
                throw FunctionError("wrong number of arguments to " + std::string(name));
            return function.call(arguments);
        }
    throw FunctionError("no such function: " + std::string(name));
}

void Average::add(const Argument& value)
{
    if (isNull(value))
        return;
    const Number number = numberOf(value);
    ++m_count;
    if (const auto* whole = std::get_if<int64_t>(&number)) {
        if (__builtin_add_overflow(m_whole, *whole, &m_whole))
            overflow("bigint");
        return;
    }
    ++m_reals;
    m_real += std::get<double>(number);
}

Result Average::result() const
{
    if (m_count == 0)
        return {};
    if (m_reals == 0)
        return m_whole / m_count;
    return (static_cast<double>(m_whole) + m_real) / static_cast<double>(m_count);
}

std::variant<std::monostate, std::int64_t, double> parseNumber(std::string_view text)
{
    const std::size_t start = text.find_first_not_of(' ');
    if (start == std::string_view::npos)
        return {};
    text = text.substr(start, text.find_last_not_of(' ') - start + 1);
    if (text.front() == '+')
        text.remove_prefix(1);
    const std::size_t digits = text.find_first_of("0123456789.");
    if (digits > 1 || (digits == 1 && text.front() != '-'))
        return {};
    int64_t whole = 0;
    const char* end = text.data() + text.size();
    const auto asWhole = std::from_chars(text.data(), end, whole);
    if (asWhole.ec == std::errc() && asWhole.ptr == end)
        return whole;
    double real = 0;
    const auto asReal = std::from_chars(text.data(), end, real);
    if (asReal.ec == std::errc() && asReal.ptr == end && std::isfinite(real))
        return real;
    return {};
}

} // namespace zul::dialect
