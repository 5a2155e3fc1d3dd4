// The cells of a grid, kept by column.
#pragma once

#include "grid/Cell.h"
#include "grid/CellText.h"
#include "grid/Column.h"

#include <QString>

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace zul {

/// Rows of cells, designed for a million rows: a column is one array of plain values (4 bytes for a text, a
/// whole number of 32 bits, 8 for a real or a date, 1 for a boolean), equal texts are kept once, and there is
/// no object per row or per cell. A column takes the type of the values it gets and changes to a wider one
/// when it must; values of several kinds in one column are kept as they are, at 9 bytes each.
///
/// Filling: for each row append one value per column, in any order, then `endRow`; a column that got none
/// gets NULL, a column that got two keeps the last. Texts are UTF-8; invalid bytes are kept and shown as
/// replacement characters. A column or row index out of range throws std::out_of_range; memory that runs out
/// throws std::bad_alloc or std::length_error, and the rows complete so far stay.
///
/// Rows: at most 2^31 - 1. Not for several threads at once.
class ColumnStore
{
public:
    ColumnStore();
    ColumnStore(ColumnStore&&) noexcept = default;
    ColumnStore& operator=(ColumnStore&&) noexcept = default;

    // --- Shape

    /// Adds a column behind the last one; rows that exist get NULL in it.
    int addColumn();
    int columnCount() const { return static_cast<int>(m_columns.size()); }
    uint32_t rowCount() const { return m_rows; }
    void clearRows();
    void clear();

    // --- Filling, row by row

    void appendNull(int column) { open(column).writeNull(m_rows); }
    void appendText(int column, const char* utf8, size_t size) { open(column).writeText(m_rows, utf8, size); }
    /// UTF-16, as it comes over the automation boundary; unpaired surrogates become U+FFFD.
    void appendText16(int column, const char16_t* utf16, size_t units);
    void appendInteger(int column, int64_t value) { open(column).writeInteger(m_rows, value); }
    void appendReal(int column, double value) { open(column).writeReal(m_rows, value); }
    /// OLE days: days since 1899-12-30, the fraction is the time of day.
    void appendDate(int column, double value) { open(column).writeDate(m_rows, value); }
    void appendBoolean(int column, bool value) { open(column).writeBoolean(m_rows, value); }
    void endRow();
    /// To be called when a fill is complete: gives back what only filling needs. Filling may go on later.
    void settle();

    // --- Single cells of rows that exist

    void setNull(uint32_t row, int column) { change(row, column).writeNull(row); }
    void setText(uint32_t row, int column, const char* utf8, size_t size)
    {
        change(row, column).writeText(row, utf8, size);
    }
    void setText16(uint32_t row, int column, const char16_t* utf16, size_t units);
    void setInteger(uint32_t row, int column, int64_t value) { change(row, column).writeInteger(row, value); }
    void setReal(uint32_t row, int column, double value) { change(row, column).writeReal(row, value); }
    void setDate(uint32_t row, int column, double value) { change(row, column).writeDate(row, value); }
    void setBoolean(uint32_t row, int column, bool value) { change(row, column).writeBoolean(row, value); }

    // --- Reading

    CellKind kind(uint32_t row, int column) const { return cell(row, column).kind; }
    bool isNull(uint32_t row, int column) const { return kind(row, column) == CellKind::Null; }
    /// A whole number or boolean (true is 1); a real or date without its fraction; 0 for NULL and texts.
    int64_t integer(uint32_t row, int column) const;
    /// Any number, or a date's OLE days; 0 for NULL and texts.
    double real(uint32_t row, int column) const { return cell(row, column).number(); }
    bool boolean(uint32_t row, int column) const { return integer(row, column) != 0; }
    /// The cell as it is shown to the user, in the user's locale; NULL is the empty text.
    QString text(uint32_t row, int column) const;
    /// A text cell's bytes, valid until the rows are cleared; empty for all other kinds.
    std::string_view utf8(uint32_t row, int column) const;
    /// Whether the cell is a number: a whole number, a real, a boolean, or a text that is one in the locale.
    bool isNumeric(uint32_t row, int column) const;
    /// Whether the column holds whole numbers and reals, and nothing else but NULL.
    bool holdsNumbers(int column) const;

    /// Numbers and dates are shown in this locale; the default locale at first.
    void setLocale(const QLocale& locale);
    const CellText& formats() const { return m_formats; }

    /// Changes whenever rows that exist change: tells whether an order or a search is still good.
    uint64_t changes() const { return m_changes; }

    // --- Order

    /// Whether two cells stand at the same place of the column's order: equal numbers, of whatever kinds; texts that
    /// the collation takes for equal, as those that differ in case only; NULL and the empty text.
    bool sameInOrder(uint32_t left, uint32_t right, int column) const;
    /// Sets the bit of every place of `rows` whose row stands elsewhere in the column's order than the row before it.
    /// The other bits, and that of the first place, stay as they are; there must be a bit for every place.
    void markChanges(const std::vector<uint32_t>& rows, int column, std::vector<uint64_t>& bits) const;
    /// Sorts row numbers by a column, stable: NULL and empty first, then numbers (dates and booleans among them by their
    /// values), then texts in the user's collation without regard to case. The order of a column's distinct texts is worked out once and kept.
    void sortRows(std::vector<uint32_t>& rows, int column, bool descending) const
    {
        std::vector<uint32_t> room;
        sortRows(rows, column, descending, room);
    }
    /// The same in memory that the caller keeps from one sort to the next: to get it is a good part of a sort's time.
    /// What `room` holds has no meaning.
    void sortRows(std::vector<uint32_t>& rows, int column, bool descending,
                  std::vector<uint32_t>& room) const;

    // --- Search

    /// One bit per row: whether any of the columns shows a text that contains `needle`, without regard to
    /// case. Every distinct text is looked at once.
    std::vector<uint64_t> rowsContaining(const QString& needle, const std::vector<int>& columns) const;

    /// Bytes of memory that the cells and texts use.
    size_t bytes() const;

private:
    Column& open(int column) { return const_cast<Column&>(std::as_const(*this).open(column)); }
    const Column& open(int column) const
    {
        if (static_cast<size_t>(column) >= m_columns.size()) {
            throwColumn();
        }
        return m_columns[static_cast<size_t>(column)];
    }
    const Column& at(uint32_t row, int column) const;
    Column& change(uint32_t row, int column);
    Cell cell(uint32_t row, int column) const { return at(row, column).cell(row); }
    [[noreturn]] static void throwColumn();

    std::vector<Column> m_columns;
    uint32_t m_rows = 0;
    uint64_t m_changes = 0;
    CellText m_formats;
};

} // namespace zul
