#pragma once
// UTF-8 as characters: reading, writing, and the upper and lower case of European letters.

#include <cstddef>
#include <string>
#include <string_view>

namespace zul::dialect {

/// The byte offset of the first byte that is not well-formed UTF-8; npos when all is well.
std::size_t firstInvalidUtf8(std::string_view text);

/// Reads the character at 'at' and moves 'at' behind it. A broken byte reads as itself (0x80 to 0xFF), so that
/// every text can be walked. 'at' must be inside the text.
char32_t nextCharacter(std::string_view text, std::size_t& at);

void appendCharacter(std::string& text, char32_t character);

std::u32string toCharacters(std::string_view text);
std::string toUtf8(std::u32string_view characters);

/// Simple case mapping of Latin, Greek and Cyrillic letters; other characters come back as they are.
char32_t lowerCharacter(char32_t character);
char32_t upperCharacter(char32_t character);

} // namespace zul::dialect
