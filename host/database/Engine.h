#pragma once
// The seam between the connection objects and a database: everything above it (row sets, journal, services) is
// the same for every engine.
//
// One engine is one connection and belongs to one thread. Texts are UTF-8. Every member throws EngineError.
#include "host/database/EngineError.h"
#include "host/database/Value.h"
#include <Zul_SQL.h>

#include <cstdint>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zul::host {

class Product;
struct TableDefinition;

/// What a statement is written in: the component's Transact-SQL, which an engine may have to translate, or the
/// engine's own language, which reaches it unchanged. Parameters are "?" in both.
enum class Language
{
    Transact,
    Native
};

/// The rows of a running SELECT, one after another. Closing is the destructor's work; an engine that allows
/// one running statement only reads the rest into memory itself when another statement is run.
class RowStream
{
public:
    virtual ~RowStream() = default;

    virtual const std::vector<ColumnInfo>& columns() const = 0;

    /// Moves to the next row; false behind the last one.
    virtual bool next() = 0;

    /// The current row, one cell a column. Texts hold good until the next call of next(). A cell of a Decimal
    /// column is a CellReal whose Text, where it is not null, is the exact number.
    virtual const ZulCell* cells() const = 0;

protected:
    RowStream() = default;
    RowStream(const RowStream&) = delete;
    RowStream& operator=(const RowStream&) = delete;
};

/// What a statement came to: rows, or where there are none the number of rows it touched.
struct Outcome
{
    std::unique_ptr<RowStream> rows;
    std::int64_t affected = 0;
};

/// What tells the rows of a table apart.
struct RowIdentity
{
    std::vector<std::string> keyColumns; ///< the primary key, empty when there is none
    std::string hiddenColumn;            ///< a column that "*" leaves out and that is unique, or empty
};

/// A row that gets its key from the database.
struct NewRow
{
    std::string_view table;
    std::string_view key;                      ///< the column of the id
    std::span<const std::string_view> columns; ///< the others, with their values in the same order
    std::span<const Value> values;
};

/// Throws EngineError (BadValue) for an id that the contracts, whose ids have 32 bits, cannot carry.
void requireGivableId(std::int64_t id, std::string_view table);

class Engine
{
public:
    virtual ~Engine() = default;

    // A text in Transact-SQL is one statement: execute and query refuse more (Statement), because it holds texts from
    // outside.

    /// Runs a statement and gives the number of rows it touched, 0 for one that touches none.
    virtual std::int64_t execute(std::string_view sql, Language language,
                                 std::span<const Value> parameters = {}) = 0;

    /// Runs a SELECT; the stream stands before its first row.
    virtual std::unique_ptr<RowStream> query(std::string_view sql, Language language,
                                             std::span<const Value> parameters = {}) = 0;

    /// Runs a statement, or several, of the host's own, of which it is not known whether it gives rows.
    virtual Outcome run(std::string_view sql, Language language) = 0;

    /// Inserts rows of a table, one value after another, row after row; fast, also for a million.
    virtual void insertRows(std::string_view table, std::span<const std::string_view> columns,
                            std::span<const Value> values) = 0;

    /// A transaction that the database ended by itself (a deadlock) is open for its owner until it is rolled back:
    /// until then every statement and the commit are refused (NoTransaction), so that nothing is kept by halves.
    void begin();
    void commit();
    void rollback();
    bool inTransaction() const;

    /// How the rows of a table are told apart; table as it stands in a statement, brackets allowed.
    virtual RowIdentity rowIdentity(std::string_view table) = 0;

    /// The next free id of a table's key, from 1: one more than the largest that was ever given or stands in
    /// the table, reserved before any other process can have it.
    virtual std::int64_t nextId(std::string_view table, std::string_view key) = 0;

    /// Inserts a row with the next free id: both or neither. `id` is set as soon as it is known, which may be before a
    /// failure.
    virtual void addRow(const NewRow& row, std::int64_t& id);

    /// Makes a table of the schema where the database lacks it; free once it is known to be there.
    void ensureTable(const TableDefinition& table);

    virtual bool hasTable(std::string_view name) = 0;

    /// Called after many rows were written, so that the next statements are planned well.
    virtual void refreshStatistics() {}

    /// Whose language it is that native statements are written in; lives as long as the program.
    virtual const Product& product() const = 0;

    /// Ends the connection for good, whoever holds on to it: an open transaction is undone, files are given back
    /// to the system. Members that would work the database throw ConnectionLost afterwards; rows that are still
    /// open come to an error or their end.
    void close() noexcept;

    /// With the database's place in it, as a program that is handed it could connect again.
    virtual std::string connectionString() const = 0;

protected:
    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// To be called before anything is asked of the database.
    void requireTransaction();
    /// Forgets which tables are there: one was missed.
    void forgetTables() { m_known.clear(); }

    virtual void beginWork() = 0;
    virtual void commitWork() = 0;
    virtual void rollbackWork() = 0;
    /// Whether the database has a transaction open. One that only had reason to doubt it asks its server.
    virtual bool hasWork() = 0;
    /// The same as far as it is known without asking.
    virtual bool mayHaveWork() const = 0;
    virtual void disconnect() noexcept = 0;

private:
    bool m_begun = false;           // by begin(), and not yet ended by its caller
    std::set<std::string> m_known;  // tables that are there, by name
    std::vector<std::string> m_new; // those of them that were made in the open transaction
};

} // namespace zul::host
