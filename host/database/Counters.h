#pragma once
// Pieces of the statements that work the counters (tabContatori) from which ids are given.
#include <string>
#include <string_view>

namespace zul::host {

/// The largest value of a table's key, 0 for an empty table, as an expression; names as they stand in a statement.
std::string largestId(std::string_view table, std::string_view key);

/// Which counter: its parameters are the bare names of table and key.
inline constexpr std::string_view whichCounter = " WHERE Tabella = ? AND Chiave = ?";

/// Raises an existing counter, the one that the condition finds, beyond what stands in the table. The clause stands
/// behind what is set.
std::string raiseCounterText(std::string_view table, std::string_view key, std::string_view clause,
                             std::string_view condition);

} // namespace zul::host
