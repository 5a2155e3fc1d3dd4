#pragma once
// The SQLite library in our terms: a connection with its settings, and prepared statements that are kept.
//
// A connection belongs to one thread; it was opened without the library's own locks. Texts are UTF-8.
#include "host/database/Engine.h"
#include "host/database/EngineError.h"
#include "host/database/Value.h"
#include "host/dialect/Dialect.h"

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace zul::host {

/// A statement in SQLite's own language, with what the source says of its result beyond that.
struct NativeStatement
{
    std::string sql;               ///< empty: there is nothing to run
    std::vector<ColumnType> types; ///< of the result's columns as far as known; may be shorter
    bool changesSchema = false;
    std::optional<dialect::TextSearch> search = std::nullopt; ///< what it looks for, when it is such a search
};

/// Makes SQLite's SQL of a source text.
using SqlTranslator = std::function<NativeStatement(std::string_view)>;

class SqliteDatabase;

/// A prepared statement on loan from its connection; reset and given back when the loan ends, which must be
/// before the connection goes.
class SqliteStatement
{
public:
    SqliteStatement(SqliteStatement&&) noexcept = default;
    SqliteStatement& operator=(SqliteStatement&&) = delete;
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;
    ~SqliteStatement();

    /// Null for a source of which nothing is to run.
    sqlite3_stmt* handle() const;

    /// What the translation says of the statement.
    const NativeStatement& native() const;

    /// The result's columns, to be asked for after the first step, since a changed schema is noticed only then.
    /// Holds good as long as the loan.
    const std::vector<ColumnInfo>& columns();

    /// Binds "?" number 1, 2, …; texts are not copied and must stay until the statement ends.
    void bind(std::span<const Value> parameters);

    /// Runs to the next row; false at the end. Throws EngineError.
    bool step();

    /// Ends the run, so that the statement can be bound and run again.
    void reset();

private:
    friend class SqliteDatabase;
    struct Prepared;
    SqliteStatement(SqliteDatabase& database, std::shared_ptr<Prepared> prepared);
    std::vector<ColumnInfo> readColumns() const;

    SqliteDatabase* m_database;
    std::shared_ptr<Prepared> m_prepared;
};

class SqliteDatabase
{
public:
    enum class Mode
    {
        OpenExisting,
        OpenOrCreate
    };

    /// Opens the file with a write-ahead log, so that a reader never waits for a writer, and waits up to five
    /// seconds for another process. Throws EngineError with the file's name in the text.
    SqliteDatabase(const std::string& path, Mode mode);
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;
    ~SqliteDatabase();

    /// Closes the file; with the last reader its log is worked in and gone. Whatever is prepared later throws
    /// ConnectionLost; a statement that is lent out keeps the file open until it is given back.
    void close() noexcept;
    bool isOpen() const { return m_database != nullptr; }

    sqlite3* handle() const { return m_database; }
    const std::string& path() const { return m_path; }

    /// Prepares SQLite's SQL, one statement; a text that was prepared before costs a look-up only.
    SqliteStatement prepare(std::string_view sql);

    /// Prepares the text that `translate` makes of the source, unless the source is known already. A source
    /// that comes back again and again is translated and prepared once.
    SqliteStatement prepare(std::string_view source, const SqlTranslator& translate);

    /// Forgets what was translated; wanted after the schema changed, since types may have changed with it.
    void forgetTranslations();

    /// Runs every statement of the text (no parameters, rows are dropped).
    void run(const char* sql);

    /// Rows touched by the last statement that touches rows.
    std::int64_t changes() const;
    std::int64_t totalChanges() const;

    /// Throws the library's last error as an EngineError.
    [[noreturn]] void fail() const;

private:
    friend class SqliteStatement;

    using Entries = std::list<std::shared_ptr<SqliteStatement::Prepared>>;
    struct Cache
    {
        Entries entries; // the one used last in front
        std::unordered_map<std::string_view, Entries::iterator> bySource;
    };

    SqliteStatement lend(Cache& cache, std::string_view source, const SqlTranslator* translate);
    sqlite3_stmt* compile(std::string_view sql);
    void requireOpen() const;

    std::string m_path;
    sqlite3* m_database = nullptr;
    Cache m_native;
    Cache m_translated;
};

/// Reads a column of the statement's current row into a cell; the text holds good until the next step.
void readCell(sqlite3_stmt* statement, int column, ColumnType type, ZulCell& cell);

} // namespace zul::host
