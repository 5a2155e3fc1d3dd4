#include "host/database/sqlite/SqliteEngine.h"

#include "host/database/Cell.h"
#include "host/database/Names.h"
#include "host/database/OneStatement.h"
#include "host/database/Schema.h"
#include "host/database/products/Product.h"
#include "host/database/sqlite/ConnectionSettings.h"
#include "host/dialect/Dialect.h"
#include "host/dialect/SqliteFunctions.h"
#include "host/dialect/writer/Sql.h"

#include <sqlite3.h>

namespace zul::host {

namespace {

NativeStatement nativeOf(const dialect::Translation& translation)
{
    NativeStatement native;
    native.sql = translation.sql;
    native.changesSchema = translation.kind == dialect::StatementKind::Schema;
    native.types.reserve(translation.columns.size());
    for (const dialect::OutputColumn& column : translation.columns) {
        native.types.push_back(column.type);
    }
    native.search = translation.search;
    return native;
}

// Whether a text holds a semicolon with more behind it; one inside quotes only costs the longer way.
bool isBatch(std::string_view sql)
{
    const std::size_t semicolon = sql.find(';');
    return semicolon != std::string_view::npos &&
           sql.find_first_not_of(" \t\r\n;", semicolon) != std::string_view::npos;
}

/// Lets a number be given out without waiting for the disk; see ConnectionSettings.h. Within a transaction nothing waits.
class UnsyncedCommit
{
public:
    explicit UnsyncedCommit(SqliteDatabase& database)
        : m_database(sqlite3_get_autocommit(database.handle()) != 0 ? &database : nullptr)
    {
        if (m_database != nullptr) {
            m_database->run(zulDoNotWaitForDisk);
        }
    }
    ~UnsyncedCommit()
    {
        if (m_database != nullptr) {
            sqlite3_exec(m_database->handle(), zulWaitForDisk, nullptr, nullptr, nullptr);
        }
    }
    UnsyncedCommit(const UnsyncedCommit&) = delete;
    UnsyncedCommit& operator=(const UnsyncedCommit&) = delete;

private:
    SqliteDatabase* m_database;
};

class SqliteRows final : public RowStream
{
public:
    SqliteRows(SqliteStatement statement, std::span<const Value> parameters)
        : m_parameters(parameters.begin(), parameters.end())
        , m_statement(std::move(statement))
    {
        if (sqlite3_column_count(m_statement.handle()) == 0) {
            throw EngineError(ErrorCode::Statement, "the statement gives no rows");
        }
        m_statement.bind(m_parameters);
        // The first step runs here, so that what the statement meets shows when it is opened.
        m_pending = m_statement.step();
        m_columns = &m_statement.columns();
        m_cells.resize(m_columns->size());
    }

    const std::vector<ColumnInfo>& columns() const override { return *m_columns; }

    bool next() override
    {
        if (m_first) {
            m_first = false;
        } else if (m_pending) {
            m_pending = m_statement.step();
        }
        if (!m_pending) {
            return false;
        }
        sqlite3_stmt* const handle = m_statement.handle();
        for (std::size_t i = 0; i < m_cells.size(); ++i) {
            readCell(handle, static_cast<int>(i), (*m_columns)[i].type, m_cells[i]);
        }
        return true;
    }

    const ZulCell* cells() const override { return m_cells.data(); }

private:
    std::vector<Value> m_parameters;
    SqliteStatement m_statement;
    const std::vector<ColumnInfo>* m_columns = nullptr; // the statement's
    std::vector<ZulCell> m_cells;
    bool m_first = true;
    bool m_pending = false;
};

} // namespace

SqliteEngine::SqliteEngine(const std::string& path, SqliteDatabase::Mode mode)
    : m_database(path, mode)
    , m_columnTypes(
          [this](std::string_view table, std::string_view column) { return declaredType(table, column); })
    , m_tableKey([this](std::string_view table) { return declared(table).key; })
    , m_translator([this](std::string_view sql) { return translated(sql); })
{
    if (dialect::registerFunctions(m_database.handle()) != SQLITE_OK) {
        m_database.fail();
    }
}

// What a table's declaration says, read once and kept until the schema changes.
const SqliteEngine::DeclaredTable& SqliteEngine::declared(std::string_view table)
{
    const std::string tableKey = foldedName(table);
    const auto known = m_declared.find(tableKey);
    if (known != m_declared.end()) {
        return known->second;
    }
    DeclaredTable& read = m_declared[tableKey];
    const Value name(std::string{table});
    auto rows = query("SELECT name, type, pk FROM pragma_table_info(?)", Language::Native, {&name, 1});
    while (rows->next()) {
        const ZulCell* const cells = rows->cells();
        read.types.emplace(foldedName(cellText(cells[0])), dialect::columnTypeOf(cellText(cells[1])));
        if (cells[2].Integer > 0) {
            read.key.emplace_back(cellText(cells[0]));
        }
    }
    return read;
}

dialect::ColumnType SqliteEngine::declaredType(std::string_view table, std::string_view column)
{
    const auto& types = declared(table).types;
    const auto found = types.find(foldedName(column));
    return found != types.end() ? found->second : dialect::ColumnType::Unknown;
}

void SqliteEngine::forgetSchema()
{
    m_declared.clear();
    m_searched = {};
    m_database.forgetTranslations();
}

NativeStatement SqliteEngine::translated(std::string_view sql)
{
    return nativeOf(dialect::translate(sql, m_columnTypes, {}, m_tableKey));
}

SqliteStatement SqliteEngine::prepare(std::string_view sql, Language language)
{
    requireTransaction();
    if (language == Language::Native) {
        return m_database.prepare(sql);
    }
    try {
        return m_database.prepare(sql, m_translator);
    } catch (const dialect::DialectError& error) {
        throw EngineError(ErrorCode::Statement, error.what());
    }
}

std::int64_t SqliteEngine::execute(std::string_view sql, Language language, std::span<const Value> parameters)
{
    // Two without a semicolon between them are refused by the translation.
    if (language == Language::Transact && isBatch(sql)) {
        requireOneStatement(sql);
    }
    SqliteStatement statement = prepare(sql, language);
    return run(statement, parameters);
}

std::int64_t SqliteEngine::run(SqliteStatement& statement, std::span<const Value> parameters)
{
    if (statement.handle() == nullptr) {
        return 0;
    }
    statement.bind(parameters);
    // Statements that touch no rows leave the count of the last one that did.
    const std::int64_t before = m_database.totalChanges();
    while (statement.step()) {
    }
    const std::int64_t touched = m_database.totalChanges() != before ? m_database.changes() : 0;
    statement.reset();
    if (statement.native().changesSchema) {
        forgetSchema();
    }
    return touched;
}

std::int64_t SqliteEngine::executeBatch(std::string_view sql)
{
    requireTransaction();
    std::vector<dialect::Translation> statements;
    try {
        statements = dialect::translateBatch(sql, m_columnTypes);
    } catch (const dialect::DialectError& error) {
        throw EngineError(ErrorCode::Statement, error.what());
    }
    std::int64_t touched = 0;
    for (const dialect::Translation& translation : statements) {
        SqliteStatement statement =
            m_database.prepare(translation.sql, [&](std::string_view) { return nativeOf(translation); });
        touched += run(statement, {});
    }
    return touched;
}

std::unique_ptr<RowStream> SqliteEngine::query(std::string_view sql, Language language,
                                               std::span<const Value> parameters)
{
    SqliteStatement statement = prepare(sql, language);
    if (statement.native().search) {
        if (auto rows = narrowedQuery(statement.native())) {
            return rows;
        }
    }
    return std::make_unique<SqliteRows>(std::move(statement), parameters);
}

// A search through a column reads the whole table, also where it finds one row; a list of ten thousand numbers
// reads it ten thousand times. The column's texts in memory tell the few rows to look at.
std::unique_ptr<RowStream> SqliteEngine::narrowedQuery(const NativeStatement& native)
{
    constexpr std::size_t fewRows = 1000;
    // A rollback would take changes back without a trace in the counters.
    if (inTransaction()) {
        return nullptr;
    }
    const auto& texts = textsFor(*native.search);
    const auto rows = texts ? texts->rowsWith(native.search->text, fewRows) : std::nullopt;
    if (!rows) {
        return nullptr;
    }
    std::string list = "[";
    for (const std::int64_t row : *rows) {
        list += list.size() > 1 ? "," : "";
        list += std::to_string(row);
    }
    const Value parameter(list + ']');
    NativeStatement narrowed = native;
    narrowed.sql +=
        " AND " + dialect::quotedName(native.search->rows) + ".rowid IN (SELECT value FROM json_each(?))";
    narrowed.search.reset();
    return std::make_unique<SqliteRows>(
        m_database.prepare(narrowed.sql, [&](std::string_view) { return narrowed; }),
        std::span(&parameter, 1));
}

const std::optional<TextColumn>& SqliteEngine::textsFor(const dialect::TextSearch& search)
{
    const std::int64_t ownChanges = m_database.totalChanges();
    const std::int64_t version = dataVersion();
    if (m_searched.table != search.table || m_searched.column != search.column ||
        m_searched.ownChanges != ownChanges || m_searched.dataVersion != version) {
        m_searched = {search.table, search.column, ownChanges, version, readTexts(search)};
    }
    return m_searched.texts;
}

std::optional<TextColumn> SqliteEngine::readTexts(const dialect::TextSearch& search)
{
    constexpr std::size_t mostBytes = std::size_t{64} * 1024 * 1024;
    const std::string column = dialect::quotedName(search.column);
    TextColumn texts;
    try {
        const auto rows = query("SELECT rowid, " + column + " FROM " + dialect::quotedName(search.table) +
                                    " WHERE " + column + " IS NOT NULL",
                                Language::Native);
        while (rows->next()) {
            const ZulCell* const cells = rows->cells();
            // The rows of a view have no numbers.
            if (cells[0].Kind != CellInteger || cells[1].Kind != CellText || texts.size() > mostBytes) {
                return std::nullopt;
            }
            texts.append(cells[0].Integer, cellText(cells[1]));
        }
    } catch (const EngineError&) {
        // What is wrong the statement itself will tell.
        return std::nullopt;
    }
    return texts;
}

// Grows with every change that another connection commits.
std::int64_t SqliteEngine::dataVersion()
{
    SqliteStatement statement = m_database.prepare("PRAGMA data_version");
    return statement.step() ? sqlite3_column_int64(statement.handle(), 0) : 0;
}

Outcome SqliteEngine::run(std::string_view sql, Language language)
{
    const bool batch = language == Language::Transact && isBatch(sql);
    if (!batch && sqlite3_column_count(prepare(sql, language).handle()) > 0) {
        return {query(sql, language), 0};
    }
    return {nullptr, batch ? executeBatch(sql) : execute(sql, language)};
}

void SqliteEngine::insertRows(std::string_view table, std::span<const std::string_view> columns,
                              std::span<const Value> values)
{
    std::string sql = "INSERT INTO " + dialect::quotedName(bareName(table)) + " (";
    std::string marks;
    for (const std::string_view column : columns) {
        sql += marks.empty() ? "" : ", ";
        sql += dialect::quotedName(column);
        marks += marks.empty() ? "?" : ", ?";
    }
    sql += ") VALUES (" + marks + ")";
    requireTransaction();
    SqliteStatement statement = m_database.prepare(sql);
    for (std::size_t i = 0; i + columns.size() <= values.size(); i += columns.size()) {
        statement.bind(values.subspan(i, columns.size()));
        statement.step();
        statement.reset();
    }
}

void SqliteEngine::refreshStatistics()
{
    execute("PRAGMA optimize", Language::Native);
}

void SqliteEngine::beginWork()
{
    m_database.run("BEGIN IMMEDIATE");
}

void SqliteEngine::commitWork()
{
    m_database.run("COMMIT");
}

void SqliteEngine::rollbackWork()
{
    m_database.run("ROLLBACK");
}

bool SqliteEngine::mayHaveWork() const
{
    return m_database.isOpen() && sqlite3_get_autocommit(m_database.handle()) == 0;
}

const Product& SqliteEngine::product() const
{
    return embeddedSqliteProduct();
}

RowIdentity SqliteEngine::rowIdentity(std::string_view table)
{
    RowIdentity identity;
    const auto rows = query(product().keyQuery(table), Language::Native);
    while (rows->next()) {
        identity.keyColumns.emplace_back(cellText(rows->cells()[0]));
    }
    if (identity.keyColumns.empty() && hasTable(table)) {
        identity.hiddenColumn = product().hiddenColumn();
    }
    return identity;
}

std::int64_t SqliteEngine::nextId(std::string_view table, std::string_view key)
{
    ensureTable(counterTable());
    const IdStatement& ids = idStatement(table, key);
    const UnsyncedCommit unsynced(m_database);
    SqliteStatement statement = m_database.prepare(ids.sql);
    statement.bind(ids.parameters);
    std::int64_t id = 0;
    while (statement.step()) {
        id = sqlite3_column_int64(statement.handle(), 0);
    }
    return id;
}

// A run takes all its ids for one table.
const SqliteEngine::IdStatement& SqliteEngine::idStatement(std::string_view table, std::string_view key)
{
    if (m_ids.table != table || m_ids.key != key) {
        m_ids = {std::string(table),
                 std::string(key),
                 product().raiseCounter(table, key),
                 {bareName(table), bareName(key)}};
    }
    return m_ids;
}

bool SqliteEngine::hasTable(std::string_view name)
{
    return query(product().tableQuery(name), Language::Native)->next();
}

std::string SqliteEngine::connectionString() const
{
    return "Provider=SQLite;Data Source=" + m_database.path();
}

} // namespace zul::host
