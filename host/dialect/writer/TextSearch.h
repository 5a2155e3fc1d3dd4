#pragma once
// A search for a text inside a column: recognised in the tree.

#include "host/dialect/syntax/Ast.h"
#include "host/dialect/writer/Catalogue.h"
#include "host/dialect/writer/Translation.h"

#include <optional>

namespace zul::dialect {

/// The search that a query is, see TextSearch; nothing for every other query.
std::optional<TextSearch> textSearchOf(const Query& query, const ColumnTypes& columnTypes);

} // namespace zul::dialect
