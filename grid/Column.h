// One column of a column store.
#pragma once

#include "grid/CellArrays.h"

#include <QLocale>

#include <cstdint>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace zul {

class CellText;

/// Cells of one kind as long as that goes: a column begins with NULLs, takes the kind of the first value it gets and
/// changes to a wider one when a value comes that the array at hand cannot hold. Running out of memory loses no cell.
///
/// `row` is the row that is written: one that is there, or the one behind the last.
// NOLINTNEXTLINE(bugprone-exception-escape): moving a variant throws where one of its kinds does, and none of these does
class Column
{
public:
    explicit Column(uint32_t nulls = 0)
        : m_size(nulls)
    {}

    /// Rows that the column has a value or NULL for.
    uint32_t size() const { return m_size; }

    // --- Writing. What comes most is looked for first, and written without a further question.

    void writeNull(uint32_t row)
    {
        std::visit([this, row](auto& cells) { place(cells, row, {}); }, m_cells);
    }
    void writeText(uint32_t row, const char* utf8, size_t size)
    {
        if (auto* texts = std::get_if<TextCells>(&m_cells); texts != nullptr && m_size == row) {
            texts->pushText(utf8, size);
            ++m_size;
        } else {
            writeOtherText(row, utf8, size);
        }
    }
    void writeInteger(uint32_t row, int64_t value) { push<IntCells>(row, Cell::integer(value)); }
    void writeReal(uint32_t row, double value) { push<RealCells>(row, Cell::real(value)); }
    void writeDate(uint32_t row, double value) { push<DateCells>(row, Cell::date(value)); }
    void writeBoolean(uint32_t row, bool value) { push<BooleanCells>(row, Cell::boolean(value)); }
    /// Gives back what only writing needs.
    void settle();

    // --- Reading

    Cell cell(uint32_t row) const
    {
        return std::visit([row](const auto& cells) { return cells.cell(row); }, m_cells);
    }
    /// The bytes of a cell that is a text; empty for all others.
    std::string_view utf8(Cell cell) const;
    /// The cell as it is shown to the user; NULL is the empty text.
    QString shown(Cell cell, const CellText& formats) const;
    /// Whether it is a number, or a text that is one in the locale of `formats`.
    bool isNumeric(Cell cell, const CellText& formats) const;
    bool holdsNumbers() const;
    size_t bytes() const;

    // --- Order, in the collation of `locale`; see ColumnStore

    bool sameInOrder(uint32_t left, uint32_t right, const QLocale& locale) const;
    void markChanges(const std::vector<uint32_t>& rows, std::vector<uint64_t>& bits,
                     const QLocale& locale) const;
    void sortRows(std::vector<uint32_t>& rows, bool descending, std::vector<uint32_t>& room,
                  const QLocale& locale) const;

    // --- Search

    /// Sets the bits of those of the first `rows` rows that show a text which contains `needle`, without regard to
    /// case; the needle is not empty.
    void addMatches(const QString& needle, const CellText& formats, uint32_t rows,
                    std::vector<uint64_t>& matches) const;

private:
    using Cells =
        OneOf<NullCells, TextCells, IntCells, LongCells, RealCells, DateCells, BooleanCells, MixedCells>;

    template <typename Array>
    void place(Array& cells, uint32_t row, Cell cell)
    {
        if (row == m_size) {
            cells.push(cell);
            ++m_size;
        } else {
            cells.set(row, cell);
        }
    }
    template <typename Array>
    void push(uint32_t row, Cell cell)
    {
        if (auto* cells = std::get_if<Array>(&m_cells);
            cells != nullptr && m_size == row && Array::holds(cell)) {
            cells->push(cell);
            ++m_size;
        } else {
            write(row, cell);
        }
    }
    void write(uint32_t row, Cell cell);
    void writeOtherText(uint32_t row, const char* utf8, size_t size);
    void widenFor(Cell cell);
    template <typename Array>
    bool becomeIfItHolds(Cell cell);

    uint32_t m_size;
    Cells m_cells;
};

} // namespace zul
