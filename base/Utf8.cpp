#include "base/Utf8.h"

#include <type_traits>

namespace zul {

namespace {

/// How many units from the beginning are ASCII, which is the same in all forms; most texts are nothing else.
template <typename Unit>
std::size_t asciiPrefix(std::basic_string_view<Unit> text) noexcept
{
    std::size_t i = 0;
    while (i < text.size() && static_cast<std::make_unsigned_t<Unit>>(text[i]) < 0x80) {
        ++i;
    }
    return i;
}

bool isSurrogate(char32_t character) noexcept
{
    return character >= 0xD800 && character < 0xE000;
}

void appendUtf16(std::u16string& text, char32_t character)
{
    if (character < 0x10000) {
        text.push_back(static_cast<char16_t>(character));
        return;
    }
    text.push_back(static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10U)));
    text.push_back(static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FFU)));
}

} // namespace

Utf8Character utf8CharacterAt(std::string_view text, std::size_t at) noexcept
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(at);
    if (first < 0x80) {
        return {first, 1, true};
    }
    // No sequence begins with a byte that continues one, nor with those of overlong forms of ASCII.
    const std::size_t length = first < 0xC2   ? 0U
                               : first < 0xE0 ? 2U
                               : first < 0xF0 ? 3U
                               : first < 0xF5 ? 4U
                                              : 0U;
    if (length == 0) {
        return {};
    }
    char32_t value = first & (0xFFU >> (length + 1));
    std::size_t bytes = 1;
    while (bytes < length && at + bytes < text.size() && (byte(at + bytes) & 0xC0U) == 0x80U) {
        value = (value << 6U) | (byte(at + bytes++) & 0x3FU);
    }
    const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    if (bytes < length || overlong || value > 0x10FFFF || isSurrogate(value)) {
        return {replacementCharacter, bytes, false};
    }
    return {value, bytes, true};
}

std::size_t firstInvalidUtf8(std::string_view text) noexcept
{
    for (std::size_t at = asciiPrefix(text); at < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, at);
        if (!character.isWellFormed) {
            return at;
        }
        at += character.bytes;
    }
    return std::string_view::npos;
}

std::size_t characterSize(std::string_view text, std::size_t at) noexcept
{
    if (at >= text.size()) {
        return 0;
    }
    const Utf8Character character = utf8CharacterAt(text, at);
    return character.isWellFormed ? character.bytes : 1;
}

std::size_t characterCount(std::string_view text) noexcept
{
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); at += characterSize(text, at)) {
        ++count;
    }
    return count;
}

std::string_view leftCharacters(std::string_view text, std::size_t count) noexcept
{
    std::size_t at = 0;
    for (; count > 0 && at < text.size(); --count) {
        at += characterSize(text, at);
    }
    return text.substr(0, at);
}

void appendUtf8(std::string& text, char32_t character)
{
    const auto tail = [&](unsigned shift) {
        text.push_back(static_cast<char>(0x80U | ((character >> shift) & 0x3FU)));
    };
    if (character < 0x80) {
        text.push_back(static_cast<char>(character));
    } else if (character < 0x800) {
        text.push_back(static_cast<char>(0xC0U | (character >> 6U)));
        tail(0);
    } else if (character < 0x10000) {
        text.push_back(static_cast<char>(0xE0U | (character >> 12U)));
        tail(6);
        tail(0);
    } else {
        text.push_back(static_cast<char>(0xF0U | (character >> 18U)));
        tail(12);
        tail(6);
        tail(0);
    }
}

std::u32string charactersFromUtf8(std::string_view text)
{
    std::u32string characters;
    characters.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        characters += nextCharacter(text, at);
    }
    return characters;
}

std::string utf8FromCharacters(std::u32string_view characters)
{
    std::string text;
    text.reserve(characters.size());
    for (const char32_t character : characters) {
        appendUtf8(text, character);
    }
    return text;
}

std::u16string utf16FromUtf8(std::string_view text)
{
    const std::size_t plain = asciiPrefix(text);
    std::u16string result(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(plain));
    result.reserve(text.size());
    for (std::size_t at = plain; at < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, at);
        appendUtf16(result, character.value);
        at += character.bytes;
    }
    return result;
}

std::string utf8FromUtf16(std::u16string_view text)
{
    const std::size_t plain = asciiPrefix(text);
    std::string result(plain, '\0');
    for (std::size_t i = 0; i < plain; ++i) {
        result[i] = static_cast<char>(text[i]);
    }
    result.reserve(text.size());
    for (std::size_t i = plain; i < text.size(); ++i) {
        char32_t character = text[i];
        if (isSurrogate(character)) {
            const bool pair =
                character < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
            character = pair ? 0x10000 + ((character - 0xD800) << 10U) + (text[i + 1] - 0xDC00U)
                             : replacementCharacter;
            i += pair ? 1 : 0;
        }
        appendUtf8(result, character);
    }
    return result;
}

} // namespace zul
