#pragma once
// Names of tables and columns as they stand in statements.
#include <string>
#include <string_view>

namespace zul::host {

/// The last part of a name, without "dbo." and without brackets or quotes: "[dbo].[TMK_Messaggi]" gives
/// "TMK_Messaggi".
std::string bareName(std::string_view name);

/// The name between two marks, of which the closing one is doubled within it.
std::string enclosed(std::string_view name, char open, char close);

/// Lower case of the ASCII letters; databases compare names of columns and tables so.
std::string foldedName(std::string_view name);

/// Whether two names are the same but for the case of their ASCII letters.
bool sameName(std::string_view a, std::string_view b);

} // namespace zul::host
