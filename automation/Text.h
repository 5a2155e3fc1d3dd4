// UTF-8 and UTF-16, and the caseless comparison of automation names.
#pragma once

#include <string>
#include <string_view>

namespace zul {

// What is not well-formed comes out as U+FFFD; nothing throws but for lack of memory.
std::u16string utf16FromUtf8(std::string_view text);
std::string utf8FromUtf16(std::u16string_view text);

// Equal but for the case of Latin letters, which is how names of members and classes are compared.
bool equalNames(std::u16string_view a, std::u16string_view b) noexcept;

} // namespace zul
