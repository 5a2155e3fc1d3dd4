#pragma once
// UTF-8 as characters, and to and from UTF-16. Nothing fails but for lack of memory: each function says what
// it makes of bytes that are not well-formed.
#include <cstddef>
#include <string>
#include <string_view>

namespace zul {

/// Stands for what is not well-formed.
inline constexpr char32_t replacementCharacter = 0xFFFD;

/// What stands at one place of a text.
struct Utf8Character
{
    char32_t value = replacementCharacter; ///< U+FFFD when the bytes are not well-formed
    std::size_t bytes = 1;                 ///< 1 to 4; of a broken sequence those that belong together
    bool isWellFormed = false;
};

/// The character at @p at, which is inside the text. Overlong forms, halves of a surrogate pair and what lies
/// beyond U+10FFFF are not well-formed.
Utf8Character utf8CharacterAt(std::string_view text, std::size_t at) noexcept;

/// The byte offset of the first byte that is not well-formed; npos when all is well.
std::size_t firstInvalidUtf8(std::string_view text) noexcept;

/// Reads the character at @p at and moves @p at behind it. A byte of a broken sequence reads as itself (0x80 to
/// 0xFF), so that every text can be walked. @p at is inside the text.
inline char32_t nextCharacter(std::string_view text, std::size_t& at) noexcept
{
    const auto first = static_cast<unsigned char>(text[at]);
    if (first >= 0x80) {
        if (const Utf8Character character = utf8CharacterAt(text, at); character.isWellFormed) {
            at += character.bytes;
            return character.value;
        }
    }
    ++at;
    return first;
}

/// The number of bytes of the character at @p at: 1 to 4, 0 at the end. A byte of a broken sequence counts as
/// one character.
std::size_t characterSize(std::string_view text, std::size_t at) noexcept;

/// The length in characters.
std::size_t characterCount(std::string_view text) noexcept;

/// At most @p count characters from the left.
std::string_view leftCharacters(std::string_view text, std::size_t count) noexcept;

/// Writes one character of at most U+10FFFF.
void appendUtf8(std::string& text, char32_t character);

/// All characters of a text, read as nextCharacter reads them; and back.
std::u32string charactersFromUtf8(std::string_view text);
std::string utf8FromCharacters(std::u32string_view characters);

/// A sequence that is not well-formed, and half a surrogate pair, come out as U+FFFD.
std::u16string utf16FromUtf8(std::string_view text);
std::string utf8FromUtf16(std::u16string_view text);

} // namespace zul
