#pragma once
// Letters in another case, and texts compared without regard to it, whatever the process's locale is.
#include <string>
#include <string_view>

namespace zul {

/// The other case of a Latin, Greek or Cyrillic letter where that is one character and the way back leads to the
/// same letter; every other character as it is. Up to U+07FF both forms have the same number of bytes in UTF-8.
char32_t lowerCharacter(char32_t character) noexcept;
char32_t upperCharacter(char32_t character) noexcept;

/// @p text (UTF-8) in the form under which two texts that differ in case only are equal: small letters. Bytes
/// that are not well-formed stay.
std::string foldCase(std::string_view text);

/// Equal but for case: how names of members and classes, and of fields, are compared.
bool equalNames(std::u16string_view a, std::u16string_view b) noexcept;

/// The same for ASCII letters alone, which is how databases compare names of tables and columns.
constexpr char lowerAscii(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string foldAscii(std::string_view text);
bool equalAscii(std::string_view a, std::string_view b) noexcept;

} // namespace zul
