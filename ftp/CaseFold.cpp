#include "ftp/CaseFold.h"

#include "ftp/Utf8Text.h"

#include <cstddef>

namespace zul::ftp {

namespace {

/// Only letters of one or two bytes fold, and both forms of a letter have the same number of bytes.
char32_t lower(char32_t c)
{
    const auto between = [c](char32_t low, char32_t high) { return c >= low && c <= high; };
    if (between(U'A', U'Z'))
        return c + 0x20;
    if (between(0xC0, 0xDE) && c != 0xD7)
        return c + 0x20;
    // Pairs of an even upper and an odd lower letter, then pairs the other way round.
    if (between(0x100, 0x12F) || between(0x132, 0x137) || between(0x14A, 0x177) || between(0x460, 0x481) ||
        between(0x48A, 0x4BF) || between(0x4D0, 0x52F))
        return c | 1U;
    if ((between(0x139, 0x148) || between(0x179, 0x17E)) && (c & 1U) != 0)
        return c + 1;
    if (c == 0x178)
        return 0xFF;
    if (c == 0x386)
        return 0x3AC;
    if (between(0x388, 0x38A))
        return c + 0x25;
    if (c == 0x38C)
        return 0x3CC;
    if (c == 0x38E || c == 0x38F)
        return c + 0x3F;
    if (between(0x391, 0x3AB) && c != 0x3A2)
        return c + 0x20;
    if (between(0x410, 0x42F))
        return c + 0x20;
    if (between(0x400, 0x40F))
        return c + 0x50;
    return c;
}

} // namespace

std::string foldCase(std::string_view text)
{
    std::string folded;
    folded.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t size = characterSize(text, position);
        const auto first = static_cast<unsigned char>(text[position]);
        if (size == 1 && first < 0x80) {
            folded += static_cast<char>(lower(first));
        } else if (size == 2) {
            const auto second = static_cast<unsigned char>(text[position + 1]);
            const char32_t c = lower(static_cast<char32_t>(((first & 0x1FU) << 6U) | (second & 0x3FU)));
            folded += static_cast<char>(0xC0U | (c >> 6U));
            folded += static_cast<char>(0x80U | (c & 0x3FU));
        } else {
            folded += text.substr(position, size);
        }
        position += size;
    }
    return folded;
}

} // namespace zul::ftp
