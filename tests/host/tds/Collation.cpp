#include "tests/host/tds/Collation.h"

#include "base/CaseFold.h"
#include "base/Utf8.h"

#include <algorithm>
#include <string>

namespace zul::tds {

namespace {

std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return text;
}

// The letter without its accent, of those that our data has.
char32_t bareLetter(char32_t letter)
{
    constexpr std::u32string_view accented = U"àáâãäåèéêëìíîïòóôõöùúûüçñ";
    constexpr std::u32string_view bare = U"aaaaaaeeeeiiiiooooouuuucn";
    const std::size_t at = accented.find(letter);
    return at == std::u32string_view::npos ? letter : bare[at];
}

// Signs stand before digits, digits before letters.
char32_t weight(char32_t lower)
{
    if (lower >= '0' && lower <= '9') {
        return 0x200000 + lower;
    }
    if ((lower >= 'a' && lower <= 'z') || lower >= 0xAA) {
        return 0x400000 + bareLetter(lower);
    }
    return lower;
}

bool isLight(char32_t character)
{
    return character == '\'' || character == '-';
}

} // namespace

int compareTexts(std::string_view a, std::string_view b)
{
    a = withoutBlanks(a);
    b = withoutBlanks(b);
    if (a == b) {
        return 0;
    }
    std::size_t atA = 0;
    std::size_t atB = 0;
    int lesser = 0; // what decides when the letters are the same
    const auto next = [](std::string_view text, std::size_t& at) {
        return at < text.size() ? lowerCharacter(nextCharacter(text, at)) : char32_t{0};
    };
    while (true) {
        char32_t left = next(a, atA);
        char32_t right = next(b, atB);
        while (isLight(left) != isLight(right)) {
            if (lesser == 0) {
                lesser = isLight(left) ? 1 : -1;
            }
            (isLight(left) ? left : right) = isLight(left) ? next(a, atA) : next(b, atB);
        }
        if (left == right) {
            if (left == 0) {
                return lesser;
            }
            continue;
        }
        const char32_t heavy = weight(left);
        const char32_t other = weight(right);
        if (heavy != other) {
            return heavy < other ? -1 : 1;
        }
        if (lesser == 0) {
            lesser = left < right ? -1 : 1;
        }
    }
}

} // namespace zul::tds
