#include "host/dialect/base/Utf8.h"

namespace zul::dialect {

namespace {

// Length of the well-formed sequence at 'at', 0 when it is broken.
std::size_t sequenceLength(std::string_view text, std::size_t at, char32_t& character)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(at);
    std::size_t length = 0;
    char32_t lowest = 0;
    if (first < 0x80U) {
        character = first;
        return 1;
    }
    if (first >= 0xC2U && first <= 0xDFU) {
        length = 2;
        lowest = 0x80;
        character = first & 0x1FU;
    } else if ((first & 0xF0U) == 0xE0U) {
        length = 3;
        lowest = 0x800;
        character = first & 0x0FU;
    } else if (first >= 0xF0U && first <= 0xF4U) {
        length = 4;
        lowest = 0x10000;
        character = first & 0x07U;
    } else {
        return 0;
    }
    if (at + length > text.size()) {
        return 0;
    }
    for (std::size_t i = at + 1; i < at + length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) {
            return 0;
        }
        character = (character << 6U) | (byte(i) & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    return character < lowest || character > 0x10FFFF || surrogate ? 0 : length;
}

} // namespace

std::size_t firstInvalidUtf8(std::string_view text)
{
    std::size_t at = 0;
    while (at < text.size()) {
        char32_t character = 0;
        const std::size_t length = sequenceLength(text, at, character);
        if (length == 0) {
            return at;
        }
        at += length;
    }
    return std::string_view::npos;
}

char32_t nextCharacter(std::string_view text, std::size_t& at)
{
    char32_t character = 0;
    const std::size_t length = sequenceLength(text, at, character);
    if (length == 0) {
        return static_cast<unsigned char>(text[at++]);
    }
    at += length;
    return character;
}

void appendCharacter(std::string& text, char32_t character)
{
    const auto add = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (character < 0x80) {
        add(character);
    } else if (character < 0x800) {
        add(0xC0U | (character >> 6U));
        add(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        add(0xE0U | (character >> 12U));
        add(0x80U | ((character >> 6U) & 0x3FU));
        add(0x80U | (character & 0x3FU));
    } else {
        add(0xF0U | (character >> 18U));
        add(0x80U | ((character >> 12U) & 0x3FU));
        add(0x80U | ((character >> 6U) & 0x3FU));
        add(0x80U | (character & 0x3FU));
    }
}

std::u32string toCharacters(std::string_view text)
{
    std::u32string characters;
    characters.reserve(text.size());
    std::size_t at = 0;
    while (at < text.size()) {
        characters += nextCharacter(text, at);
    }
    return characters;
}

std::string toUtf8(std::u32string_view characters)
{
    std::string text;
    text.reserve(characters.size());
    for (const char32_t character : characters) {
        appendCharacter(text, character);
    }
    return text;
}

char32_t lowerCharacter(char32_t c)
{
    if (c < 0x80) {
        return c >= U'A' && c <= U'Z' ? c + 0x20 : c;
    }
    if (c >= 0xC0 && c <= 0xDE) {
        return c == 0xD7 ? c : c + 0x20;
    }
    if (c == 0x178) {
        return 0xFF;
    }
    // Latin Extended-A stands in pairs; the pairs shift by one between 0x139 and 0x148 and from 0x179 on.
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) {
        return (c & 1U) != 0 ? c + 1 : c;
    }
    if (c >= 0x100 && c <= 0x177 && c != 0x130 && c != 0x131 && c != 0x138 && c != 0x149) {
        return (c & 1U) == 0 ? c + 1 : c;
    }
    if ((c >= 0x391 && c <= 0x3A9 && c != 0x3A2) || (c >= 0x410 && c <= 0x42F)) {
        return c + 0x20;
    }
    if (c >= 0x400 && c <= 0x40F) {
        return c + 0x50;
    }
    return c;
}

char32_t upperCharacter(char32_t c)
{
    if (c < 0x80) {
        return c >= U'a' && c <= U'z' ? c - 0x20 : c;
    }
    if (c >= 0xE0 && c <= 0xFE) {
        return c == 0xF7 ? c : c - 0x20;
    }
    if (c == 0xFF) {
        return 0x178;
    }
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) {
        return (c & 1U) == 0 ? c - 1 : c;
    }
    if (c >= 0x100 && c <= 0x177 && c != 0x130 && c != 0x131 && c != 0x138 && c != 0x149) {
        return (c & 1U) != 0 ? c - 1 : c;
    }
    if ((c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) || (c >= 0x430 && c <= 0x44F)) {
        return c - 0x20;
    }
    if (c >= 0x450 && c <= 0x45F) {
        return c - 0x50;
    }
    return c;
}

} // namespace zul::dialect
