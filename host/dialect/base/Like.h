#pragma once
// The server's LIKE: % any text, _ one character, [a-z] one of a set, [^a-z] one outside it.

#include <cstddef>
#include <optional>
#include <string_view>

namespace zul::dialect {

/// True when the whole text matches. Letters match in any case, accented ones too; accents count. With an
/// escape character, the character after it stands for itself. A pattern that ends in its escape character
/// matches nothing; a '[' without ']' matches nothing. Never slower than pattern times text.
bool likeMatch(std::string_view pattern, std::string_view text,
               std::optional<char32_t> escape = std::nullopt);

/// The place, from 1 and in characters, of the first part of the text that matches; 0 when none does. A '%' at
/// the pattern's ends frees that end, as in PATINDEX.
std::size_t patternIndex(std::string_view pattern, std::string_view text);

} // namespace zul::dialect
