#pragma once
// Writes statements as SQLite's SQL, with the types of columns and expressions as far as they are known.

#include "host/dialect/syntax/Statement.h"
#include "host/dialect/writer/Catalogue.h"
#include "host/dialect/writer/Translation.h"

#include <string_view>

namespace zul::dialect {

/// 'tsql' is the text that the tree was read from; errors name places in it. Throws DialectError.
Translation written(const ParsedStatement& statement, std::string_view tsql, const ColumnTypes& columnTypes,
                    const TableColumns& tableColumns);

} // namespace zul::dialect
