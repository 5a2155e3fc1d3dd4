#pragma once
// Handles, diagnostics, parameters and row-array fetching of ODBC. Private to OdbcEngine.
#include "host/database/Engine.h"

// The automation types stand already. Away from Windows, ODBC's headers bring stand-ins of their own, of which
// one is of another size; it gets another name here.
#ifdef _WIN32
#include <windows.h>
#else
#define ULONG ODBC_ULONG
#endif
#include <sql.h>
#include <sqlext.h>
#ifndef _WIN32
#undef ULONG
#endif

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>

namespace zul::host {

class OdbcConnection;

/// A number as ODBC takes the values of attributes: in the place of a pointer.
inline SQLPOINTER attributeValue(SQLULEN value)
{
    return reinterpret_cast<SQLPOINTER>(value); // NOLINT(performance-no-int-to-ptr)
}

/// A statement handle, freed with its cursor.
class OdbcStatement
{
public:
    explicit OdbcStatement(OdbcConnection& connection);
    ~OdbcStatement();
    OdbcStatement(const OdbcStatement&) = delete;
    OdbcStatement& operator=(const OdbcStatement&) = delete;

    SQLHSTMT handle() const { return m_handle; }
    OdbcConnection& connection() const { return m_connection; }

    /// Sends a text without parameters, to the letter.
    void executeDirect(std::string_view sql);

    /// Takes a text with "?" parameters; executePrepared() runs it, as often as wanted. Transact-SQL is sent with
    /// its parameters in one call each time: the server keeps the plan by itself, while drivers prepare such a
    /// statement anew whenever a parameter is bound.
    void prepare(std::string_view sql);
    void executePrepared(std::span<const Value> parameters);

    /// Columns of the current result, 0 when it is no rows.
    int columnCount();

    /// Goes on from results without rows to the next with rows; false when none is left. `affected` grows by
    /// the rows that the results on the way touched.
    bool moveToRows(std::int64_t& affected);

    /// Reads what results are left, so that the errors of later statements of a batch show, and closes the
    /// cursor.
    void finish(std::int64_t& affected);
    void closeCursor() noexcept;

    /// Throws what the driver notes of the last call, whatever the call returned, when it is an error and no note.
    void failAsDiagnosed();

    /// Throws EngineError unless the code is a success. "No data" is one.
    void check(SQLRETURN code);

private:
    bool hasMoreResults();

    OdbcConnection& m_connection;
    SQLHSTMT m_handle = SQL_NULL_HSTMT;
    std::string m_direct; // empty: prepared by the driver
};

/// The rows of a running statement; see OdbcRows.cpp.
class OdbcRows;

class OdbcConnection
{
public:
    OdbcConnection(const std::string& connectionString, std::chrono::seconds patience);
    ~OdbcConnection();
    OdbcConnection(const OdbcConnection&) = delete;
    OdbcConnection& operator=(const OdbcConnection&) = delete;

    SQLHDBC handle() const { return m_connection; }
    Product product() const { return m_product; }

    /// How long a server may be silent before it counts as lost; 0: without end.
    std::chrono::seconds patience() const { return m_patience; }

    /// A text of SQLGetInfo, empty when the driver has none.
    std::string info(SQLUSMALLINT what) const;
    SQLUSMALLINT shortInfo(SQLUSMALLINT what) const;

    /// Undoes an open transaction and takes no more statements. The handles stay until nobody holds on to
    /// statements: the driver manager does not survive a call on a statement whose connection was taken away.
    void close() noexcept;

    /// Makes the connection free for another statement. Throws EngineError when it is closed.
    void makeFree();
    void setStreaming(OdbcRows* rows) { m_streaming = rows; }
    void streamingEnded(const OdbcRows* rows);

    /// A prepared statement for the text, kept for the next time; null while that one is running.
    std::shared_ptr<OdbcStatement> prepared(std::string_view sql);
    void forget(const OdbcStatement& statement);

    void setAutocommit(bool on);
    void endTransaction(bool commit);
    bool inTransaction() const { return m_inTransaction; }

    /// Whether the server is known to be gone.
    bool isLost();

    /// Throws what the driver says of a failed call.
    [[noreturn]] void fail(SQLSMALLINT kind, SQLHANDLE handle);
    void check(SQLRETURN code);

private:
    struct Prepared
    {
        std::string sql;
        std::shared_ptr<OdbcStatement> statement;
    };

    void limitWaiting();
    void disconnect() noexcept;

    std::chrono::seconds m_patience{0};
    SQLHENV m_environment = SQL_NULL_HENV;
    SQLHDBC m_connection = SQL_NULL_HDBC;
    bool m_connected = false;
    bool m_inTransaction = false;
    bool m_lost = false;
    bool m_closed = false;
    Product m_product = Product::TransactSql;
    OdbcRows* m_streaming = nullptr;
    std::list<Prepared> m_prepared; // the one used last in front
};

/// Opens the rows of a statement that was run and stands on a result with rows. `repeat` runs it again, for
/// values that turn out longer than the driver said.
std::unique_ptr<RowStream> openOdbcRows(std::shared_ptr<OdbcStatement> statement,
                                        std::function<void()> repeat);

/// The rest of a stream, read into memory; called by OdbcConnection.
void bufferOdbcRows(OdbcRows& rows);

} // namespace zul::host
