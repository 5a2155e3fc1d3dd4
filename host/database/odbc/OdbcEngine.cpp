#include "host/database/odbc/OdbcEngine.h"

#include "host/database/Cell.h"
#include "host/database/Counters.h"
#include "host/database/Names.h"
#include "host/database/OneStatement.h"
#include "host/database/OwnTransaction.h"
#include "host/database/Schema.h"
#include "host/database/odbc/OdbcConnection.h"
#include "host/database/products/Product.h"

#include <algorithm>

namespace zul::host {

namespace {

constexpr std::size_t rowsPerText = 500;

} // namespace

OdbcEngine::OdbcEngine(const std::string& connectionString, std::chrono::seconds patience)
    : m_connectionString(connectionString)
    , m_connection(std::make_unique<OdbcConnection>(connectionString, patience))
{}

OdbcEngine::~OdbcEngine() = default;

void OdbcEngine::disconnect() noexcept
{
    m_connection->close();
}

std::int64_t OdbcEngine::execute(std::string_view sql, Language language, std::span<const Value> parameters)
{
    if (language == Language::Transact) {
        requireOneStatement(sql);
    }
    makeReady();
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
    makeReady();
    const auto statement = std::make_shared<OdbcStatement>(*m_connection);
    statement->executeDirect(sql);
    Outcome outcome;
    if (!statement->moveToRows(outcome.affected)) {
        return outcome;
    }
    outcome.rows = openOdbcRows(statement);
    return outcome;
}

std::unique_ptr<RowStream> OdbcEngine::query(std::string_view sql, Language language,
                                             std::span<const Value> parameters)
{
    if (language == Language::Transact) {
        requireOneStatement(sql);
    }
    if (parameters.empty()) {
        Outcome outcome = run(sql, language);
        if (!outcome.rows) {
            throw EngineError(ErrorCode::Statement, "the statement gives no rows");
        }
        return std::move(outcome.rows);
    }
    makeReady();
    const auto statement = m_connection->prepared(sql);
    try {
        statement->executePrepared(parameters);
        std::int64_t ignored = 0;
        if (!statement->moveToRows(ignored)) {
            throw EngineError(ErrorCode::Statement, "the statement gives no rows");
        }
        return openOdbcRows(statement);
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
    const std::size_t rowsPerInsert = product().rowsPerInsert();
    std::string sql;
    std::size_t rows = 0;
    const auto send = [&] {
        if (rows > 0) {
            execute(sql, Language::Native);
        }
        rows = 0;
    };
    for (std::size_t row = 0; row + columns.size() <= values.size(); row += columns.size()) {
        if (rows == rowsPerText) {
            send();
        }
        if (rows == 0) {
            sql.clear();
        }
        if (rows++ % rowsPerInsert > 0) {
            sql += ", (";
        } else {
            sql += (sql.empty() ? "" : "; ") + head + "(";
        }
        for (std::size_t i = 0; i < columns.size(); ++i) {
            sql += i > 0 ? ", " : "";
            sql += product().literal(values[row + i]);
        }
        sql += ')';
    }
    send();
}

void OdbcEngine::beginWork()
{
    m_connection->makeFree();
    m_connection->beginTransaction();
}

void OdbcEngine::commitWork()
{
    m_connection->makeFree();
    m_connection->commitTransaction();
}

void OdbcEngine::rollbackWork()
{
    m_connection->makeFree();
    m_connection->rollbackTransaction();
}

bool OdbcEngine::hasWork()
{
    // The rows that still stream are read before the server is asked.
    m_connection->makeFree();
    return m_connection->hasTransaction();
}

bool OdbcEngine::mayHaveWork() const
{
    return m_connection->inTransaction();
}

// For a statement: nothing streams any more, and an open transaction is still there.
void OdbcEngine::makeReady()
{
    m_connection->makeFree();
    requireTransaction();
}

const Product& OdbcEngine::product() const
{
    return m_connection->product();
}

// A name as the catalogue has it when it was made without quotes.
static std::string catalogueName(const OdbcConnection& connection, std::string_view name)
{
    std::string result = bareName(name);
    const SQLUSMALLINT letters = connection.shortInfo(SQL_IDENTIFIER_CASE);
    if (letters == SQL_IC_LOWER) {
        return foldedName(result);
    }
    if (letters == SQL_IC_UPPER) {
        std::transform(result.begin(), result.end(), result.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    }
    return result;
}

// A column of an answer of the catalogue, whose columns are the interface's.
static const ZulCell& catalogueCell(const RowStream& rows, std::size_t column)
{
    if (rows.columns().size() <= column) {
        throw EngineError(ErrorCode::Unspecified, "the driver's catalogue lacks a column");
    }
    return rows.cells()[column];
}

RowIdentity OdbcEngine::rowIdentity(std::string_view table)
{
    const std::string folded = foldedName(bareName(table));
    const auto known = m_identities.find(folded);
    if (known != m_identities.end()) {
        return known->second;
    }
    makeReady();
    RowIdentity identity = readIdentity(table);
    m_identities.emplace(folded, identity);
    return identity;
}

RowIdentity OdbcEngine::readIdentity(std::string_view table)
{
    RowIdentity identity;
    if (!readCatalogueKey(table, identity.keyColumns)) {
        readAskedKey(table, identity.keyColumns);
    }
    const std::string_view hidden = product().hiddenColumn();
    if (identity.keyColumns.empty() && !hidden.empty() && hasTable(bareName(table))) {
        identity.hiddenColumn = hidden;
    }
    return identity;
}

// False: the driver has no catalogue, or its server none.
bool OdbcEngine::readCatalogueKey(std::string_view table, std::vector<std::string>& columns)
{
    std::string name = catalogueName(*m_connection, table);
    const auto statement = std::make_shared<OdbcStatement>(*m_connection);
    const SQLRETURN code = SQLPrimaryKeys(statement->handle(), nullptr, 0, nullptr, 0,
                                          reinterpret_cast<SQLCHAR*>(name.data()), SQL_NTS);
    if (!SQL_SUCCEEDED(code)) {
        if (m_connection->isLost()) {
            statement->check(code);
        }
        return false;
    }
    const auto rows = openOdbcRows(statement);
    while (rows->next()) {
        columns.emplace_back(cellText(catalogueCell(*rows, 3)));
    }
    return true;
}

void OdbcEngine::readAskedKey(std::string_view table, std::vector<std::string>& columns)
{
    const std::string question = product().keyQuery(table);
    if (question.empty()) {
        return;
    }
    try {
        const auto rows = query(question, Language::Native);
        while (rows->next()) {
            columns.emplace_back(cellText(rows->cells()[0]));
        }
    } catch (const EngineError&) {
        if (m_connection->isLost()) {
            throw;
        }
        columns.clear();
    }
}

bool OdbcEngine::hasTable(std::string_view name)
{
    const std::string question = product().tableQuery(name);
    if (!question.empty()) {
        try {
            const auto rows = query(question, Language::Native);
            return rows->next() && rows->cells()[0].Kind != CellNull;
        } catch (const EngineError&) {
            if (m_connection->isLost()) {
                throw;
            }
        }
    }
    makeReady();
    std::string wanted = catalogueName(*m_connection, name);
    const auto statement = std::make_shared<OdbcStatement>(*m_connection);
    const SQLRETURN code = SQLTables(statement->handle(), nullptr, 0, nullptr, 0,
                                     reinterpret_cast<SQLCHAR*>(wanted.data()), SQL_NTS, nullptr, 0);
    statement->check(code);
    if (code == SQL_NO_DATA) {
        return false;
    }
    // The name is a pattern to the driver, in which "_" stands for any character.
    const auto rows = openOdbcRows(statement);
    while (rows->next()) {
        if (sameName(cellText(catalogueCell(*rows, 2)), wanted)) {
            return true;
        }
    }
    return false;
}

std::int64_t OdbcEngine::nextId(std::string_view table, std::string_view key)
{
    ensureTable(counterTable());
    const std::string tableText = product().tableName(table);
    const std::string keyText(key);
    // Two programs that meet a new table make its counter at the same time; one of them has to try again.
    for (int attempt = 0; attempt < 3; ++attempt) {
        try {
            if (const auto id = raisedCounter(tableText, keyText)) {
                return *id;
            }
        } catch (const EngineError& error) {
            if (error.code() == ErrorCode::NoTable) {
                forgetTables();
            }
            if (error.code() != ErrorCode::Integrity ||
                (inTransaction() && !product().goesOnAfterRefusal())) {
                throw;
            }
        }
    }
    throw EngineError(ErrorCode::Busy, "no id could be reserved for " + tableText);
}

// The counter's row is locked by the UPDATE until the transaction ends, so that nobody else reads in between.
std::optional<std::int64_t> OdbcEngine::raisedCounter(const std::string& table, const std::string& key)
{
    const std::vector<Value> names{bareName(table), bareName(key)};
    const std::string atOnce = m_raisesAtOnce ? product().raiseCounter(table, key) : std::string();
    if (!atOnce.empty()) {
        if (const auto id = raisedCounterAtOnce(atOnce, names)) {
            return id;
        }
    }
    const std::string raise = raiseCounterText(table, key, {}, whichCounter);
    OwnTransaction transaction(*this);
    if (execute(raise, Language::Native, names) == 0) {
        std::vector<Value> row = names;
        row.emplace_back(std::int64_t{0});
        execute("INSERT INTO tabContatori (Tabella, Chiave, Ultimo) VALUES (?, ?, ?)", Language::Native, row);
        execute(raise, Language::Native, names);
    }
    std::optional<std::int64_t> id;
    {
        const auto rows =
            query("SELECT Ultimo FROM tabContatori" + std::string(whichCounter), Language::Native, names);
        if (rows->next()) {
            id = cellNumber(rows->cells()[0]);
        }
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
        if (rows->next()) {
            return cellNumber(rows->cells()[0]);
        }
    } catch (const EngineError& error) {
        if (!product().isUnknownClause(error.serverNumber())) {
            throw;
        }
        m_raisesAtOnce = false;
    }
    return std::nullopt;
}

void OdbcEngine::addRow(const NewRow& row, std::int64_t& id)
{
    // Within a transaction of the caller's a refusal must leave that as it was. Without values the text would not be a
    // call, and its options would hold for the session.
    if (m_addsAtOnce && !inTransaction() && !row.values.empty()) {
        ensureTable(counterTable());
        if (const auto added = addedAtOnce(row)) {
            id = *added;
            return;
        }
    }
    Engine::addRow(row, id);
}

// One way to the server for id, row and transaction. Nothing when nothing was added, and nothing went wrong.
std::optional<std::int64_t> OdbcEngine::addedAtOnce(const NewRow& row)
{
    const std::string sql = product().addRow(row);
    if (sql.empty()) {
        return std::nullopt;
    }
    try {
        const auto rows = query(sql, Language::Native, row.values);
        std::optional<std::int64_t> id;
        // To the end, behind which stands what became of the transaction.
        while (rows->next()) {
            id = cellNumber(rows->cells()[0]);
        }
        return id;
    } catch (const EngineError& error) {
        if (error.code() == ErrorCode::NoTable) {
            forgetTables();
        }
        if (m_connection->isLost()) {
            throw;
        }
        // Whatever the server made of the text, no transaction of it stays open.
        m_connection->rollbackTransaction();
        if (!product().isUnknownClause(error.serverNumber())) {
            throw;
        }
        m_addsAtOnce = false;
        return std::nullopt;
    }
}

} // namespace zul::host
