#pragma once
// Names of tables and columns as they stand in statements.
#include <string>
#include <string_view>

namespace zul::host {

/// The last part of a name, without "dbo." and without brackets or quotes: "[dbo].[TMK_Messaggi]" gives
/// "TMK_Messaggi".
std::string bareName(std::string_view name);

/// The name in brackets; one that holds a closing bracket in double quotes.
std::string bracketed(std::string_view name);

/// Lower case of the ASCII letters; databases compare names of columns and tables so.
std::string foldedName(std::string_view name);

/// Whether two names are the same but for the case of their ASCII letters.
bool sameName(std::string_view a, std::string_view b);

} // namespace zul::host
