// One cell's value, whatever its kind.
#pragma once

#include <bit>
#include <cstdint>

namespace zul {

enum class CellKind : uint8_t
{
    Null,
    Text,
    Integer,
    Real,
    Date,
    Boolean
};

/// A value of any kind in one word and its kind. A text is known by its number among the texts of its column.
struct Cell
{
    CellKind kind = CellKind::Null;
    uint64_t payload = 0; ///< number of the text; the whole number; bits of the double; 0 or 1

    static Cell text(uint32_t id) { return {CellKind::Text, id}; }
    static Cell integer(int64_t value) { return {CellKind::Integer, static_cast<uint64_t>(value)}; }
    static Cell real(double value) { return {CellKind::Real, std::bit_cast<uint64_t>(value)}; }
    /// OLE days: days since 1899-12-30, the fraction is the time of day.
    static Cell date(double value) { return {CellKind::Date, std::bit_cast<uint64_t>(value)}; }
    static Cell boolean(bool value) { return {CellKind::Boolean, value ? 1U : 0U}; }

    bool isNull() const { return kind == CellKind::Null; }
    bool isText() const { return kind == CellKind::Text; }
    /// A whole number or boolean rather than a real or date.
    bool isWhole() const { return kind == CellKind::Integer || kind == CellKind::Boolean; }

    uint32_t textId() const { return static_cast<uint32_t>(payload); } ///< of a text
    int64_t whole() const { return static_cast<int64_t>(payload); }    ///< of what is whole
    double fraction() const { return std::bit_cast<double>(payload); } ///< of a real or date
    /// Any number's or date's value; 0 for NULL and texts.
    double number() const
    {
        return isNull() || isText() ? 0.0 : isWhole() ? static_cast<double>(whole()) : fraction();
    }
};

} // namespace zul
