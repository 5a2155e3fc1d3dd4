#pragma once
// Values on their way to the database, and what a column is.
#include "host/dialect/Dialect.h"

#include <cstdint>
#include <string>
#include <variant>

namespace zul::host {

/// An automation date (see DateText.h), to the millisecond.
struct DateValue
{
    double days = 0.0;
    bool operator==(const DateValue&) const = default;
};

/// A decimal number in its invariant text form ("-12.50"), exact.
struct DecimalValue
{
    std::string text;
    bool operator==(const DecimalValue&) const = default;
};

/// A parameter of a statement. The first alternative is NULL; texts are UTF-8.
using Value = std::variant<std::monostate, bool, std::int64_t, double, std::string, DateValue, DecimalValue>;

/// What a column was declared as, in the words of the dialect layer; Unknown for an expression, whose cells tell
/// their kind themselves.
using dialect::ColumnType;

/// A column of a row set.
struct ColumnInfo
{
    std::string name;     ///< as the row set names it
    std::string baseName; ///< the table's own name for it; equal to name where that is not known
    ColumnType type = ColumnType::Unknown;
    int integerBytes = 0; ///< of an Integer column: 2, 4 or 8; 0 where the value itself tells its size
};

} // namespace zul::host
