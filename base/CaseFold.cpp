#include "base/CaseFold.h"

#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace zul {

namespace {

/// Capital letters whose small letter is so many characters further: all from the first to the last, or every
/// second one where capitals and small letters take turns.
struct Capitals
{
    char16_t first;
    char16_t last;
    std::int16_t distance;
    std::uint8_t step;
};

constexpr Capitals capitals[] = {
    {u'A', u'Z', 32, 1},     {0x00C0, 0x00D6, 32, 1}, {0x00D8, 0x00DE, 32, 1}, {0x0100, 0x012E, 1, 2},
    {0x0132, 0x0136, 1, 2},  {0x0139, 0x0147, 1, 2},  {0x014A, 0x0176, 1, 2},  {0x0178, 0x0178, -121, 1},
    {0x0179, 0x017D, 1, 2},  {0x01CD, 0x01DB, 1, 2},  {0x01DE, 0x01EE, 1, 2},  {0x01F8, 0x021E, 1, 2},
    {0x0222, 0x0232, 1, 2},  {0x0386, 0x0386, 38, 1}, {0x0388, 0x038A, 37, 1}, {0x038C, 0x038C, 64, 1},
    {0x038E, 0x038F, 63, 1}, {0x0391, 0x03A1, 32, 1}, {0x03A3, 0x03AB, 32, 1}, {0x0400, 0x040F, 80, 1},
    {0x0410, 0x042F, 32, 1}, {0x0460, 0x0480, 1, 2},  {0x048A, 0x04BE, 1, 2},  {0x04C0, 0x04C0, 15, 1},
    {0x04C1, 0x04CD, 1, 2},  {0x04D0, 0x052E, 1, 2},  {0x1E00, 0x1E94, 1, 2},  {0x1EA0, 0x1EFE, 1, 2},
};

/// The letters of a stretch of characters in another case, each at the place of its letter.
template <char16_t First, char16_t End>
struct Cases
{
    std::array<char16_t, End - First> lower{};
    std::array<char16_t, End - First> upper{};

    constexpr Cases()
    {
        for (std::size_t i = 0; i < lower.size(); ++i) {
            lower[i] = upper[i] = static_cast<char16_t>(First + i);
        }
        for (const Capitals& run : capitals) {
            for (unsigned c = run.first; c <= run.last && c >= First && c < End; c += run.step) {
                const auto small = static_cast<char16_t>(static_cast<int>(c) + run.distance);
                lower[c - First] = small;
                upper[small - First] = static_cast<char16_t>(c);
            }
        }
    }

    static constexpr bool holds(char32_t character) { return character >= First && character < End; }
};

constexpr Cases<0, 0x0530> commonCases;
constexpr Cases<0x1E00, 0x1F00> additionalCases;

} // namespace

char32_t lowerCharacter(char32_t character) noexcept
{
    if (commonCases.holds(character)) {
        return commonCases.lower[character];
    }
    return additionalCases.holds(character) ? additionalCases.lower[character - 0x1E00] : character;
}

char32_t upperCharacter(char32_t character) noexcept
{
    if (commonCases.holds(character)) {
        return commonCases.upper[character];
    }
    return additionalCases.holds(character) ? additionalCases.upper[character - 0x1E00] : character;
}

std::string foldCase(std::string_view text)
{
    std::string folded;
    folded.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, at);
        if (character.isWellFormed) {
            appendUtf8(folded, lowerCharacter(character.value));
        } else {
            folded += text.substr(at, character.bytes);
        }
        at += character.bytes;
    }
    return folded;
}

bool equalNames(std::u16string_view a, std::u16string_view b) noexcept
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char16_t x, char16_t y) {
        return x == y || lowerCharacter(x) == lowerCharacter(y);
    });
}

std::string foldAscii(std::string_view text)
{
    std::string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), lowerAscii);
    return folded;
}

bool equalAscii(std::string_view a, std::string_view b) noexcept
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerAscii(x) == lowerAscii(y); });
}

} // namespace zul
