// Rows by ODBC: blocks of rows into bound arrays where every value has a bounded size, one value after another
// where a row holds long texts.
#include "host/database/odbc/OdbcConnection.h"

#include "base/DateText.h"
#include "host/database/Decimal.h"
#include "host/database/RowStore.h"
#include "host/database/products/Product.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace zul::host {

namespace {

constexpr std::size_t blockBytes = std::size_t{1024} * 1024;
constexpr std::size_t largestBlock = 1000;
// Most statements give a row or two; the large block is made for those that go on.
constexpr std::size_t firstBlock = 4;
constexpr SQLULEN longestBoundText = 2000; // characters

// Nothing for what is no moment of the calendar.
std::optional<double> dateOf(const SQL_TIMESTAMP_STRUCT& moment)
{
    const CivilDay day{moment.year, moment.month, moment.day};
    if (!isDay(day) || moment.hour > 23 || moment.minute > 59 || moment.second > 59 ||
        moment.fraction > 999'999'999) {
        return std::nullopt;
    }
    const std::int64_t days = daysFromCivil(day);
    const std::int64_t time = ((moment.hour * 60 + moment.minute) * 60 + moment.second) * std::int64_t{1000} +
                              (moment.fraction + 500'000) / 1'000'000;
    return joinDate(days, time);
}

/// How the values of a column are fetched.
struct Column
{
    SQLSMALLINT cType = SQL_C_CHAR;
    std::size_t width = 0; // bytes of a value; 0: not bounded
    std::vector<char> data;
    std::vector<SQLLEN> lengths;
    std::string text; // a value that was read piece by piece
};

struct Described
{
    ColumnInfo info;
    Column column;
};

std::string attributeText(SQLHSTMT statement, SQLUSMALLINT column, SQLUSMALLINT attribute)
{
    std::array<char, 512> text{};
    SQLSMALLINT length = 0;
    const SQLRETURN code = SQLColAttribute(statement, column, attribute, text.data(),
                                           static_cast<SQLSMALLINT>(text.size()), &length, nullptr);
    return SQL_SUCCEEDED(code) ? std::string(text.data()) : std::string();
}

Described describe(OdbcStatement& statement, SQLUSMALLINT index)
{
    std::array<SQLCHAR, 512> name{};
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    statement.check(SQLDescribeCol(statement.handle(), index, name.data(),
                                   static_cast<SQLSMALLINT>(name.size()), &nameLength, &type, &size, &digits,
                                   &nullable));
    Described result;
    result.info.name = reinterpret_cast<const char*>(name.data());
    result.info.baseName = attributeText(statement.handle(), index, SQL_DESC_BASE_COLUMN_NAME);
    if (result.info.baseName.empty()) {
        result.info.baseName = result.info.name;
    }
    const auto fixed = [&](ColumnType columnType, SQLSMALLINT cType, std::size_t width) {
        result.info.type = columnType;
        result.column.cType = cType;
        result.column.width = width;
    };
    const auto whole = [&](int bytes) {
        fixed(ColumnType::Integer, SQL_C_SBIGINT, sizeof(SQLBIGINT));
        result.info.integerBytes = bytes;
    };
    switch (type) {
    case SQL_BIT:
        fixed(ColumnType::Bit, SQL_C_BIT, 1);
        break;
    case SQL_TINYINT:
    case SQL_SMALLINT:
        whole(2);
        break;
    case SQL_INTEGER:
        whole(4);
        break;
    case SQL_BIGINT:
        whole(8);
        break;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
        fixed(ColumnType::Real, SQL_C_DOUBLE, sizeof(SQLDOUBLE));
        break;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
        fixed(ColumnType::Decimal, SQL_C_CHAR, 64);
        break;
    case SQL_DATETIME:
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
        fixed(ColumnType::DateTime, SQL_C_TYPE_TIMESTAMP, sizeof(SQL_TIMESTAMP_STRUCT));
        break;
    default: {
        result.info.type = ColumnType::Text;
        const bool bounded = (type == SQL_CHAR || type == SQL_VARCHAR || type == SQL_WCHAR ||
                              type == SQL_WVARCHAR || type == SQL_GUID || type == SQL_TYPE_TIME) &&
                             size > 0 && size <= longestBoundText;
        // Drivers count characters, bytes, or one too few of either: four bytes each, and some room.
        result.column.width = bounded ? static_cast<std::size_t>(size) * 4 + 32 : 0;
        if (statement.connection().product().hidesDecimals() &&
            dialect::columnTypeOf(attributeText(statement.handle(), index, SQL_DESC_TYPE_NAME)) ==
                ColumnType::Decimal) {
            fixed(ColumnType::Decimal, SQL_C_CHAR, 64);
        }
    }
    }
    return result;
}

} // namespace

class OdbcRows final : public RowStream
{
public:
    explicit OdbcRows(std::shared_ptr<OdbcStatement> statement)
        : m_connection(statement->connection())
        , m_statement(std::move(statement))
    {
        const int count = m_statement->columnCount();
        if (count < 1) {
            throw EngineError(ErrorCode::Unspecified, "the driver has rows without columns");
        }
        for (int i = 1; i <= count; ++i) {
            Described described = describe(*m_statement, static_cast<SQLUSMALLINT>(i));
            m_columns.push_back(std::move(described.info));
            m_data.push_back(std::move(described.column));
        }
        m_cells.resize(m_columns.size());
        const bool bounded =
            std::all_of(m_data.begin(), m_data.end(), [](const Column& column) { return column.width > 0; });
        const bool hasTexts = std::any_of(m_data.begin(), m_data.end(),
                                          [](const Column& column) { return column.cType == SQL_C_CHAR; });
        // A driver that gives a cut value again, but not within a block, is not asked for blocks.
        if (hasTexts && m_connection.readsBoundValues() && !m_connection.readsWithinBlocks()) {
            m_largestBlock = 1;
        }
        if (bounded) {
            bindBlock(std::min(firstBlock, m_largestBlock));
        }
        m_connection.setStreaming(this);
    }

    ~OdbcRows() override { end(); }

    const std::vector<ColumnInfo>& columns() const override { return m_columns; }

    bool next() override
    {
        if (m_buffer) {
            if (m_bufferRow >= m_buffer->rows()) {
                return false;
            }
            m_buffer->read(m_bufferRow++, m_cells.data());
            return true;
        }
        if (m_broken) {
            throw EngineError(*m_broken);
        }
        try {
            return fetch();
        } catch (const EngineError& error) {
            m_broken = error;
            throw;
        }
    }

    const ZulCell* cells() const override { return m_cells.data(); }

    // The current row's cells point into the block, which stays as it is; only what comes behind it is read on
    // into memory of its own, beginning with the rest of the block.
    void buffer()
    {
        if (!m_statement) {
            return;
        }
        // The texts of the current row may stand in what is about to be fetched over.
        RowStore current(m_columns.size());
        const bool standing = m_delivered > 0;
        if (standing) {
            current.append(m_cells.data());
        }
        RowStore rest(m_columns.size());
        try {
            while (fetch()) {
                rest.append(m_cells.data());
            }
        } catch (const EngineError& error) {
            m_broken = error;
            throw;
        }
        end();
        m_current.emplace(std::move(current));
        m_buffer.emplace(std::move(rest));
        m_bufferRow = 0;
        if (standing) {
            m_current->read(0, m_cells.data());
        }
    }

private:
    // Nothing is thrown from here: what is left of the statement is not wanted any more.
    void end() noexcept
    {
        if (!m_statement) {
            return;
        }
        m_connection.streamingEnded(this);
        m_statement->closeCursor();
        SQLSetStmtAttr(m_statement->handle(), SQL_ATTR_ROW_ARRAY_SIZE, attributeValue(1), 0);
        SQLSetStmtAttr(m_statement->handle(), SQL_ATTR_ROWS_FETCHED_PTR, nullptr, 0);
        m_statement.reset();
    }

    void bindBlock(std::size_t atMost)
    {
        std::size_t rowBytes = 1;
        for (const Column& column : m_data) {
            rowBytes += column.width + sizeof(SQLLEN);
        }
        m_blockRows = std::clamp<std::size_t>(blockBytes / rowBytes, 1, atMost);
        const SQLHSTMT handle = m_statement->handle();
        if (!SQL_SUCCEEDED(SQLSetStmtAttr(handle, SQL_ATTR_ROW_ARRAY_SIZE, attributeValue(m_blockRows), 0))) {
            m_blockRows = 1;
        }
        m_statement->check(SQLSetStmtAttr(handle, SQL_ATTR_ROWS_FETCHED_PTR, &m_fetched, 0));
        for (std::size_t i = 0; i < m_data.size(); ++i) {
            Column& column = m_data[i];
            column.data.resize(column.width * m_blockRows);
            column.lengths.assign(m_blockRows, SQL_NULL_DATA);
            // Binding again replaces what was bound.
            m_statement->check(SQLBindCol(handle, static_cast<SQLUSMALLINT>(i + 1), column.cType,
                                          column.data.data(), static_cast<SQLLEN>(column.width),
                                          column.lengths.data()));
        }
    }

    // A driver may take a connection that broke, or an error that the server met behind the rows it had sent, for the
    // end of the rows; half a result must not pass for a whole one.
    bool endOfRows()
    {
        if (m_connection.isLost()) {
            throw EngineError(ErrorCode::ConnectionLost, "the connection to the server is lost");
        }
        std::int64_t ignored = 0;
        m_statement->finish(ignored);
        end();
        return false;
    }

    bool fetch()
    {
        if (!m_statement) {
            return false;
        }
        if (m_blockRows == 0) {
            return fetchByValue();
        }
        if (m_row + 1 < m_fetched) {
            ++m_row;
        } else {
            if (m_delivered == firstBlock && m_blockRows == firstBlock) {
                bindBlock(m_largestBlock);
            }
            m_fetched = 0;
            m_row = 0;
            const SQLRETURN code = SQLFetch(m_statement->handle());
            if (m_fetched > m_blockRows) {
                m_fetched = 0;
                throw EngineError(ErrorCode::Unspecified, "the driver gives more rows than it was asked for");
            }
            if (m_fetched < m_blockRows) {
                m_statement->failAsDiagnosed();
            }
            if (code == SQL_NO_DATA || (SQL_SUCCEEDED(code) && m_fetched == 0)) {
                return endOfRows();
            }
            // A value that was cut is a success "with information"; it is looked for cell by cell below.
            m_statement->check(code);
        }
        for (std::size_t i = 0; i < m_data.size(); ++i) {
            if (!readBound(i)) {
                readWhole(i);
            }
        }
        ++m_delivered;
        return true;
    }

    // False when the value is longer than its place.
    bool readBound(std::size_t index)
    {
        Column& column = m_data[index];
        const SQLLEN length = column.lengths[m_row];
        const char* const value = column.data.data() + column.width * m_row;
        if (length == SQL_NULL_DATA) {
            m_cells[index].Kind = CellNull;
            return true;
        }
        if (column.cType == SQL_C_CHAR && (length < 0 || length >= static_cast<SQLLEN>(column.width))) {
            return false;
        }
        setCell(index, value, static_cast<std::size_t>(std::max<SQLLEN>(length, 0)));
        return true;
    }

    void setCell(std::size_t index, const char* value, std::size_t length)
    {
        ZulCell& cell = m_cells[index];
        cell.Text = nullptr;
        cell.Length = 0;
        switch (m_data[index].cType) {
        case SQL_C_BIT:
            cell.Kind = CellBoolean;
            cell.Integer = *value != 0 ? 1 : 0;
            break;
        case SQL_C_SBIGINT:
            cell.Kind = CellInteger;
            std::memcpy(&cell.Integer, value, sizeof cell.Integer);
            break;
        case SQL_C_DOUBLE:
            cell.Kind = CellReal;
            std::memcpy(&cell.Real, value, sizeof cell.Real);
            break;
        case SQL_C_TYPE_TIMESTAMP: {
            SQL_TIMESTAMP_STRUCT moment{};
            std::memcpy(&moment, value, sizeof moment);
            // A row with a date that is none costs that cell alone.
            const std::optional<double> date = dateOf(moment);
            cell.Kind = date ? CellDate : CellNull;
            cell.Real = date.value_or(0);
            break;
        }
        default:
            cell.Kind = CellText;
            cell.Text = reinterpret_cast<const unsigned char*>(value);
            cell.Length = static_cast<LONG>(length);
            if (m_columns[index].type == ColumnType::Decimal) {
                cell.Kind = CellReal;
                cell.Real = decimalToDouble({value, length});
            }
        }
    }

    // The driver said too small a size: the value is read once more, where it stands. Running the statement again would
    // do again what else it does, and bring its rows in any order.
    void readWhole(std::size_t index)
    {
        Column& column = m_data[index];
        const bool inBlock = m_blockRows > 1;
        if (!m_connection.readsBoundValues() || (inBlock && !m_connection.readsWithinBlocks())) {
            failToRead(index);
        }
        if (inBlock) {
            m_statement->check(SQLSetPos(m_statement->handle(), static_cast<SQLSETPOSIROW>(m_row + 1),
                                         SQL_POSITION, SQL_LOCK_NO_CHANGE));
        }
        readValue(index);
        // What came must be this value.
        const SQLLEN length = column.lengths[m_row];
        const char* const cut = column.data.data() + column.width * m_row;
        const bool isSame =
            m_cells[index].Kind != CellNull && column.text.size() >= column.width - 1 &&
            (length == SQL_NO_TOTAL || column.text.size() == static_cast<std::size_t>(length)) &&
            std::memcmp(column.text.data(), cut, column.width - 1) == 0;
        if (!isSame) {
            failToRead(index);
        }
    }

    [[noreturn]] void failToRead(std::size_t index) const
    {
        throw EngineError(
            ErrorCode::Unspecified,
            "a value of the column " + m_columns[index].name +
                " is longer than the driver says of the column, and the driver gives only its beginning");
    }

    bool fetchByValue()
    {
        const SQLRETURN code = SQLFetch(m_statement->handle());
        if (code == SQL_NO_DATA) {
            m_statement->failAsDiagnosed();
            return endOfRows();
        }
        m_statement->check(code);
        // In the order of the columns, which is all that some drivers allow.
        for (std::size_t i = 0; i < m_data.size(); ++i) {
            readValue(i);
        }
        ++m_delivered;
        return true;
    }

    void readValue(std::size_t index)
    {
        Column& column = m_data[index];
        const auto number = static_cast<SQLUSMALLINT>(index + 1);
        std::array<char, 4096> piece{};
        SQLLEN length = 0;
        if (column.cType != SQL_C_CHAR) {
            m_statement->check(SQLGetData(m_statement->handle(), number, column.cType, piece.data(),
                                          static_cast<SQLLEN>(piece.size()), &length));
            if (length == SQL_NULL_DATA) {
                m_cells[index].Kind = CellNull;
                return;
            }
            column.text.assign(piece.data(), std::min(piece.size(), sizeof(SQL_TIMESTAMP_STRUCT)));
            setCell(index, column.text.data(), column.text.size());
            return;
        }
        column.text.clear();
        while (true) {
            const SQLRETURN code = SQLGetData(m_statement->handle(), number, SQL_C_CHAR, piece.data(),
                                              static_cast<SQLLEN>(piece.size()), &length);
            if (code == SQL_NO_DATA) {
                break;
            }
            m_statement->check(code);
            if (length == SQL_NULL_DATA) {
                m_cells[index].Kind = CellNull;
                return;
            }
            if (length < 0 && length != SQL_NO_TOTAL) {
                throw EngineError(ErrorCode::Unspecified, "the driver gives a value of the column " +
                                                              m_columns[index].name + " without a length");
            }
            // A piece is full, less its final zero, while more is there.
            const bool more = length == SQL_NO_TOTAL || length >= static_cast<SQLLEN>(piece.size());
            column.text.append(piece.data(),
                               more ? std::strlen(piece.data()) : static_cast<std::size_t>(length));
            if (!more) {
                break;
            }
        }
        setCell(index, column.text.data(), column.text.size());
    }

    OdbcConnection& m_connection;
    std::shared_ptr<OdbcStatement> m_statement; // null once the rows are at their end or in memory
    std::vector<ColumnInfo> m_columns;
    std::vector<Column> m_data;
    std::vector<ZulCell> m_cells;
    std::size_t m_largestBlock = largestBlock;
    std::size_t m_blockRows = 0; // 0: value by value
    SQLULEN m_fetched = 0;
    SQLULEN m_row = 0;
    std::size_t m_delivered = 0;
    std::optional<EngineError> m_broken; // what ended the reading for good
    std::optional<RowStore> m_current;
    std::optional<RowStore> m_buffer;
    std::size_t m_bufferRow = 0;
};

std::unique_ptr<RowStream> openOdbcRows(std::shared_ptr<OdbcStatement> statement)
{
    return std::make_unique<OdbcRows>(std::move(statement));
}

void bufferOdbcRows(OdbcRows& rows)
{
    rows.buffer();
}

} // namespace zul::host
