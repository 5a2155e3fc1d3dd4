// The little that the client needs to know about UTF-8. Bytes that are no UTF-8 count as one character each.
#pragma once

#include <cstddef>
#include <string_view>

namespace zul::ftp {

/// The number of bytes of the character that starts at @p position (1 to 4; 0 at the end).
std::size_t characterSize(std::string_view text, std::size_t position);

/// The length of @p text in characters.
std::size_t characterCount(std::string_view text);

/// At most @p count characters from the left.
std::string_view leftCharacters(std::string_view text, std::size_t count);

} // namespace zul::ftp
