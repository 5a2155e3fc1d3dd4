#pragma once
// What kinds of values there are, as far as the translation tells them apart.

#include <string_view>

namespace zul::dialect {

/// What kind of value a column or an expression holds, as far as it is known before the statement runs.
enum class ColumnType
{
    Unknown,
    Bit,      ///< 0 or 1
    Integer,  ///< tinyint to bigint
    Decimal,  ///< decimal, numeric, money
    Real,     ///< float, real
    Text,     ///< char to nvarchar(max), text, ntext, uniqueidentifier
    Date,     ///< date: stored as midnight
    DateTime, ///< datetime, datetime2, smalldatetime
    Time,     ///< time of day
    Binary    ///< varbinary, image
};

/// The column type of a declaration such as "nvarchar(50)", "DATETIME" or "INTEGER"; Unknown when it says
/// nothing. Case, length and what follows the type's name do not matter.
ColumnType columnTypeOf(std::string_view declaration);

/// The same of a type's bare name, in small letters.
ColumnType columnTypeNamed(std::string_view name);

/// True for the names that Transact-SQL has, in small letters; the engine's declarations know a few more.
bool isTransactType(std::string_view name);

inline bool isNumeric(ColumnType type)
{
    return type == ColumnType::Bit || type == ColumnType::Integer || type == ColumnType::Decimal ||
           type == ColumnType::Real;
}

/// A day with its time.
inline bool isMoment(ColumnType type)
{
    return type == ColumnType::Date || type == ColumnType::DateTime;
}

} // namespace zul::dialect
