#include "host/database/products/Product.h"

#include "base/DateText.h"
#include "host/database/Decimal.h"
#include "host/database/Names.h"
#include "host/database/Schema.h"
#include "host/dialect/writer/Sql.h"

namespace zul::host {

std::string Product::literal(const Value& value) const
{
    if (std::holds_alternative<std::monostate>(value)) {
        return "NULL";
    }
    if (const auto* flag = std::get_if<bool>(&value)) {
        return std::string(truth(*flag));
    }
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*whole);
    }
    if (const auto* number = std::get_if<double>(&value)) {
        return decimalText(*number);
    }
    if (const auto* decimal = std::get_if<DecimalValue>(&value)) {
        return decimal->text;
    }
    if (const auto* date = std::get_if<DateValue>(&value)) {
        return dialect::quotedText(momentText(date->days));
    }
    return std::string(textMark()) + dialect::quotedText(std::get<std::string>(value));
}

std::string Product::sameValue(const ColumnInfo& column) const
{
    return quotedName(column.baseName) + " = ?";
}

std::string Product::typeText(const ColumnDefinition& column) const
{
    using Kind = ColumnDefinition::Kind;
    const TypeNames names = typeNames();
    switch (column.kind) {
    case Kind::Integer:
        return std::string(names.integer);
    case Kind::SmallInt:
        return "smallint";
    case Kind::Boolean:
        return std::string(names.boolean);
    case Kind::Money:
        return "decimal(18,2)";
    case Kind::Real:
        return std::string(names.real);
    case Kind::Text:
        return std::string(names.text) + '(' + std::to_string(column.length) + ')' +
               std::string(names.textCollation);
    case Kind::LongText:
        return std::string(names.longText);
    case Kind::DateTime:
        return std::string(names.dateTime);
    }
    return {};
}

std::string Product::momentText(double date) const
{
    return formatDate(date);
}

const Product& productNamed(std::string_view name)
{
    const std::string folded = foldedName(name);
    if (folded.find("postgres") != std::string::npos) {
        return postgresProduct();
    }
    if (folded.find("sqlite") != std::string::npos) {
        return sqliteProduct();
    }
    return transactSqlProduct();
}

} // namespace zul::host
