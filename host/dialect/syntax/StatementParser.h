#pragma once
// From a Transact-SQL batch to syntax trees: recursive descent over its tokens, in layers that each add their part
// of the grammar (tokens, expressions, queries, schema, statements).

#include "host/dialect/syntax/Statement.h"

#include <string_view>
#include <vector>

namespace zul::dialect {

/// The statements of a batch in order. Throws DialectError.
std::vector<ParsedStatement> parseBatch(std::string_view tsql);

} // namespace zul::dialect
