#include "tests/host/tds/Types.h"

#include "base/DateText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace zul::tds {

namespace {

using Kind = DataType::Kind;

constexpr std::uint64_t unknownLength = 0xFFFF'FFFF'FFFF'FFFEU;
constexpr std::uint64_t nullLength = 0xFFFF'FFFF'FFFF'FFFFU;
// A Western collation without regard to case.
constexpr std::string_view collation("\x09\x04\xD0\x00\x34", 5);

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

int decimalBytes(int precision)
{
    if (precision <= 9) {
        return 4;
    }
    if (precision <= 19) {
        return 8;
    }
    return precision <= 28 ? 12 : 16;
}

double realOf(const Datum& value)
{
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return static_cast<double>(*whole);
    }
    if (const auto* real = std::get_if<double>(&value)) {
        return *real;
    }
    double number = 0;
    const auto& text = std::get<std::string>(value);
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::int64_t wholeOf(const Datum& value)
{
    const auto* whole = std::get_if<std::int64_t>(&value);
    return whole != nullptr ? *whole : std::llround(realOf(value));
}

std::string textOf(const Datum& value)
{
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    std::array<char, 40> buffer{};
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*whole);
    }
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), realOf(value)).ptr};
}

/// A moment as days since 1899-12-30 and milliseconds of the day.
struct Moment
{
    std::int64_t day = 0;
    std::int64_t milliseconds = 0;
};

Moment momentOf(const Datum& value)
{
    std::optional<double> date;
    if (const auto* digits = std::get_if<std::int64_t>(&value)) {
        date = dateFromDigits(*digits);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        date = parseDate(*text);
    }
    if (!date) {
        throw std::out_of_range("no date");
    }
    // Through the text: the fraction of a date before 1899-12-30 counts forward.
    const std::string text = formatDate(*date);
    const auto part = [&](std::size_t from, std::size_t count) {
        return std::stoi(text.substr(from, count));
    };
    Moment moment;
    moment.day = daysFromCivil({part(0, 4), part(5, 2), part(8, 2)});
    moment.milliseconds =
        ((part(11, 2) * 60 + part(14, 2)) * 60 + part(17, 2)) * std::int64_t{1000} + part(20, 3);
    return moment;
}

std::string textOf(std::int64_t day, std::int64_t milliseconds)
{
    const CivilDay civil = civilFromDays(day);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d.%03d", civil.year, civil.month,
                  civil.day, static_cast<int>(milliseconds / 3'600'000),
                  static_cast<int>(milliseconds / 60'000 % 60), static_cast<int>(milliseconds / 1000 % 60),
                  static_cast<int>(milliseconds % 1000));
    return text.data();
}

std::string readPieces(Reader& in, bool& isNull)
{
    const std::uint64_t total = in.u64();
    isNull = total == nullLength;
    std::string bytes;
    while (!isNull) {
        const std::uint32_t piece = in.u32();
        if (piece == 0) {
            break;
        }
        bytes += in.raw(piece);
    }
    return bytes;
}

std::string decimalText(Reader value, int scale)
{
    const bool negative = value.u8() == 0;
    // Sixteen bytes at most, the lowest first; divided by ten until nothing is left.
    std::vector<std::uint32_t> bytes;
    while (!value.atEnd()) {
        bytes.push_back(value.u8());
    }
    std::string digits;
    while (std::any_of(bytes.begin(), bytes.end(), [](std::uint32_t byte) { return byte != 0; })) {
        std::uint32_t rest = 0;
        for (std::size_t i = bytes.size(); i-- > 0;) {
            const std::uint32_t part = rest * 256 + bytes[i];
            bytes[i] = part / 10;
            rest = part % 10;
        }
        digits += static_cast<char>('0' + rest);
    }
    while (digits.size() <= static_cast<std::size_t>(scale)) {
        digits += '0';
    }
    std::reverse(digits.begin(), digits.end());
    if (scale > 0) {
        digits.insert(digits.size() - static_cast<std::size_t>(scale), ".");
    }
    return (negative ? "-" : "") + digits;
}

/// The number that begins at a place of a declaration; 0 where none does.
int numberAt(const std::string& text, std::size_t at)
{
    return static_cast<int>(std::strtol(text.c_str() + at, nullptr, 10));
}

} // namespace

DataType dataTypeOf(const std::string& declaration)
{
    const std::string text = lower(declaration);
    const std::size_t bracket = text.find('(');
    const std::string name = text.substr(0, std::min(bracket, text.find(' ')));
    const int first = bracket == std::string::npos ? 0 : numberAt(text, bracket + 1);
    if (name == "bit") {
        return {Kind::Bit, 1, 1, 0};
    }
    if (name == "tinyint") {
        return {Kind::Integer, 1, 3, 0};
    }
    if (name == "smallint") {
        return {Kind::Integer, 2, 5, 0};
    }
    if (name == "int" || name == "integer") {
        return {Kind::Integer, 4, 10, 0};
    }
    if (name == "bigint") {
        return {Kind::Integer, 8, 19, 0};
    }
    if (name == "float" || name == "real") {
        return {Kind::Float, 8, 53, 0};
    }
    if (name == "decimal" || name == "numeric") {
        const std::size_t comma = text.find(',');
        return {Kind::Decimal, 0, first > 0 ? first : 18,
                comma == std::string::npos ? 0 : numberAt(text, comma + 1)};
    }
    if (name == "datetime" || name == "date" || name == "datetime2" || name == "smalldatetime") {
        return {Kind::DateTime, 8, 23, 3};
    }
    return {Kind::Text, first, 0, 0};
}

std::string asDateTime(const Datum& value)
{
    Moment moment = momentOf(value);
    const std::int64_t beats = (moment.milliseconds * 3 + 5) / 10;
    std::int64_t milliseconds = (beats * 10 + 1) / 3;
    if (milliseconds >= 86'400'000) {
        milliseconds = 0;
        ++moment.day;
    }
    if (moment.day < daysFromCivil({1753, 1, 1}) || moment.day > daysFromCivil({9999, 12, 31})) {
        throw std::out_of_range("out of range");
    }
    return textOf(moment.day, milliseconds);
}

void writeType(Writer& out, const DataType& type)
{
    switch (type.kind) {
    case Kind::Bit:
        out.u8(0x68).u8(1);
        break;
    case Kind::Integer:
        out.u8(0x26).u8(static_cast<std::uint64_t>(type.size));
        break;
    case Kind::Float:
        out.u8(0x6D).u8(8);
        break;
    case Kind::Decimal:
        out.u8(0x6C).u8(static_cast<std::uint64_t>(decimalBytes(type.precision)) + 1);
        out.u8(static_cast<std::uint64_t>(type.precision)).u8(static_cast<std::uint64_t>(type.scale));
        break;
    case Kind::DateTime:
        out.u8(0x6F).u8(8);
        break;
    case Kind::Text:
        out.u8(0xE7).u16(type.size == 0 ? 0xFFFF : static_cast<std::uint64_t>(type.size) * 2).raw(collation);
    }
}

static void writeText(Writer& out, const DataType& type, const Datum& value)
{
    if (std::holds_alternative<std::monostate>(value)) {
        if (type.size == 0) {
            out.u64(nullLength);
        } else {
            out.u16(0xFFFF);
        }
        return;
    }
    const std::u16string units = utf16FromUtf8(textOf(value));
    if (type.size != 0) {
        if (units.size() > static_cast<std::size_t>(type.size)) {
            throw std::out_of_range("a text longer than its column");
        }
        out.u16(units.size() * 2).utf16(units);
        return;
    }
    // In pieces, as a real server does with long ones.
    out.u64(units.size() > 4000 ? unknownLength : units.size() * 2);
    for (std::size_t at = 0; at < units.size(); at += 3000) {
        const std::u16string_view piece = std::u16string_view(units).substr(at, 3000);
        out.u32(piece.size() * 2).utf16(piece);
    }
    out.u32(0);
}

void writeValue(Writer& out, const DataType& type, const Datum& value)
{
    if (type.kind == Kind::Text) {
        writeText(out, type, value);
        return;
    }
    if (std::holds_alternative<std::monostate>(value)) {
        out.u8(0);
        return;
    }
    switch (type.kind) {
    case Kind::Bit:
        out.u8(1).u8(wholeOf(value) != 0 ? 1 : 0);
        break;
    case Kind::Integer:
        out.u8(static_cast<std::uint64_t>(type.size))
            .number(static_cast<std::uint64_t>(wholeOf(value)), type.size);
        break;
    case Kind::Float:
        out.u8(8).u64(std::bit_cast<std::uint64_t>(realOf(value)));
        break;
    case Kind::Decimal: {
        const double number = realOf(value);
        const auto scaled = static_cast<std::uint64_t>(
            std::llround(std::fabs(number) * std::pow(10.0, static_cast<double>(type.scale))));
        const int bytes = decimalBytes(type.precision);
        out.u8(static_cast<std::uint64_t>(bytes) + 1)
            .u8(number < 0 ? 0 : 1)
            .number(scaled, std::min(bytes, 8));
        for (int i = 8; i < bytes; ++i) {
            out.u8(0);
        }
        break;
    }
    default: {
        const Moment moment = momentOf(value);
        const std::int64_t beats = (moment.milliseconds * 3 + 5) / 10;
        // The server counts from 1900-01-01.
        out.u8(8).u32(static_cast<std::uint64_t>(moment.day - 2)).u32(static_cast<std::uint64_t>(beats));
    }
    }
}

namespace {

Parameter readSized(Reader& in, std::uint8_t type)
{
    const std::uint8_t size = in.u8();
    if (type == 0x6A || type == 0x6C) {
        in.u8();
        const int scale = in.u8();
        const std::uint8_t length = in.u8();
        if (length == 0) {
            return {"decimal", {}};
        }
        return {"decimal", decimalText(Reader(in.raw(length)), scale)};
    }
    const std::uint8_t length = in.u8();
    Reader value(in.raw(length));
    if (length > size) {
        throw std::runtime_error("a value longer than its type");
    }
    switch (type) {
    case 0x26: {
        if (length == 0) {
            return {"int", {}};
        }
        const std::uint64_t bits = value.number(length);
        const int unused = 64 - 8 * length;
        return {length == 8 ? "bigint" : "int", static_cast<std::int64_t>(bits << unused) >> unused};
    }
    case 0x68:
        return length == 0 ? Parameter{"bit", {}} : Parameter{"bit", std::int64_t{value.u8()}};
    case 0x6D:
        if (length == 0) {
            return {"float", {}};
        }
        return {"float", length == 8 ? std::bit_cast<double>(value.u64())
                                     : static_cast<double>(std::bit_cast<float>(value.u32()))};
    default: {
        if (length == 0) {
            return {"datetime", {}};
        }
        const auto day = static_cast<std::int32_t>(value.u32());
        const std::int64_t beats = value.u32();
        return {"datetime", textOf(day + std::int64_t{2}, (beats * 10 + 1) / 3)};
    }
    }
}

Parameter readDateTime2(Reader& in)
{
    const int scale = in.u8();
    const std::uint8_t length = in.u8();
    if (length == 0) {
        return {"datetime2", {}};
    }
    Reader value(in.raw(length));
    std::uint64_t time = value.number(length - std::size_t{3});
    for (int i = scale; i < 7; ++i) {
        time *= 10;
    }
    const auto day = static_cast<std::int64_t>(value.number(3)) + daysFromCivil({1, 1, 1});
    std::string text = textOf(day, static_cast<std::int64_t>(time / 10'000));
    // A datetime that does not fall on a hundredth is not the same moment as any datetime2 of three digits: the
    // digits behind them keep the two apart.
    if (time % 100'000 != 0) {
        text += "0000";
    }
    return {"datetime2", text};
}

Parameter readVarying(Reader& in, std::uint8_t type)
{
    const std::uint16_t size = in.u16();
    in.raw(collation.size());
    const bool wide = type == 0xE7 || type == 0xEF;
    const std::string name = wide ? "nvarchar" : "varchar";
    std::string bytes;
    if (size == 0xFFFF) {
        bool isNull = false;
        bytes = readPieces(in, isNull);
        if (isNull) {
            return {name, {}};
        }
    } else {
        const std::uint16_t length = in.u16();
        if (length == 0xFFFF) {
            return {name, {}};
        }
        bytes = in.raw(length);
    }
    return {name, wide ? Reader::textOf(bytes) : bytes};
}

Parameter readLong(Reader& in, std::uint8_t type)
{
    in.u32();
    in.raw(collation.size());
    const std::uint32_t length = in.u32();
    const std::string name = type == 0x63 ? "ntext" : "text";
    if (length == 0xFFFFFFFFU) {
        return {name, {}};
    }
    const std::string_view bytes = in.raw(length);
    return {name, type == 0x63 ? Reader::textOf(bytes) : std::string(bytes)};
}

} // namespace

Parameter readParameter(Reader& in)
{
    const std::uint8_t type = in.u8();
    switch (type) {
    case 0x26:
    case 0x68:
    case 0x6D:
    case 0x6F:
    case 0x6A:
    case 0x6C:
        return readSized(in, type);
    case 0x2A:
        return readDateTime2(in);
    case 0xE7:
    case 0xEF:
    case 0xA7:
    case 0xAF:
        return readVarying(in, type);
    case 0x63:
    case 0x23:
        return readLong(in, type);
    case 0x38:
        return {"int", std::int64_t{static_cast<std::int32_t>(in.u32())}};
    default:
        throw std::runtime_error("a parameter of type " + std::to_string(type));
    }
}

} // namespace zul::tds
