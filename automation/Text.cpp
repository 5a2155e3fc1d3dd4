#include "automation/Text.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace zul {

namespace {

constexpr char16_t replacement = 0xFFFD;

void append(std::u16string& text, char32_t c)
{
    if (c < 0x10000) {
        text.push_back(static_cast<char16_t>(c));
        return;
    }
    text.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
    text.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
}

void append(std::string& text, char32_t c)
{
    const auto tail = [&](unsigned shift) {
        text.push_back(static_cast<char>(0x80 | ((c >> shift) & 0x3F)));
    };
    if (c < 0x80) {
        text.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        text.push_back(static_cast<char>(0xC0 | (c >> 6)));
        tail(0);
    } else if (c < 0x10000) {
        text.push_back(static_cast<char>(0xE0 | (c >> 12)));
        tail(6);
        tail(0);
    } else {
        text.push_back(static_cast<char>(0xF0 | (c >> 18)));
        tail(12);
        tail(6);
        tail(0);
    }
}

// How many units from the beginning are ASCII, which is the same in both forms; most texts are nothing else.
template <typename Unit>
std::size_t asciiPrefix(std::basic_string_view<Unit> text) noexcept
{
    std::size_t i = 0;
    while (i < text.size() && static_cast<std::make_unsigned_t<Unit>>(text[i]) < 0x80) {
        ++i;
    }
    return i;
}

char16_t folded(char16_t c) noexcept
{
    const bool upper = (c >= u'A' && c <= u'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7);
    return upper ? static_cast<char16_t>(c + 0x20) : c;
}

} // namespace

std::u16string utf16FromUtf8(std::string_view text)
{
    const std::size_t plain = asciiPrefix(text);
    std::u16string result(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(plain));
    result.reserve(text.size());
    for (std::size_t i = plain; i < text.size();) {
        const auto lead = static_cast<std::uint8_t>(text[i]);
        const std::size_t length = lead < 0x80                   ? 1
                                   : lead >= 0xC2 && lead < 0xE0 ? 2
                                   : lead >= 0xE0 && lead < 0xF0 ? 3
                                   : lead >= 0xF0 && lead < 0xF5 ? 4
                                                                 : 0;
        char32_t c = length == 1 ? lead : lead & (0xFFu >> (length + 1));
        std::size_t used = 1;
        while (used < length && i + used < text.size() &&
               (static_cast<std::uint8_t>(text[i + used]) & 0xC0) == 0x80) {
            c = (c << 6) | (static_cast<std::uint8_t>(text[i + used]) & 0x3Fu);
            ++used;
        }
        const bool overlong = (length == 3 && c < 0x800) || (length == 4 && c < 0x10000);
        if (length == 0 || used != length || overlong || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) {
            result.push_back(replacement);
        } else {
            append(result, c);
        }
        i += used;
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
        char32_t c = text[i];
        if (c >= 0xD800 && c < 0xE000) {
            const bool pair =
                c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
            c = pair ? 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00u) : replacement;
            i += pair ? 1 : 0;
        }
        append(result, c);
    }
    return result;
}

bool equalNames(std::u16string_view a, std::u16string_view b) noexcept
{
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (folded(a[i]) != folded(b[i])) {
            return false;
        }
    }
    return true;
}

} // namespace zul
