#include "host/dialect/Types.h"

#include "host/dialect/Lexer.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zul::dialect {

namespace {

constexpr std::array<std::pair<std::string_view, ColumnType>, 40> typeNames = {{
    {"int", ColumnType::Integer},
    {"integer", ColumnType::Integer},
    {"bigint", ColumnType::Integer},
    {"smallint", ColumnType::Integer},
    {"tinyint", ColumnType::Integer},
    {"bit", ColumnType::Bit},
    {"boolean", ColumnType::Bit},
    {"float", ColumnType::Real},
    {"real", ColumnType::Real},
    {"double", ColumnType::Real},
    {"decimal", ColumnType::Decimal},
    {"dec", ColumnType::Decimal},
    {"numeric", ColumnType::Decimal},
    {"money", ColumnType::Decimal},
    {"smallmoney", ColumnType::Decimal},
    {"varchar", ColumnType::Text},
    {"nvarchar", ColumnType::Text},
    {"char", ColumnType::Text},
    {"nchar", ColumnType::Text},
    {"text", ColumnType::Text},
    {"ntext", ColumnType::Text},
    {"sysname", ColumnType::Text},
    {"uniqueidentifier", ColumnType::Text},
    {"datetime", ColumnType::DateTime},
    {"smalldatetime", ColumnType::DateTime},
    {"datetime2", ColumnType::DateTime},
    {"timestamp", ColumnType::DateTime},
    {"date", ColumnType::Date},
    {"time", ColumnType::Time},
    {"binary", ColumnType::Binary},
    {"varbinary", ColumnType::Binary},
    {"image", ColumnType::Binary},
    {"blob", ColumnType::Binary},
    {"character", ColumnType::Text},
    {"clob", ColumnType::Text},
    {"int2", ColumnType::Integer},
    {"int4", ColumnType::Integer},
    {"int8", ColumnType::Integer},
    {"mediumint", ColumnType::Integer},
    {"bool", ColumnType::Bit},
}};

constexpr std::size_t transactTypes = 32; // from "blob" on: names that only declarations use

} // namespace

bool isKnownType(std::string_view name)
{
    const auto end = typeNames.begin() + transactTypes;
    return name != "timestamp" && name != "double" && name != "boolean" &&
           std::find_if(typeNames.begin(), end, [&](const auto& type) { return type.first == name; }) != end;
}

ColumnType columnTypeNamed(std::string_view name)
{
    for (const auto& [known, type] : typeNames)
        if (known == name)
            return type;
    return ColumnType::Unknown;
}

ColumnType columnTypeOf(std::string_view declaration)
{
    const std::size_t start = declaration.find_first_not_of(" [\"`");
    if (start == std::string_view::npos)
        return ColumnType::Unknown;
    declaration.remove_prefix(start);
    return columnTypeNamed(lowerAscii(declaration.substr(0, declaration.find_first_of(" (]\"`"))));
}

std::string declarationOf(const TypeName& type)
{
    const ColumnType kind = columnTypeNamed(type.name);
    if (kind == ColumnType::Binary)
        return "BLOB";
    std::string declaration = upperAscii(type.name);
    if (type.name == "int")
        declaration = "INTEGER";
    if (type.name == "sysname")
        declaration = "NVARCHAR(128)"; // the name itself would give the column no text affinity
    if (type.length)
        declaration +=
            "(" + std::to_string(*type.length) + (type.scale ? "," + std::to_string(*type.scale) : "") + ")";
    if (kind == ColumnType::Text)
        declaration += " COLLATE NOCASE";
    return declaration;
}

} // namespace zul::dialect
