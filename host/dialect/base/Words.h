#pragma once
// Words of the language: compared and changed in ASCII only, whatever the locale.

#include <string>
#include <string_view>

namespace zul::dialect {

bool sameWord(std::string_view a, std::string_view b);
std::string upperAscii(std::string_view text);
std::string lowerAscii(std::string_view text);

/// A keyword, in any case, that cannot be a bare name in Transact-SQL.
bool isReserved(std::string_view word);

} // namespace zul::dialect
