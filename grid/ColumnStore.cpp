#include "grid/ColumnStore.h"

#include <QStringConverter>
#include <QVarLengthArray>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace zul {

namespace {

/// UTF-16 to UTF-8 without a heap allocation for texts of usual length.
class Utf8Buffer
{
public:
    Utf8Buffer(const char16_t* utf16, size_t units)
    {
        if (units > static_cast<size_t>(std::numeric_limits<int>::max() / 3)) {
            throw std::length_error("a text is too long for a cell");
        }
        m_bytes.resize(static_cast<qsizetype>(units) * 3);
        QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
        const char* end = encoder.appendToBuffer(
            m_bytes.data(), QStringView(utf16, static_cast<qsizetype>(utf16 != nullptr ? units : 0)));
        m_size = static_cast<size_t>(end - m_bytes.data());
    }
    const char* data() const { return m_bytes.data(); }
    size_t size() const { return m_size; }

private:
    QVarLengthArray<char, 1024> m_bytes;
    size_t m_size = 0;
};

int64_t withoutFraction(double value)
{
    constexpr double largestWhole = 9.2e18;
    return std::fabs(value) < largestWhole ? static_cast<int64_t>(value) : 0;
}

} // namespace

// --- Shape

ColumnStore::ColumnStore() = default;

void ColumnStore::throwColumn()
{
    throw std::out_of_range("the grid has no such column");
}

int ColumnStore::addColumn()
{
    ++m_changes;
    m_columns.emplace_back(m_rows);
    return columnCount() - 1;
}

void ColumnStore::clearRows()
{
    for (Column& column : m_columns) {
        column = Column();
    }
    ++m_changes;
    m_rows = 0;
}

void ColumnStore::clear()
{
    m_columns.clear();
    ++m_changes;
    m_rows = 0;
}

const Column& ColumnStore::at(uint32_t row, int column) const
{
    const Column& found = open(column);
    if (row >= m_rows) {
        throw std::out_of_range("the grid has no such record");
    }
    return found;
}

Column& ColumnStore::change(uint32_t row, int column)
{
    ++m_changes;
    return const_cast<Column&>(at(row, column));
}

// --- Filling

void ColumnStore::appendText16(int column, const char16_t* utf16, size_t units)
{
    const Utf8Buffer utf8(utf16, units);
    appendText(column, utf8.data(), utf8.size());
}

void ColumnStore::setText16(uint32_t row, int column, const char16_t* utf16, size_t units)
{
    const Utf8Buffer utf8(utf16, units);
    setText(row, column, utf8.data(), utf8.size());
}

void ColumnStore::endRow()
{
    constexpr uint32_t mostRows = 0x7FFFFFFF;
    if (m_rows == mostRows) {
        throw std::length_error("the grid is full");
    }
    for (Column& column : m_columns) {
        if (column.size() == m_rows) {
            column.writeNull(m_rows);
        }
    }
    ++m_rows;
}

void ColumnStore::settle()
{
    for (Column& column : m_columns) {
        column.settle();
    }
}

// --- Reading

int64_t ColumnStore::integer(uint32_t row, int column) const
{
    const Cell value = cell(row, column);
    return value.isWhole() ? value.whole() : withoutFraction(value.number());
}

QString ColumnStore::text(uint32_t row, int column) const
{
    const Column& source = at(row, column);
    return source.shown(source.cell(row), m_formats);
}

std::string_view ColumnStore::utf8(uint32_t row, int column) const
{
    const Column& source = at(row, column);
    return source.utf8(source.cell(row));
}

bool ColumnStore::isNumeric(uint32_t row, int column) const
{
    const Column& source = at(row, column);
    return source.isNumeric(source.cell(row), m_formats);
}

bool ColumnStore::holdsNumbers(int column) const
{
    return static_cast<size_t>(column) < m_columns.size() && open(column).holdsNumbers();
}

void ColumnStore::setLocale(const QLocale& locale)
{
    m_formats = CellText(locale);
}

size_t ColumnStore::bytes() const
{
    size_t sum = 0;
    for (const Column& column : m_columns) {
        sum += column.bytes();
    }
    return sum;
}

// --- Order

bool ColumnStore::sameInOrder(uint32_t left, uint32_t right, int column) const
{
    (void)at(right, column);
    return at(left, column).sameInOrder(left, right, m_formats.locale());
}

void ColumnStore::markChanges(const std::vector<uint32_t>& rows, int column,
                              std::vector<uint64_t>& bits) const
{
    open(column).markChanges(rows, bits, m_formats.locale());
}

void ColumnStore::sortRows(std::vector<uint32_t>& rows, int column, bool descending,
                           std::vector<uint32_t>& room) const
{
    open(column).sortRows(rows, descending, room, m_formats.locale());
}

// --- Search

std::vector<uint64_t> ColumnStore::rowsContaining(const QString& needle,
                                                  const std::vector<int>& columns) const
{
    std::vector<uint64_t> matches((size_t{m_rows} + 63) / 64, needle.isEmpty() ? ~uint64_t{0} : 0);
    for (const int column : columns) {
        const Column& searched = open(column);
        if (!needle.isEmpty()) {
            searched.addMatches(needle, m_formats, m_rows, matches);
        }
    }
    return matches;
}

} // namespace zul
