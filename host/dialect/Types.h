#pragma once
// The types of Transact-SQL: which names exist, what they mean, how a column of that type is declared.

#include "host/dialect/Ast.h"
#include "host/dialect/Dialect.h"

#include <string>
#include <string_view>

namespace zul::dialect {

/// A type's name, in small letters.
bool isKnownType(std::string_view name);
ColumnType columnTypeNamed(std::string_view name);

/// How a table's column of this type is declared: the type's own name, so that a reader of the declaration
/// learns it, with COLLATE NOCASE for texts.
std::string declarationOf(const TypeName& type);

inline bool isNumeric(ColumnType type)
{
    return type == ColumnType::Bit || type == ColumnType::Integer || type == ColumnType::Decimal ||
           type == ColumnType::Real;
}

inline bool isMoment(ColumnType type)
{
    return type == ColumnType::Date || type == ColumnType::DateTime;
}

} // namespace zul::dialect
