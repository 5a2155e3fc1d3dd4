#include "host/database/odbc/OdbcEngine.h"

#include "base/DateText.h"
#include "host/database/Decimal.h"
#include "host/database/Names.h"
#include "host/database/OwnTransaction.h"
#include "host/database/Schema.h"
#include "host/database/odbc/OdbcConnection.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zul::host {

namespace {

// Rows of one text that is sent, and of one INSERT in it: the work of Transact-SQL's server on a list of rows grows
// faster than the list.
constexpr std::size_t rowsPerText = 500;
constexpr std::size_t rowsPerTransactInsert = 100;

std::int64_t firstNumber(RowStream& rows)
{
    const ZulCell& cell = rows.cells()[0];
    if (cell.Kind == CellReal)
        return static_cast<std::int64_t>(cell.Real);
    if (cell.Kind == CellText) {
        std::int64_t number = 0;
        const auto* const text = reinterpret_cast<const char*>(cell.Text);
        std::from_chars(text, text + cell.Length, number);
        return number;
    }
    return cell.Integer;
}

std::string_view textOf(const ZulCell& cell)
{
    if (cell.Kind != CellText)
        return {};
    return {reinterpret_cast<const char*>(cell.Text), static_cast<std::size_t>(cell.Length)};
}

std::string quotedText(std::string_view text)
{
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c;
        if (c == '\'')
            quoted += c;
    }
    return quoted + '\'';
}

// A value as it stands in a statement.
std::string literalOf(const Value& value, Product product)
{
    if (std::holds_alternative<std::monostate>(value))
        return "NULL";
    if (const auto* flag = std::get_if<bool>(&value)) {
        if (product == Product::PostgreSql)
            return *flag ? "TRUE" : "FALSE";
        return *flag ? "1" : "0";
    }
    if (const auto* whole = std::get_if<std::int64_t>(&value))
        return std::to_string(*whole);
    if (const auto* number = std::get_if<double>(&value))
        return decimalText(*number);
    if (const auto* decimal = std::get_if<DecimalValue>(&value))
        return decimal->text;
    if (const auto* date = std::get_if<DateValue>(&value)) {
        std::string text = formatDate(date->days);
        // With hyphens the server reads day and month by the session's language.
        if (product == Product::TransactSql)
            text.erase(std::remove(text.begin(), text.end(), '-'), text.end());
        return '\'' + text + '\'';
    }
    return (product == Product::TransactSql ? "N" : "") + quotedText(std::get<std::string>(value));
}

} // namespace

OdbcEngine::OdbcEngine(const std::string& connectionString, std::chrono::seconds patience)
    : m_connectionString(connectionString)
    , m_connection(std::make_unique<OdbcConnection>(connectionString, patience))
{}

OdbcEngine::~OdbcEngine() = default;

void OdbcEngine::close() noexcept
{
    m_connection->close();
}

std::int64_t OdbcEngine::execute(std::string_view sql, Language, std::span<const Value> parameters)
{
    m_connection->makeFree();
    std::int64_t affected = 0;
    if (parameters.empty()) {
        OdbcStatement statement(*m_connection);
        statement.executeDirect(sql);
        statement.finish(affected);
        return affected;
    }
    const auto statement = m_connection->prepared(sql);
    try {
        statement->executePrepared(parameters);
        statement->finish(affected);
    } catch (...) {
        // A statement that failed may be left in a state of its own by the driver.
        m_connection->forget(*statement);
        throw;
    }
    return affected;
}

Outcome OdbcEngine::run(std::string_view sql, Language)
{
    m_connection->makeFree();
    const auto statement = std::make_shared<OdbcStatement>(*m_connection);
    statement->executeDirect(sql);
    Outcome outcome;
    if (!statement->moveToRows(outcome.affected))
        return outcome;
    outcome.rows = openOdbcRows(statement, [handle = statement.get(), text = std::string(sql)] {
        std::int64_t ignored = 0;
        handle->executeDirect(text);
        handle->moveToRows(ignored);
    });
    return outcome;
}

std::unique_ptr<RowStream> OdbcEngine::query(std::string_view sql, Language language,
                                             std::span<const Value> parameters)
{
    if (parameters.empty()) {
        Outcome outcome = run(sql, language);
        if (!outcome.rows)
            throw EngineError(ErrorCode::Statement, "the statement gives no rows");
        return std::move(outcome.rows);
    }
    m_connection->makeFree();
    const auto statement = m_connection->prepared(sql);
    try {
        statement->executePrepared(parameters);
        std::int64_t ignored = 0;
        if (!statement->moveToRows(ignored))
            throw EngineError(ErrorCode::Statement, "the statement gives no rows");
        return openOdbcRows(statement, [handle = statement.get(),
                                        values = std::vector<Value>(parameters.begin(), parameters.end())] {
            handle->executePrepared(values);
        });
    } catch (...) {
        m_connection->forget(*statement);
        throw;
    }
}

void OdbcEngine::insertRows(std::string_view table, std::span<const std::string_view> columns,
                            std::span<const Value> values)
{
    std::string head = "INSERT INTO ";
    head += table;
    head += " (";
    for (std::size_t i = 0; i < columns.size(); ++i) {
        head += i > 0 ? ", " : "";
        head += columns[i];
    }
    head += ") VALUES ";
    const std::size_t rowsPerInsert = product() == Product::TransactSql ? rowsPerTransactInsert : rowsPerText;
    std::string sql;
    std::size_t rows = 0;
    const auto send = [&] {
        if (rows > 0)
            execute(sql, Language::Native);
        rows = 0;
    };
    for (std::size_t row = 0; row + columns.size() <= values.size(); row += columns.size()) {
        if (rows == rowsPerText)
            send();
        if (rows == 0)
            sql.clear();
        if (rows++ % rowsPerInsert > 0)
            sql += ", (";
        else
            sql += (sql.empty() ? "" : "; ") + head + "(";
        for (std::size_t i = 0; i < columns.size(); ++i) {
            sql += i > 0 ? ", " : "";
            sql += literalOf(values[row + i], product());
        }
        sql += ')';
    }
    send();
}

void OdbcEngine::begin()
{
    if (inTransaction())
        throw EngineError(ErrorCode::TransactionOpen, "a transaction is open already");
    m_connection->makeFree();
    m_connection->setAutocommit(false);
}

void OdbcEngine::commit()
{
    if (!inTransaction())
        throw EngineError(ErrorCode::NoTransaction, "no transaction is open");
    m_connection->makeFree();
    m_connection->endTransaction(true);
}

void OdbcEngine::rollback()
{
    if (!inTransaction())
        throw EngineError(ErrorCode::NoTransaction, "no transaction is open");
    m_connection->makeFree();
    m_connection->endTransaction(false);
}

bool OdbcEngine::inTransaction() const
{
    return m_connection->inTransaction();
}

Product OdbcEngine::product() const
{
    return m_connection->product();
}

std::string OdbcEngine::quotedName(std::string_view name) const
{
    if (product() == Product::PostgreSql) {
        std::string quoted = "\"";
        for (const char c : name) {
            quoted += c;
            if (c == '"')
                quoted += c;
        }
        return quoted + '"';
    }
    if (product() == Product::Sqlite)
        return bracketed(name);
    std::string quoted = "[";
    for (const char c : name) {
        quoted += c;
        if (c == ']')
            quoted += c;
    }
    return quoted + ']';
}

std::string OdbcEngine::tableName(std::string_view asWritten) const
{
    return std::string(asWritten);
}

// A name as the catalogue has it when it was made without quotes.
static std::string catalogueName(const OdbcConnection& connection, std::string_view name)
{
    std::string result = bareName(name);
    const SQLUSMALLINT letters = connection.shortInfo(SQL_IDENTIFIER_CASE);
    if (letters == SQL_IC_LOWER)
        return foldedName(result);
    if (letters == SQL_IC_UPPER) {
        std::transform(result.begin(), result.end(), result.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    }
    return result;
}

RowIdentity OdbcEngine::rowIdentity(std::string_view table)
{
    const std::string folded = foldedName(bareName(table));
    const auto known = m_identities.find(folded);
    if (known != m_identities.end())
        return known->second;
    m_connection->makeFree();
    RowIdentity identity = catalogueIdentity(table);
    m_identities.emplace(folded, identity);
    return identity;
}

// A driver without a catalogue tells no key: rows are told apart by all that they hold.
RowIdentity OdbcEngine::catalogueIdentity(std::string_view table)
{
    RowIdentity identity;
    const auto read = [&](RowStream& rows, std::size_t column) {
        while (rows.next()) {
            const ZulCell& cell = rows.cells()[column];
            if (cell.Kind == CellText)
                identity.keyColumns.emplace_back(textOf(cell));
        }
    };
    {
        std::string name = catalogueName(*m_connection, table);
        const auto statement = std::make_shared<OdbcStatement>(*m_connection);
        const SQLRETURN code = SQLPrimaryKeys(statement->handle(), nullptr, 0, nullptr, 0,
                                              reinterpret_cast<SQLCHAR*>(name.data()), SQL_NTS);
        if (SQL_SUCCEEDED(code)) {
            read(*openOdbcRows(statement, [] {}), 3);
            return identity;
        }
        if (m_connection->isLost())
            statement->check(code);
    }
    if (product() != Product::TransactSql)
        return identity;
    // The driver asks a procedure that compatible servers may lack; the views are in the language's standard.
    try {
        read(*query(
                 "SELECT k.COLUMN_NAME FROM INFORMATION_SCHEMA.TABLE_CONSTRAINTS c INNER JOIN"
                 " INFORMATION_SCHEMA.KEY_COLUMN_USAGE k ON k.CONSTRAINT_NAME = c.CONSTRAINT_NAME AND"
                 " k.TABLE_NAME = c.TABLE_NAME WHERE c.CONSTRAINT_TYPE = 'PRIMARY KEY' AND c.TABLE_NAME = N" +
                     quotedText(bareName(table)) + " ORDER BY k.ORDINAL_POSITION",
                 Language::Native),
             0);
    } catch (const EngineError&) {
        if (m_connection->isLost())
            throw;
        identity.keyColumns.clear();
    }
    return identity;
}

// A datetime is finer than its milliseconds say, and long texts of the old kinds do not compare at all.
std::string OdbcEngine::sameValue(const ColumnInfo& column) const
{
    const std::string name = quotedName(column.baseName);
    if (product() == Product::TransactSql && column.type == ColumnType::DateTime)
        return name + " = CAST(? AS datetime)";
    if (product() == Product::TransactSql && column.type == ColumnType::Text)
        return "CAST(" + name + " AS nvarchar(max)) = CAST(? AS nvarchar(max))";
    return name + " = ?";
}

bool OdbcEngine::hasTable(std::string_view name)
{
    // By the server's own rules for names, and without the catalogue, which compatible servers have in part only.
    if (product() == Product::TransactSql) {
        try {
            const auto rows = query("SELECT OBJECT_ID(N" + quotedText(name) + ", N'U')", Language::Native);
            return rows->next() && rows->cells()[0].Kind != CellNull;
        } catch (const EngineError&) {
            if (m_connection->isLost())
                throw;
        }
    }
    m_connection->makeFree();
    std::string wanted = catalogueName(*m_connection, name);
    const auto statement = std::make_shared<OdbcStatement>(*m_connection);
    const SQLRETURN code = SQLTables(statement->handle(), nullptr, 0, nullptr, 0,
                                     reinterpret_cast<SQLCHAR*>(wanted.data()), SQL_NTS, nullptr, 0);
    statement->check(code);
    if (code == SQL_NO_DATA)
        return false;
    // The name is a pattern to the driver, in which "_" stands for any character.
    const auto rows = openOdbcRows(statement, [] {});
    while (rows->next()) {
        const ZulCell& cell = rows->cells()[2];
        if (cell.Kind == CellText &&
            sameName({reinterpret_cast<const char*>(cell.Text), static_cast<std::size_t>(cell.Length)},
                     wanted))
            return true;
    }
    return false;
}

std::int64_t OdbcEngine::nextId(std::string_view table, std::string_view key)
{
    if (!m_hasCounters) {
        ensureTable(*this, counterTable());
        // A table made in a transaction goes when that is undone.
        m_hasCounters = !inTransaction();
    }
    const std::string tableText = tableName(table);
    const std::string keyText(key);
    // Two programs that meet a new table make its counter at the same time; one of them has to try again.
    for (int attempt = 0; attempt < 3; ++attempt) {
        try {
            if (const auto id = raisedCounter(tableText, keyText))
                return *id;
        } catch (const EngineError& error) {
            // Only this product goes on with a transaction in which a statement was refused.
            if (error.code() != ErrorCode::Integrity ||
                (inTransaction() && product() != Product::TransactSql))
                throw;
        }
    }
    throw EngineError(ErrorCode::Busy, "no id could be reserved for " + tableText);
}

// The counter's row is locked by the UPDATE until the transaction ends, so that nobody else reads in between.
std::optional<std::int64_t> OdbcEngine::raisedCounter(const std::string& table, const std::string& key)
{
    const std::vector<Value> names{bareName(table), bareName(key)};
    const std::string largest = "(SELECT COALESCE(MAX(" + key + "), 0) FROM " + table + ")";
    const std::string raise = "UPDATE tabContatori SET Ultimo = CASE WHEN Ultimo < " + largest + " THEN " +
                              largest + " + 1 ELSE Ultimo + 1 END";
    const std::string which = " WHERE Tabella = ? AND Chiave = ?";
    if (product() == Product::TransactSql && m_hasOutput) {
        if (const auto id = raisedCounterAtOnce(raise + " OUTPUT inserted.Ultimo" + which, names))
            return id;
    }
    OwnTransaction transaction(*this);
    if (execute(raise + which, Language::Native, names) == 0) {
        std::vector<Value> row = names;
        row.emplace_back(std::int64_t{0});
        execute("INSERT INTO tabContatori (Tabella, Chiave, Ultimo) VALUES (?, ?, ?)", Language::Native, row);
        execute(raise + which, Language::Native, names);
    }
    std::optional<std::int64_t> id;
    {
        const auto rows = query("SELECT Ultimo FROM tabContatori" + which, Language::Native, names);
        if (rows->next())
            id = firstNumber(*rows);
    }
    transaction.commit();
    return id;
}

// One statement, one way to the server. Nothing when the counter has no row yet, or the server does not know the
// clause.
std::optional<std::int64_t> OdbcEngine::raisedCounterAtOnce(const std::string& sql,
                                                            std::span<const Value> names)
{
    try {
        const auto rows = query(sql, Language::Native, names);
        if (rows->next())
            return firstNumber(*rows);
    } catch (const EngineError& error) {
        if (error.code() != ErrorCode::Statement)
            throw;
        m_hasOutput = false;
    }
    return std::nullopt;
}

} // namespace zul::host
