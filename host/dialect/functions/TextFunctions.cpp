#include "host/dialect/functions/TextFunctions.h"

#include "base/CaseFold.h"
#include "base/Utf8.h"
#include "host/dialect/base/Like.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace zul::dialect {

namespace {

using std::int64_t;

std::optional<char32_t> escapeOf(Arguments arguments)
{
    if (arguments.size() < 3) {
        return std::nullopt;
    }
    const std::u32string characters = charactersFromUtf8(*TextView(arguments[2]));
    if (characters.size() != 1) {
        throw FunctionError("The invalid escape character was specified in a LIKE predicate.");
    }
    return characters.front();
}

Result like(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const TextView pattern(arguments[0]);
    const TextView text(arguments[1]);
    return int64_t{likeMatch(*pattern, *text, escapeOf(arguments)) ? 1 : 0};
}

Result patIndex(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    return static_cast<int64_t>(patternIndex(*TextView(arguments[0]), *TextView(arguments[1])));
}

std::u32string folded(std::string_view text)
{
    std::u32string characters = charactersFromUtf8(text);
    for (char32_t& c : characters) {
        c = lowerCharacter(c);
    }
    return characters;
}

Result charIndex(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const std::u32string sought = folded(*TextView(arguments[0]));
    const std::u32string text = folded(*TextView(arguments[1]));
    const int64_t start = arguments.size() > 2 ? std::max<int64_t>(wholeOf(arguments[2]), 1) : 1;
    if (sought.empty() || start > static_cast<int64_t>(text.size())) {
        return int64_t{0};
    }
    const std::size_t found = text.find(sought, static_cast<std::size_t>(start - 1));
    return found == std::u32string::npos ? int64_t{0} : static_cast<int64_t>(found) + 1;
}

// Finds without regard to case, as the server's collation does.
Result replace(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const std::u32string text = charactersFromUtf8(*TextView(arguments[0]));
    const std::u32string haystack = folded(*TextView(arguments[0]));
    const std::u32string sought = folded(*TextView(arguments[1]));
    const std::u32string with = charactersFromUtf8(*TextView(arguments[2]));
    if (sought.empty()) {
        return utf8FromCharacters(text);
    }
    std::u32string replaced;
    std::size_t from = 0;
    while (true) {
        const std::size_t found = haystack.find(sought, from);
        replaced += text.substr(from, found == std::u32string::npos ? found : found - from);
        if (found == std::u32string::npos) {
            return utf8FromCharacters(replaced);
        }
        replaced += with;
        checkLength(replaced.size());
        from = found + sought.size();
    }
}

Result mapped(Arguments arguments, char32_t (*map)(char32_t))
{
    if (anyNull(arguments)) {
        return {};
    }
    const TextView text(arguments[0]);
    std::string result;
    result.reserve((*text).size());
    for (std::size_t at = 0; at < (*text).size();) {
        appendUtf8(result, map(nextCharacter(*text, at)));
    }
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
    if (start < 1 && length < std::numeric_limits<int64_t>::max() + start) {
        length += start - 1;
    }
    std::size_t at = 0;
    for (int64_t i = 1; i < first && at < text.size(); ++i) {
        nextCharacter(text, at);
    }
    const std::size_t from = at;
    for (int64_t i = 0; i < length && at < text.size(); ++i) {
        nextCharacter(text, at);
    }
    return std::string(text.substr(from, at - from));
}

int64_t lengthArgument(const Argument& argument, const char* function)
{
    const int64_t length = wholeOf(argument);
    if (length < 0) {
        throw FunctionError(std::string("Invalid length parameter passed to the ") + function + " function.");
    }
    return length;
}

Result left(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    return slice(*TextView(arguments[0]), 1, lengthArgument(arguments[1], "left"));
}

Result right(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const std::u32string text = charactersFromUtf8(*TextView(arguments[0]));
    const int64_t length = lengthArgument(arguments[1], "right");
    if (length >= static_cast<int64_t>(text.size())) {
        return utf8FromCharacters(text);
    }
    return utf8FromCharacters(
        std::u32string_view(text).substr(text.size() - static_cast<std::size_t>(length)));
}

Result substring(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const int64_t start = std::max<int64_t>(wholeOf(arguments[1]), std::numeric_limits<int>::min());
    return slice(*TextView(arguments[0]), start, lengthArgument(arguments[2], "substring"));
}

Result replicate(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const TextView text(arguments[0]);
    const int64_t count = wholeOf(arguments[1]);
    if (count < 0) {
        return {};
    }
    if ((*text).empty()) {
        return std::string();
    }
    if (count > static_cast<int64_t>(longestText / (*text).size())) {
        checkLength(longestText + 1);
    }
    std::string result;
    result.reserve((*text).size() * static_cast<std::size_t>(count));
    for (int64_t i = 0; i < count; ++i) {
        result += *text;
    }
    return result;
}

// The characters 128 to 159 of the server's code page (1252); 0 where it has none.
constexpr std::array<char32_t, 32> codePage = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

Result charOf(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const int64_t code = wholeOf(arguments[0]);
    if (code < 1 || code > 255) {
        return {};
    }
    auto character = static_cast<char32_t>(code);
    if (code >= 128 && code < 160) {
        character = codePage[static_cast<std::size_t>(code - 128)];
    }
    if (character == 0) {
        return {};
    }
    std::string text;
    appendUtf8(text, character);
    return text;
}

Result ncharOf(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const int64_t code = wholeOf(arguments[0]);
    if (code < 1 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        return {};
    }
    std::string text;
    appendUtf8(text, static_cast<char32_t>(code));
    return text;
}

Result ascii(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const TextView text(arguments[0]);
    if ((*text).empty()) {
        return {};
    }
    std::size_t at = 0;
    const char32_t character = nextCharacter(*text, at);
    for (std::size_t i = 0; i < codePage.size(); ++i) {
        if (codePage[i] == character) {
            return static_cast<int64_t>(i) + 128;
        }
    }
    return static_cast<int64_t>(character < 256 ? character : U'?');
}

// STR(number, length, decimals): right-aligned; asterisks when it does not fit.
Result str(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const int64_t length = arguments.size() > 1 ? wholeOf(arguments[1]) : 10;
    const int64_t decimals = std::clamp<int64_t>(arguments.size() > 2 ? wholeOf(arguments[2]) : 0, 0, 16);
    if (length < 1 || length > 8000) {
        return {};
    }
    const double value = roundedTo(realOf(arguments[0]), decimals, false);
    if (!std::isfinite(value)) {
        return {};
    }
    std::array<char, 400> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed, static_cast<int>(decimals));
    std::string text(buffer.data(), end.ptr);
    const auto width = static_cast<std::size_t>(length);
    const std::size_t point = std::min(text.find('.'), text.size());
    if (point > width) {
        return std::string(width, '*');
    }
    if (text.size() > width) {
        text.resize(point + 1 < width ? width : point);
    }
    return std::string(width - text.size(), ' ') + text;
}

constexpr Function table[] = {
    {"zul_like", 2, 3, like},           {"zul_patindex", 2, 2, patIndex}, {"zul_charindex", 2, 3, charIndex},
    {"zul_replace", 3, 3, replace},     {"zul_upper", 1, 1, upper},       {"zul_lower", 1, 1, lower},
    {"zul_left", 2, 2, left},           {"zul_right", 2, 2, right},       {"zul_substring", 3, 3, substring},
    {"zul_replicate", 2, 2, replicate}, {"zul_char", 1, 1, charOf},       {"zul_nchar", 1, 1, ncharOf},
    {"zul_ascii", 1, 1, ascii},         {"zul_str", 1, 3, str},
};

} // namespace

std::span<const Function> textFunctions()
{
    return table;
}

} // namespace zul::dialect
