#include "grid/ColumnStore.h"

#include "grid/RadixSort.h"
#include "grid/TextCollation.h"

#include <QStringConverter>
#include <QVarLengthArray>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace zul {

namespace {

QString fromUtf8(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

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

constexpr double largestWhole = 9.2e18;

int64_t withoutFraction(double value)
{
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
    m_columns.emplace_back().count = m_rows;
    return columnCount() - 1;
}

void ColumnStore::clearRows()
{
    for (Column& column : m_columns) {
        column.clearRows();
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

const ColumnStore::Column& ColumnStore::at(uint32_t row, int column) const
{
    const Column& found = open(column);
    if (row >= m_rows) {
        throw std::out_of_range("the grid has no such record");
    }
    return found;
}

ColumnStore::Column& ColumnStore::at(uint32_t row, int column)
{
    ++m_changes;
    return const_cast<Column&>(std::as_const(*this).at(row, column));
}

// --- Filling

void ColumnStore::appendText16(int column, const char16_t* utf16, size_t units)
{
    const Utf8Buffer utf8(utf16, units);
    appendText(column, utf8.data(), utf8.size());
}

void ColumnStore::endRow()
{
    constexpr uint32_t mostRows = 0x7FFFFFFF;
    if (m_rows == mostRows) {
        throw std::length_error("the grid is full");
    }
    for (Column& column : m_columns) {
        if (column.count == m_rows) {
            column.appendNull(m_rows);
        }
    }
    ++m_rows;
}

void ColumnStore::settle()
{
    for (Column& column : m_columns) {
        column.pool.dropIndex();
    }
}

void ColumnStore::setNull(uint32_t row, int column)
{
    at(row, column).put(row, {});
}

void ColumnStore::setText(uint32_t row, int column, const char* utf8, size_t size)
{
    Column& target = at(row, column);
    target.put(row, {CellKind::Text, target.pool.intern(utf8, size)});
}

void ColumnStore::setText16(uint32_t row, int column, const char16_t* utf16, size_t units)
{
    const Utf8Buffer utf8(utf16, units);
    setText(row, column, utf8.data(), utf8.size());
}

void ColumnStore::setInteger(uint32_t row, int column, int64_t value)
{
    at(row, column).put(row, {CellKind::Integer, static_cast<uint64_t>(value)});
}

void ColumnStore::setReal(uint32_t row, int column, double value)
{
    at(row, column).put(row, {CellKind::Real, std::bit_cast<uint64_t>(value)});
}

void ColumnStore::setDate(uint32_t row, int column, double value)
{
    at(row, column).put(row, {CellKind::Date, std::bit_cast<uint64_t>(value)});
}

void ColumnStore::setBoolean(uint32_t row, int column, bool value)
{
    at(row, column).put(row, {CellKind::Boolean, static_cast<uint64_t>(value)});
}

// --- A column

void ColumnStore::Column::appendNull(uint32_t row)
{
    if (count != row) {
        put(row, {});
        return;
    }
    switch (storage) {
    case Storage::Nulls:
        break;
    case Storage::Text:
        words.push(nullText);
        break;
    case Storage::Int32:
        words.push(static_cast<uint32_t>(null32));
        break;
    case Storage::Int64:
        wides.push(static_cast<uint64_t>(null64));
        break;
    case Storage::Real:
    case Storage::Date:
        wides.push(nullRealBits);
        break;
    case Storage::Boolean:
        bytes.push(nullBoolean);
        break;
    case Storage::Mixed:
        wides.push(0);
        bytes.push(static_cast<uint8_t>(CellKind::Null));
        break;
    }
    ++count;
}

void ColumnStore::Column::appendReal(uint32_t row, double value, CellKind kind)
{
    const auto bits = std::bit_cast<uint64_t>(value);
    const Storage wanted = kind == CellKind::Date ? Storage::Date : Storage::Real;
    if (storage != wanted || count != row || bits == nullRealBits) {
        put(row, {kind, bits});
        return;
    }
    wides.push(bits);
    ++count;
}

ColumnStore::Cell ColumnStore::Column::cell(uint32_t row) const
{
    switch (storage) {
    case Storage::Nulls:
        return {};
    case Storage::Text: {
        const uint32_t id = words[row];
        return id == nullText ? Cell{} : Cell{CellKind::Text, id};
    }
    case Storage::Int32: {
        const auto value = static_cast<int32_t>(words[row]);
        return value == null32 ? Cell{}
                               : Cell{CellKind::Integer, static_cast<uint64_t>(static_cast<int64_t>(value))};
    }
    case Storage::Int64: {
        const uint64_t value = wides[row];
        return value == static_cast<uint64_t>(null64) ? Cell{} : Cell{CellKind::Integer, value};
    }
    case Storage::Real:
    case Storage::Date: {
        const uint64_t bits = wides[row];
        return bits == nullRealBits ? Cell{}
                                    : Cell{storage == Storage::Date ? CellKind::Date : CellKind::Real, bits};
    }
    case Storage::Boolean: {
        const uint8_t value = bytes[row];
        return value == nullBoolean ? Cell{} : Cell{CellKind::Boolean, value};
    }
    case Storage::Mixed:
        return {static_cast<CellKind>(bytes[row]), wides[row]};
    }
    return {};
}

bool ColumnStore::Column::holds(Cell cell) const
{
    const auto whole = static_cast<int64_t>(cell.payload);
    switch (storage) {
    case Storage::Nulls:
        return cell.kind == CellKind::Null;
    case Storage::Text:
        return cell.kind == CellKind::Null || cell.kind == CellKind::Text;
    case Storage::Int32:
        return cell.kind == CellKind::Null || (cell.kind == CellKind::Integer && whole > null32 &&
                                               whole <= std::numeric_limits<int32_t>::max());
    case Storage::Int64:
        return cell.kind == CellKind::Null || (cell.kind == CellKind::Integer && whole != null64);
    case Storage::Real:
        return cell.kind == CellKind::Null || (cell.kind == CellKind::Real && cell.payload != nullRealBits);
    case Storage::Date:
        return cell.kind == CellKind::Null || (cell.kind == CellKind::Date && cell.payload != nullRealBits);
    case Storage::Boolean:
        return cell.kind == CellKind::Null || cell.kind == CellKind::Boolean;
    case Storage::Mixed:
        return true;
    }
    return false;
}

ColumnStore::Storage ColumnStore::Column::wider(Cell cell) const
{
    const auto whole = static_cast<int64_t>(cell.payload);
    if (storage == Storage::Int32 && cell.kind == CellKind::Integer && whole != null64) {
        return Storage::Int64;
    }
    if (storage != Storage::Nulls) {
        return Storage::Mixed;
    }
    switch (cell.kind) {
    case CellKind::Text:
        return Storage::Text;
    case CellKind::Integer:
        if (whole == null64) {
            return Storage::Mixed;
        }
        return whole > null32 && whole <= std::numeric_limits<int32_t>::max() ? Storage::Int32
                                                                              : Storage::Int64;
    case CellKind::Real:
        return cell.payload == nullRealBits ? Storage::Mixed : Storage::Real;
    case CellKind::Date:
        return cell.payload == nullRealBits ? Storage::Mixed : Storage::Date;
    case CellKind::Boolean:
        return Storage::Boolean;
    case CellKind::Null:
        break;
    }
    return storage;
}

void ColumnStore::Column::changeTo(Storage wanted)
{
    // Built beside the old cells and then put in their place, so that running out of memory loses nothing.
    Column changed;
    changed.storage = wanted;
    if (storage == Storage::Nulls) {
        for (uint32_t row = 0; row < count; ++row) {
            changed.appendNull(row);
        }
    } else {
        for (uint32_t row = 0; row < count; ++row) {
            changed.write(row, cell(row));
            ++changed.count;
        }
    }
    words = std::move(changed.words);
    wides = std::move(changed.wides);
    bytes = std::move(changed.bytes);
    storage = wanted;
}

void ColumnStore::Column::put(uint32_t row, Cell cell)
{
    if (!holds(cell)) {
        changeTo(wider(cell));
    }
    write(row, cell);
    if (row == count) {
        ++count;
    }
}

void ColumnStore::Column::write(uint32_t row, Cell cell)
{
    const bool null = cell.kind == CellKind::Null;
    const auto place = [row, append = row == count](auto& array, auto value) {
        if (append) {
            array.push(value);
        } else {
            array.set(row, value);
        }
    };
    switch (storage) {
    case Storage::Nulls:
        break;
    case Storage::Text:
        place(words, null ? nullText : static_cast<uint32_t>(cell.payload));
        break;
    case Storage::Int32:
        place(words, null ? static_cast<uint32_t>(null32) : static_cast<uint32_t>(cell.payload));
        break;
    case Storage::Int64:
        place(wides, null ? static_cast<uint64_t>(null64) : cell.payload);
        break;
    case Storage::Real:
    case Storage::Date:
        place(wides, null ? nullRealBits : cell.payload);
        break;
    case Storage::Boolean:
        place(bytes, null ? nullBoolean : static_cast<uint8_t>(cell.payload));
        break;
    case Storage::Mixed:
        place(wides, cell.payload);
        place(bytes, static_cast<uint8_t>(cell.kind));
        break;
    }
}

void ColumnStore::Column::clearRows()
{
    *this = Column();
}

const std::vector<uint32_t>& ColumnStore::Column::textRanks(const QLocale& locale) const
{
    if (ranks.size() != pool.size()) {
        ranks = collationRanks(pool, locale);
    }
    return ranks;
}

// --- Reading

CellKind ColumnStore::kind(uint32_t row, int column) const
{
    return at(row, column).cell(row).kind;
}

int64_t ColumnStore::integer(uint32_t row, int column) const
{
    const Cell cell = at(row, column).cell(row);
    switch (cell.kind) {
    case CellKind::Integer:
    case CellKind::Boolean:
        return static_cast<int64_t>(cell.payload);
    case CellKind::Real:
    case CellKind::Date:
        return withoutFraction(std::bit_cast<double>(cell.payload));
    case CellKind::Null:
    case CellKind::Text:
        break;
    }
    return 0;
}

double ColumnStore::real(uint32_t row, int column) const
{
    const Cell cell = at(row, column).cell(row);
    switch (cell.kind) {
    case CellKind::Integer:
    case CellKind::Boolean:
        return static_cast<double>(static_cast<int64_t>(cell.payload));
    case CellKind::Real:
    case CellKind::Date:
        return std::bit_cast<double>(cell.payload);
    case CellKind::Null:
    case CellKind::Text:
        break;
    }
    return 0.0;
}

QString ColumnStore::cellText(const Column& column, Cell cell) const
{
    switch (cell.kind) {
    case CellKind::Null:
        break;
    case CellKind::Text:
        return fromUtf8(column.pool.text(static_cast<uint32_t>(cell.payload)));
    case CellKind::Integer:
        return m_formats.integer(static_cast<int64_t>(cell.payload));
    case CellKind::Real:
        return m_formats.real(std::bit_cast<double>(cell.payload));
    case CellKind::Date:
        return m_formats.date(std::bit_cast<double>(cell.payload));
    case CellKind::Boolean:
        return m_formats.boolean(cell.payload != 0);
    }
    return {};
}

QString ColumnStore::text(uint32_t row, int column) const
{
    const Column& source = at(row, column);
    return cellText(source, source.cell(row));
}

std::string_view ColumnStore::utf8(uint32_t row, int column) const
{
    const Column& source = at(row, column);
    const Cell cell = source.cell(row);
    return cell.kind == CellKind::Text ? source.pool.text(static_cast<uint32_t>(cell.payload))
                                       : std::string_view();
}

bool ColumnStore::isNumeric(uint32_t row, int column) const
{
    const Column& source = at(row, column);
    const Cell cell = source.cell(row);
    switch (cell.kind) {
    case CellKind::Integer:
    case CellKind::Real:
    case CellKind::Boolean:
        return true;
    case CellKind::Text:
        return m_formats.isNumeric(fromUtf8(source.pool.text(static_cast<uint32_t>(cell.payload))));
    case CellKind::Null:
    case CellKind::Date:
        break;
    }
    return false;
}

bool ColumnStore::holdsNumbers(int column) const
{
    if (static_cast<size_t>(column) >= m_columns.size()) {
        return false;
    }
    const Storage storage = m_columns[static_cast<size_t>(column)].storage;
    return storage == Storage::Int32 || storage == Storage::Int64 || storage == Storage::Real;
}

void ColumnStore::setLocale(const QLocale& locale)
{
    if (locale.name() != m_formats.locale().name() || locale.collation() != m_formats.locale().collation()) {
        for (Column& column : m_columns) {
            column.ranks.clear();
        }
    }
    m_formats = CellText(locale);
}

size_t ColumnStore::bytes() const
{
    size_t sum = 0;
    for (const Column& column : m_columns) {
        sum += column.words.bytes() + column.wides.bytes() + column.bytes.bytes() + column.pool.bytes() +
               column.ranks.size() * sizeof(uint32_t);
    }
    return sum;
}

// --- Order

namespace {

/// Where a mixed column's cell stands: NULL and empty texts first, then numbers, then texts.
struct MixedKey
{
    int rank = 0; // 0 empty, 1 number, 2 text
    double number = 0.0;
    uint32_t text = 0;

    bool operator<(const MixedKey& other) const
    {
        if (rank != other.rank) {
            return rank < other.rank;
        }
        return rank == 1 ? orderedBits(number) < orderedBits(other.number) : text < other.text;
    }
};

} // namespace

bool ColumnStore::sameInOrder(uint32_t left, uint32_t right, int column) const
{
    const Column& source = at(left, column);
    const Cell a = source.cell(left);
    const Cell b = at(right, column).cell(right);
    const bool textual = (a.kind == CellKind::Text || a.kind == CellKind::Null) &&
                         (b.kind == CellKind::Text || b.kind == CellKind::Null);
    if (textual) {
        if (a.kind == b.kind && a.payload == b.payload) {
            return true;
        }
        const std::vector<uint32_t>& ranks = source.textRanks(m_formats.locale());
        const uint32_t rankA = a.kind == CellKind::Null ? 0 : ranks[a.payload];
        const uint32_t rankB = b.kind == CellKind::Null ? 0 : ranks[b.payload];
        return rankA == rankB;
    }
    return a.kind == b.kind && a.payload == b.payload;
}

void ColumnStore::markChanges(const std::vector<uint32_t>& rows, int column,
                              std::vector<uint64_t>& bits) const
{
    const Column& source = open(column);
    switch (source.storage) {
    case Storage::Nulls:
        return;
    case Storage::Text:
        source.textRanks(m_formats.locale());
        markWhereKeysChange(rows, bits, [&](uint32_t row) { return source.textRank(source.words[row]); });
        return;
    case Storage::Int32:
        markWhereKeysChange(rows, bits, [&](uint32_t row) { return source.words[row]; });
        return;
    case Storage::Int64:
    case Storage::Real:
    case Storage::Date:
        markWhereKeysChange(rows, bits, [&](uint32_t row) { return source.wides[row]; });
        return;
    case Storage::Boolean:
        markWhereKeysChange(rows, bits, [&](uint32_t row) { return source.bytes[row]; });
        return;
    case Storage::Mixed:
        for (size_t place = 1; place < rows.size(); ++place) {
            if (!sameInOrder(rows[place - 1], rows[place], column)) {
                bits[place >> 6] |= uint64_t{1} << (place & 63);
            }
        }
        return;
    }
}

void ColumnStore::sortRows(std::vector<uint32_t>& rows, int column, bool descending,
                           std::vector<uint32_t>& room) const
{
    const Column& source = open(column);
    switch (source.storage) {
    case Storage::Nulls:
        return;
    case Storage::Text: {
        const std::vector<uint32_t>& ranks = source.textRanks(m_formats.locale());
        uint32_t largest = 0;
        for (const uint32_t rank : ranks) {
            largest = std::max(largest, rank);
        }
        sortRowsByKey<uint32_t>(rows, room, largest, descending,
                                [&](uint32_t row) { return source.textRank(source.words[row]); });
        return;
    }
    case Storage::Int32: {
        // NULL is the lowest number and gets key 0; the others count from the lowest that comes.
        int64_t lowest = std::numeric_limits<int32_t>::max();
        int64_t highest = null32;
        for (const uint32_t row : rows) {
            const auto value = static_cast<int32_t>(source.words[row]);
            if (value != null32) {
                lowest = std::min<int64_t>(lowest, value);
                highest = std::max<int64_t>(highest, value);
            }
        }
        if (highest < lowest) {
            return;
        }
        // All values but NULL's own are there, so the largest key still fits 32 bits.
        sortRowsByKey<uint32_t>(rows, room, static_cast<uint32_t>(highest - lowest + 1), descending,
                                [&](uint32_t row) {
                                    const auto value = static_cast<int32_t>(source.words[row]);
                                    return value == null32 ? 0U : static_cast<uint32_t>(value - lowest + 1);
                                });
        return;
    }
    case Storage::Int64:
        sortRowsByKey<uint64_t>(rows, room, ~uint64_t{0}, descending,
                                [&](uint32_t row) { return source.wides[row] ^ (uint64_t{1} << 63); });
        return;
    case Storage::Real:
    case Storage::Date: {
        // Whole days and whole amounts, the usual case, sort as 32-bit numbers.
        bool whole = true;
        double lowest = std::numeric_limits<double>::infinity();
        double highest = -lowest;
        for (const uint32_t row : rows) {
            const uint64_t bits = source.wides[row];
            if (bits == nullRealBits) {
                continue;
            }
            const auto value = std::bit_cast<double>(bits);
            if (!(std::fabs(value) < 1e9) || std::trunc(value) != value) {
                whole = false;
                break;
            }
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
        if (whole && highest < lowest) {
            return;
        }
        if (whole) {
            sortRowsByKey<uint32_t>(
                rows, room, static_cast<uint32_t>(highest - lowest) + 1, descending, [&](uint32_t row) {
                    const uint64_t bits = source.wides[row];
                    return bits == nullRealBits
                               ? 0U
                               : static_cast<uint32_t>(std::bit_cast<double>(bits) - lowest) + 1;
                });
        } else {
            sortRowsByKey<uint64_t>(rows, room, ~uint64_t{0}, descending, [&](uint32_t row) {
                const uint64_t bits = source.wides[row];
                return bits == nullRealBits ? 0 : orderedBits(std::bit_cast<double>(bits));
            });
        }
        return;
    }
    case Storage::Boolean:
        sortRowsByKey<uint32_t>(rows, room, 2, descending, [&](uint32_t row) {
            const uint8_t value = source.bytes[row];
            return value == nullBoolean ? 0U : value + 1U;
        });
        return;
    case Storage::Mixed: {
        const std::vector<uint32_t>& ranks = source.textRanks(m_formats.locale());
        const auto keyOf = [&](uint32_t row) -> MixedKey {
            const Cell cell = source.cell(row);
            switch (cell.kind) {
            case CellKind::Null:
                break;
            case CellKind::Text: {
                const uint32_t rank = ranks[cell.payload];
                return {rank == 0 ? 0 : 2, 0.0, rank};
            }
            case CellKind::Integer:
            case CellKind::Boolean:
                return {1, static_cast<double>(static_cast<int64_t>(cell.payload)), 0};
            case CellKind::Real:
            case CellKind::Date:
                return {1, std::bit_cast<double>(cell.payload), 0};
            }
            return {};
        };
        std::stable_sort(rows.begin(), rows.end(), [&](uint32_t a, uint32_t b) {
            return descending ? keyOf(b) < keyOf(a) : keyOf(a) < keyOf(b);
        });
        return;
    }
    }
}

} // namespace zul
