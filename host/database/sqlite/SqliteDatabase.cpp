#include "host/database/sqlite/SqliteDatabase.h"

#include "base/DateText.h"
#include "host/database/Names.h"
#include "host/database/sqlite/ConnectionSettings.h"
#include "host/dialect/base/ColumnType.h"

#include <sqlite3.h>

#include <algorithm>

namespace zul::host {

namespace {

constexpr std::size_t cachedStatements = 96;
// Texts beyond this are one-off statements; keeping them would cost more than preparing them.
constexpr std::size_t longestCachedSource = std::size_t{32} * 1024;

ErrorCode codeOf(int code, std::string_view text)
{
    switch (code & 0xFF) {
    case SQLITE_ERROR:
        return text.find("no such table") != std::string_view::npos ? ErrorCode::NoTable
                                                                    : ErrorCode::Statement;
    case SQLITE_CONSTRAINT:
        return ErrorCode::Integrity;
    case SQLITE_MISMATCH:
    case SQLITE_TOOBIG:
    case SQLITE_RANGE:
        return ErrorCode::BadValue;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ErrorCode::Busy;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return ErrorCode::Permission;
    default:
        return ErrorCode::Unspecified;
    }
}

struct Bind
{
    sqlite3_stmt* statement;
    int index;

    int operator()(std::monostate) const { return sqlite3_bind_null(statement, index); }
    int operator()(bool value) const { return sqlite3_bind_int(statement, index, value ? 1 : 0); }
    int operator()(std::int64_t value) const { return sqlite3_bind_int64(statement, index, value); }
    int operator()(double value) const { return sqlite3_bind_double(statement, index, value); }
    int operator()(const std::string& value) const
    {
        return sqlite3_bind_text64(statement, index, value.data(), value.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
    int operator()(const DateValue& value) const
    {
        const std::string text = formatDate(value.days);
        return sqlite3_bind_text64(statement, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    // As a text; the column's numeric affinity makes the number of it.
    int operator()(const DecimalValue& value) const
    {
        return sqlite3_bind_text64(statement, index, value.text.data(), value.text.size(), SQLITE_STATIC,
                                   SQLITE_UTF8);
    }
};

// How large the whole numbers of a column of this declaration are, see ColumnInfo.
int integerBytesOf(std::string_view declaration)
{
    const std::string word = foldedName(declaration.substr(0, declaration.find_first_of(" (")));
    if (word == "smallint" || word == "tinyint" || word == "int2") {
        return 2;
    }
    return word == "bigint" || word == "int8" ? 8 : 4;
}

} // namespace

struct SqliteStatement::Prepared
{
    Prepared() = default;
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;
    ~Prepared() { sqlite3_finalize(statement); }

    std::string source;
    NativeStatement native;
    sqlite3_stmt* statement = nullptr;
    std::vector<ColumnInfo> columns;
    int columnsOf = -1; // how often the library had prepared the statement anew when the columns were read
    bool borrowed = false;
};

SqliteStatement::SqliteStatement(SqliteDatabase& database, std::shared_ptr<Prepared> prepared)
    : m_database(&database)
    , m_prepared(std::move(prepared))
{
    m_prepared->borrowed = true;
}

SqliteStatement::~SqliteStatement()
{
    if (!m_prepared) {
        return;
    }
    reset();
    sqlite3_clear_bindings(m_prepared->statement);
    m_prepared->borrowed = false;
}

sqlite3_stmt* SqliteStatement::handle() const
{
    return m_prepared->statement;
}

const NativeStatement& SqliteStatement::native() const
{
    return m_prepared->native;
}

// A statement that comes back a million times has the same columns each time, unless the library had to prepare
// it anew.
const std::vector<ColumnInfo>& SqliteStatement::columns()
{
    const int preparations = sqlite3_stmt_status(handle(), SQLITE_STMTSTATUS_REPREPARE, 0);
    if (m_prepared->columnsOf != preparations) {
        m_prepared->columns = readColumns();
        m_prepared->columnsOf = preparations;
    }
    return m_prepared->columns;
}

std::vector<ColumnInfo> SqliteStatement::readColumns() const
{
    const auto text = [](const char* value) { return std::string(value != nullptr ? value : ""); };
    std::vector<ColumnInfo> columns;
    const int count = sqlite3_column_count(handle());
    columns.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        ColumnInfo info;
        info.name = text(sqlite3_column_name(handle(), i));
        const char* const origin = sqlite3_column_origin_name(handle(), i);
        info.baseName = origin != nullptr ? origin : info.name;
        const std::string declaration = text(sqlite3_column_decltype(handle(), i));
        info.type = dialect::columnTypeOf(declaration);
        if (info.type == ColumnType::Integer) {
            info.integerBytes = integerBytesOf(declaration);
        }
        // An expression has no declaration; what the statement itself says is the next best.
        const auto& known = native().types;
        if (info.type == ColumnType::Unknown && static_cast<std::size_t>(i) < known.size()) {
            info.type = known[static_cast<std::size_t>(i)];
        }
        columns.push_back(std::move(info));
    }
    return columns;
}

void SqliteStatement::reset()
{
    sqlite3_reset(m_prepared->statement);
}

void SqliteStatement::bind(std::span<const Value> parameters)
{
    if (static_cast<std::size_t>(sqlite3_bind_parameter_count(handle())) != parameters.size()) {
        throw EngineError(ErrorCode::BadValue, "the statement wants another number of parameters");
    }
    int index = 1;
    for (const Value& value : parameters) {
        if (std::visit(Bind{handle(), index}, value) != SQLITE_OK) {
            m_database->fail();
        }
        ++index;
    }
}

bool SqliteStatement::step()
{
    switch (sqlite3_step(handle())) {
    case SQLITE_ROW:
        return true;
    case SQLITE_DONE:
        return false;
    default:
        m_database->fail();
    }
}

SqliteDatabase::SqliteDatabase(const std::string& path, Mode mode)
    : m_path(path)
{
    // The library counts every allocation under a lock unless it is told not to before its first use. When the
    // process used it before, this changes nothing.
    static const int uncounted = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    static_cast<void>(uncounted);
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE |
                      (mode == Mode::OpenOrCreate ? SQLITE_OPEN_CREATE : 0);
    try {
        if (sqlite3_open_v2(path.c_str(), &m_database, flags, nullptr) != SQLITE_OK) {
            fail();
        }
        sqlite3_busy_timeout(m_database, 5000);
        for (const char* const* setting = zulConnectionSettings; *setting != nullptr; ++setting) {
            run(*setting);
        }
    } catch (const EngineError& error) {
        const EngineError named(error.code(), path + ": " + error.what());
        sqlite3_close_v2(m_database);
        throw named;
    }
}

SqliteDatabase::~SqliteDatabase()
{
    close();
}

void SqliteDatabase::close() noexcept
{
    m_native = {};
    m_translated = {};
    // A statement that is still lent out would keep the transaction open with the file.
    if (isOpen() && sqlite3_get_autocommit(m_database) == 0) {
        sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
    }
    sqlite3_close_v2(m_database);
    m_database = nullptr;
}

SqliteStatement SqliteDatabase::prepare(std::string_view sql)
{
    return lend(m_native, sql, nullptr);
}

SqliteStatement SqliteDatabase::prepare(std::string_view source, const SqlTranslator& translate)
{
    return lend(m_translated, source, &translate);
}

void SqliteDatabase::forgetTranslations()
{
    m_translated = {};
}

SqliteStatement SqliteDatabase::lend(Cache& cache, std::string_view source, const SqlTranslator* translate)
{
    const auto found = cache.bySource.find(source);
    if (found != cache.bySource.end() && !(*found->second)->borrowed) {
        cache.entries.splice(cache.entries.begin(), cache.entries, found->second);
        return {*this, cache.entries.front()};
    }
    auto prepared = std::make_shared<SqliteStatement::Prepared>();
    if (translate != nullptr) {
        prepared->native = (*translate)(source);
    } else {
        prepared->native.sql = std::string(source);
    }
    prepared->statement = compile(prepared->native.sql);
    // The same text is running already, or is not worth keeping: a statement for this one use. One that changes
    // the schema would hold on to what it changes.
    if (found != cache.bySource.end() || source.size() > longestCachedSource ||
        prepared->native.changesSchema) {
        return {*this, std::move(prepared)};
    }
    if (cache.entries.size() >= cachedStatements) {
        cache.bySource.erase(cache.entries.back()->source);
        cache.entries.pop_back();
    }
    prepared->source = std::string(source);
    cache.entries.push_front(prepared);
    cache.bySource.emplace(prepared->source, cache.entries.begin());
    return {*this, std::move(prepared)};
}

sqlite3_stmt* SqliteDatabase::compile(std::string_view sql)
{
    requireOpen();
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v3(m_database, sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                           &statement, &tail) != SQLITE_OK) {
        fail();
    }
    const std::string_view rest(tail, static_cast<std::size_t>(sql.data() + sql.size() - tail));
    const bool more = rest.find_first_not_of(" \t\r\n;") != std::string_view::npos;
    if (more) {
        sqlite3_finalize(statement);
        throw EngineError(ErrorCode::Statement, "more than one statement in one text");
    }
    return statement;
}

void SqliteDatabase::run(const char* sql)
{
    requireOpen();
    if (sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail();
    }
}

std::int64_t SqliteDatabase::changes() const
{
    return sqlite3_changes64(m_database);
}

std::int64_t SqliteDatabase::totalChanges() const
{
    return sqlite3_total_changes64(m_database);
}

void SqliteDatabase::requireOpen() const
{
    if (!isOpen()) {
        throw EngineError(ErrorCode::ConnectionLost, "the database is closed");
    }
}

void SqliteDatabase::fail() const
{
    requireOpen();
    const int code = sqlite3_extended_errcode(m_database);
    const std::string text = sqlite3_errmsg(m_database);
    throw EngineError(codeOf(code, text), text);
}

void readCell(sqlite3_stmt* statement, int column, ColumnType type, ZulCell& cell)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER: {
        const std::int64_t value = sqlite3_column_int64(statement, column);
        cell.Kind = CellInteger;
        cell.Integer = value;
        if (type == ColumnType::Bit) {
            cell.Kind = CellBoolean;
            cell.Integer = value != 0 ? 1 : 0;
        } else if (type == ColumnType::Real || type == ColumnType::Decimal) {
            cell.Kind = CellReal;
            cell.Real = static_cast<double>(value);
            cell.Text = nullptr;
            cell.Length = 0;
        } else if (dialect::isMoment(type)) {
            // A date column has numeric affinity, which makes a number of 'yyyymmdd' stored as a text.
            if (const auto date = dateFromDigits(value)) {
                cell.Kind = CellDate;
                cell.Real = *date;
            }
        }
        return;
    }
    case SQLITE_FLOAT:
        cell.Kind = CellReal;
        cell.Real = sqlite3_column_double(statement, column);
        cell.Text = nullptr;
        cell.Length = 0;
        return;
    case SQLITE_NULL:
        cell.Kind = CellNull;
        return;
    default: {
        const unsigned char* text = sqlite3_column_text(statement, column);
        const int length = sqlite3_column_bytes(statement, column);
        if (dialect::isMoment(type)) {
            const auto date =
                parseDate({reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)});
            if (date) {
                cell.Kind = CellDate;
                cell.Real = *date;
                return;
            }
        }
        static constexpr unsigned char empty = 0;
        cell.Kind = CellText;
        cell.Text = text != nullptr ? text : &empty;
        cell.Length = length;
    }
    }
}

} // namespace zul::host
