#include "ftp/Utf8Text.h"

namespace zul::ftp {

std::size_t characterSize(std::string_view text, std::size_t position)
{
    if (position >= text.size())
        return 0;
    const auto first = static_cast<unsigned char>(text[position]);
    const std::size_t length = first < 0xC2   ? 1U
                               : first < 0xE0 ? 2U
                               : first < 0xF0 ? 3U
                               : first < 0xF5 ? 4U
                                              : 1U;
    if (position + length > text.size())
        return 1;
    for (std::size_t i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(text[position + i]) & 0xC0U) != 0x80U)
            return 1;
    }
    return length;
}

std::size_t characterCount(std::string_view text)
{
    std::size_t count = 0;
    for (std::size_t position = 0; position < text.size(); position += characterSize(text, position))
        ++count;
    return count;
}

std::string_view leftCharacters(std::string_view text, std::size_t count)
{
    std::size_t position = 0;
    while (count > 0 && position < text.size()) {
        position += characterSize(text, position);
        --count;
    }
    return text.substr(0, position);
}

} // namespace zul::ftp
