#pragma once
// What a translation asks of the database: which columns a table has, and what they hold. Names come as written
// in the statement: any case, without schema and brackets.

#include "host/dialect/base/ColumnType.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zul::dialect {

/// Answers the type of a table's column; Unknown when there is no such table or column.
using ColumnTypes = std::function<ColumnType(std::string_view table, std::string_view column)>;

/// Answers the columns that an INSERT without a column list fills, in order (an identity column is not among
/// them); nothing when the table is not known.
using TableColumns = std::function<std::vector<std::string>(std::string_view table)>;

/// Answers the columns of a table's primary key; nothing when it has none or is not known.
using TableKey = std::function<std::vector<std::string>(std::string_view table)>;

} // namespace zul::dialect
