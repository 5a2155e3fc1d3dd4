#include "host/database/VariantValue.h"

#include "base/DateText.h"
#include "base/Utf8.h"
#include "host/database/Cell.h"
#include "host/database/Decimal.h"
#include "host/database/EngineError.h"
#include "host/dialect/base/ColumnType.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

namespace zul::host {

namespace {

[[noreturn]] void refuse(const ColumnInfo& column)
{
    throw EngineError(ErrorCode::BadValue, "the value does not fit the column " + column.name);
}

std::int64_t inRange(std::int64_t number, const ColumnInfo& column)
{
    const auto within = [&](auto smallest, auto largest) { return number >= smallest && number <= largest; };
    const bool fits = column.integerBytes == 2   ? within(INT16_MIN, INT16_MAX)
                      : column.integerBytes == 4 ? within(INT32_MIN, INT32_MAX)
                                                 : true;
    if (!fits) {
        refuse(column);
    }
    return number;
}

// Banker's rounding, as automation converts.
std::int64_t rounded(double number, const ColumnInfo& column)
{
    if (!(std::fabs(number) < 9.2e18)) {
        refuse(column);
    }
    return inRange(static_cast<std::int64_t>(std::nearbyint(number)), column);
}

std::optional<double> numberOf(const std::string& text)
{
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end) {
        return std::nullopt;
    }
    return number;
}

Value fitText(const std::string& text, const ColumnInfo& column)
{
    if (dialect::isMoment(column.type)) {
        const auto date = parseDate(text);
        if (!date) {
            refuse(column);
        }
        return DateValue{*date};
    }
    const auto number = numberOf(text);
    if (!number) {
        refuse(column);
    }
    switch (column.type) {
    case ColumnType::Bit:
        return *number != 0.0;
    case ColumnType::Real:
        return *number;
    case ColumnType::Decimal:
        if (decimalFromText(text)) {
            return DecimalValue{text};
        }
        return DecimalValue{decimalText(*number)};
    default: {
        std::int64_t whole = 0;
        const char* const end = text.data() + text.size();
        if (std::from_chars(text.data(), end, whole).ptr == end) {
            return inRange(whole, column);
        }
        return rounded(*number, column);
    }
    }
}

Variant decimalVariant(std::string_view text)
{
    const auto parts = decimalFromText(text);
    if (!parts) {
        return Variant::fromDouble(decimalToDouble(text));
    }
    Variant variant;
    variant.decVal.scale = parts->scale;
    variant.decVal.sign = parts->negative ? DECIMAL_NEG : BYTE{0};
    variant.decVal.Hi32 = parts->words[2];
    variant.decVal.Lo64 = (static_cast<ULONGLONG>(parts->words[1]) << 32U) | parts->words[0];
    variant.vt = VT_DECIMAL;
    return variant;
}

Variant wholeVariant(std::int64_t number, const ColumnInfo& column)
{
    if (column.integerBytes == 2 && number >= INT16_MIN && number <= INT16_MAX) {
        Variant variant;
        variant.vt = VT_I2;
        variant.iVal = static_cast<SHORT>(number);
        return variant;
    }
    if (column.type == ColumnType::Decimal) {
        return decimalVariant(std::to_string(number));
    }
    const bool small = number >= INT32_MIN && number <= INT32_MAX;
    if (column.integerBytes != 8 && small) {
        return Variant::fromLong(static_cast<LONG>(number));
    }
    return Variant::fromInt64(number);
}

// A decimal that the engine keeps as a binary fraction: fifteen digits are what that holds, and leave out the
// dust of a sum.
std::string decimalFromReal(double number)
{
    std::array<char, 64> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::scientific, 14)
            .ptr;
    return decimalText(decimalToDouble({buffer.data(), static_cast<std::size_t>(end - buffer.data())}));
}

} // namespace

Value valueOf(const VARIANT& variant)
{
    if ((variant.vt & VT_BYREF) != 0) {
        Variant copy;
        if (FAILED(copyWithoutReference(copy, variant))) {
            throw EngineError(ErrorCode::BadValue, "the value is of no type that a column holds");
        }
        return valueOf(copy);
    }
    switch (variant.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return {};
    case VT_BOOL:
        return variant.boolVal != VARIANT_FALSE;
    case VT_I1:
        return std::int64_t{variant.cVal};
    case VT_UI1:
        return std::int64_t{variant.bVal};
    case VT_I2:
        return std::int64_t{variant.iVal};
    case VT_UI2:
        return std::int64_t{variant.uiVal};
    case VT_I4:
    case VT_INT:
        return std::int64_t{variant.lVal};
    case VT_UI4:
    case VT_UINT:
        return std::int64_t{variant.ulVal};
    case VT_I8:
        return std::int64_t{variant.llVal};
    case VT_UI8:
        return DecimalValue{std::to_string(variant.ullVal)};
    case VT_R4:
        return double{variant.fltVal};
    case VT_R8:
        return variant.dblVal;
    case VT_DATE:
        return DateValue{variant.date};
    case VT_CY: {
        const LONGLONG amount = variant.cyVal.int64;
        DecimalParts parts;
        const auto size = amount < 0 ? 0ULL - static_cast<ULONGLONG>(amount) : static_cast<ULONGLONG>(amount);
        parts.words = {static_cast<std::uint32_t>(size), static_cast<std::uint32_t>(size >> 32U), 0};
        parts.scale = 4;
        parts.negative = amount < 0;
        return DecimalValue{decimalToText(parts)};
    }
    case VT_DECIMAL: {
        DecimalParts parts;
        parts.words = {static_cast<std::uint32_t>(variant.decVal.Lo64),
                       static_cast<std::uint32_t>(variant.decVal.Lo64 >> 32U), variant.decVal.Hi32};
        parts.scale = variant.decVal.scale;
        parts.negative = (variant.decVal.sign & DECIMAL_NEG) != 0;
        return DecimalValue{decimalToText(parts)};
    }
    case VT_BSTR:
        return utf8FromUtf16(zul::textOf(variant.bstrVal));
    default:
        throw EngineError(ErrorCode::BadValue, "the value is of no type that a column holds");
    }
}

Value fitted(const Value& value, const ColumnInfo& column)
{
    const ColumnType type = column.type;
    // What the database keeps as something of its own is its to judge.
    if (std::holds_alternative<std::monostate>(value) || type == ColumnType::Unknown ||
        type == ColumnType::Time || type == ColumnType::Binary) {
        return value;
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return type == ColumnType::Text ? value : fitText(*text, column);
    }
    if (const auto* date = std::get_if<DateValue>(&value)) {
        if (dialect::isMoment(type)) {
            return value;
        }
        if (type == ColumnType::Text) {
            return formatDate(date->days);
        }
        return fitted(date->days, column);
    }
    if (const auto* flag = std::get_if<bool>(&value)) {
        if (type == ColumnType::Bit) {
            return value;
        }
        // True is -1 to automation.
        return fitted(std::int64_t{*flag ? -1 : 0}, column);
    }
    if (const auto* decimal = std::get_if<DecimalValue>(&value)) {
        return type == ColumnType::Text ? Value(decimal->text) : fitText(decimal->text, column);
    }
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        if (type == ColumnType::Integer) {
            return inRange(*whole, column);
        }
        if (type == ColumnType::Bit) {
            return *whole != 0;
        }
        if (type == ColumnType::Text) {
            return std::to_string(*whole);
        }
        if (type == ColumnType::Decimal) {
            return DecimalValue{std::to_string(*whole)};
        }
        if (dialect::isMoment(type)) {
            return DateValue{static_cast<double>(*whole)};
        }
        return static_cast<double>(*whole);
    }
    const double number = std::get<double>(value);
    if (type == ColumnType::Integer) {
        return rounded(number, column);
    }
    if (!std::isfinite(number)) {
        refuse(column);
    }
    if (type == ColumnType::Bit) {
        return number != 0.0;
    }
    if (type == ColumnType::Text || type == ColumnType::Decimal) {
        std::string text = decimalText(number);
        return type == ColumnType::Text ? Value(std::move(text)) : Value(DecimalValue{std::move(text)});
    }
    if (dialect::isMoment(type)) {
        return DateValue{number};
    }
    return value;
}

Variant variantOf(const ZulCell& cell, const ColumnInfo& column)
{
    switch (cell.Kind) {
    case CellInteger:
        return wholeVariant(cell.Integer, column);
    case CellReal:
        if (column.type == ColumnType::Decimal) {
            return decimalVariant(cell.Text != nullptr ? std::string(cellText(cell))
                                                       : decimalFromReal(cell.Real));
        }
        return Variant::fromDouble(cell.Real);
    case CellText:
        return Variant::fromUtf8(cellText(cell));
    case CellDate:
        return Variant::fromDate(cell.Real);
    case CellBoolean:
        return Variant::fromBool(cell.Integer != 0);
    default:
        return Variant::null();
    }
}

Variant variantOf(const Value& value, const ColumnInfo& column)
{
    return variantOf(cellOf(value), column);
}

ZulCell cellOf(const Value& value)
{
    ZulCell cell{};
    cell.Kind = CellNull;
    if (const auto* flag = std::get_if<bool>(&value)) {
        cell.Kind = CellBoolean;
        cell.Integer = *flag ? 1 : 0;
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        cell.Kind = CellInteger;
        cell.Integer = *whole;
    } else if (const auto* number = std::get_if<double>(&value)) {
        cell.Kind = CellReal;
        cell.Real = *number;
    } else if (const auto* date = std::get_if<DateValue>(&value)) {
        cell.Kind = CellDate;
        cell.Real = date->days;
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        cell.Kind = CellText;
        cell.Text = reinterpret_cast<const unsigned char*>(text->data());
        cell.Length = static_cast<LONG>(text->size());
    } else if (const auto* decimal = std::get_if<DecimalValue>(&value)) {
        cell.Kind = CellReal;
        cell.Real = decimalToDouble(decimal->text);
        cell.Text = reinterpret_cast<const unsigned char*>(decimal->text.data());
        cell.Length = static_cast<LONG>(decimal->text.size());
    }
    return cell;
}

Value valueOf(const ZulCell& cell, const ColumnInfo& column)
{
    switch (cell.Kind) {
    case CellInteger:
        return std::int64_t{cell.Integer};
    case CellReal:
        if (column.type == ColumnType::Decimal) {
            return DecimalValue{cell.Text != nullptr ? std::string(cellText(cell))
                                                     : decimalFromReal(cell.Real)};
        }
        return cell.Real;
    case CellText:
        return std::string(cellText(cell));
    case CellDate:
        return DateValue{cell.Real};
    case CellBoolean:
        return cell.Integer != 0;
    default:
        return {};
    }
}

} // namespace zul::host
