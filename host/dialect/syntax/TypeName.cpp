#include "host/dialect/syntax/TypeName.h"

#include "host/dialect/base/ColumnType.h"
#include "host/dialect/base/Words.h"

namespace zul::dialect {

std::string declarationOf(const TypeName& type)
{
    const ColumnType kind = columnTypeNamed(type.name);
    if (kind == ColumnType::Binary) {
        return "BLOB";
    }
    std::string declaration = upperAscii(type.name);
    if (type.name == "int") {
        declaration = "INTEGER";
    }
    if (type.name == "sysname") {
        declaration = "NVARCHAR(128)"; // the name itself would give the column no text affinity
    }
    if (type.length) {
        declaration +=
            "(" + std::to_string(*type.length) + (type.scale ? "," + std::to_string(*type.scale) : "") + ")";
    }
    if (kind == ColumnType::Text) {
        declaration += " COLLATE NOCASE";
    }
    return declaration;
}

} // namespace zul::dialect
