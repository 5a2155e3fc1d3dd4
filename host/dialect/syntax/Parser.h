#pragma once
// Recursive descent over the tokens of a Transact-SQL batch.

#include "host/dialect/syntax/Ast.h"

#include <string_view>
#include <vector>

namespace zul::dialect {

/// How deep parentheses, sub-selects, CASE and the like may stand inside each other. The engine's own parser
/// gives up near this depth too; a text that goes deeper is refused with its place.
inline constexpr int deepestNesting = 90;

/// The statements of a batch in order. Throws DialectError.
std::vector<Statement> parseBatch(std::string_view tsql);

} // namespace zul::dialect
