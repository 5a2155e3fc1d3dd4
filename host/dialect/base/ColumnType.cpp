#include "host/dialect/base/ColumnType.h"

#include "host/dialect/base/Words.h"

#include <algorithm>

namespace zul::dialect {

namespace {

struct Name
{
    std::string_view name;
    ColumnType type;
    bool transact; ///< a type of Transact-SQL, not only of declarations that other programs write
};

constexpr Name names[] = {
    {"int", ColumnType::Integer, true},
    {"integer", ColumnType::Integer, true},
    {"bigint", ColumnType::Integer, true},
    {"smallint", ColumnType::Integer, true},
    {"tinyint", ColumnType::Integer, true},
    {"bit", ColumnType::Bit, true},
    {"float", ColumnType::Real, true},
    {"real", ColumnType::Real, true},
    {"decimal", ColumnType::Decimal, true},
    {"dec", ColumnType::Decimal, true},
    {"numeric", ColumnType::Decimal, true},
    {"money", ColumnType::Decimal, true},
    {"smallmoney", ColumnType::Decimal, true},
    {"varchar", ColumnType::Text, true},
    {"nvarchar", ColumnType::Text, true},
    {"char", ColumnType::Text, true},
    {"nchar", ColumnType::Text, true},
    {"text", ColumnType::Text, true},
    {"ntext", ColumnType::Text, true},
    {"sysname", ColumnType::Text, true},
    {"uniqueidentifier", ColumnType::Text, true},
    {"datetime", ColumnType::DateTime, true},
    {"smalldatetime", ColumnType::DateTime, true},
    {"datetime2", ColumnType::DateTime, true},
    {"date", ColumnType::Date, true},
    {"time", ColumnType::Time, true},
    {"binary", ColumnType::Binary, true},
    {"varbinary", ColumnType::Binary, true},
    {"image", ColumnType::Binary, true},
    {"int2", ColumnType::Integer, false},
    {"int4", ColumnType::Integer, false},
    {"int8", ColumnType::Integer, false},
    {"mediumint", ColumnType::Integer, false},
    {"bool", ColumnType::Bit, false},
    {"boolean", ColumnType::Bit, false},
    {"double", ColumnType::Real, false},
    {"character", ColumnType::Text, false},
    {"clob", ColumnType::Text, false},
    {"timestamp", ColumnType::DateTime, false},
    {"blob", ColumnType::Binary, false},
};

const Name* find(std::string_view name)
{
    const auto* const found = std::find_if(std::begin(names), std::end(names),
                                           [&](const Name& known) { return known.name == name; });
    return found != std::end(names) ? found : nullptr;
}

} // namespace

bool isTransactType(std::string_view name)
{
    const Name* const known = find(name);
    return known != nullptr && known->transact;
}

ColumnType columnTypeNamed(std::string_view name)
{
    const Name* const known = find(name);
    return known != nullptr ? known->type : ColumnType::Unknown;
}

ColumnType columnTypeOf(std::string_view declaration)
{
    const std::size_t start = declaration.find_first_not_of(" [\"`");
    if (start == std::string_view::npos) {
        return ColumnType::Unknown;
    }
    declaration.remove_prefix(start);
    return columnTypeNamed(lowerAscii(declaration.substr(0, declaration.find_first_of(" (]\"`"))));
}

} // namespace zul::dialect
