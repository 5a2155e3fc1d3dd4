#pragma once
// A connection of ODBC. Private to OdbcEngine.
#include "host/database/Engine.h"
#include "host/database/odbc/OdbcApi.h"
#include "host/database/odbc/OdbcStatement.h"

#include <chrono>
#include <list>
#include <memory>
#include <string>
#include <string_view>

namespace zul::host {

class Product;

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
    const Product& product() const { return *m_product; }

    /// How long a server may be silent before it counts as lost; 0: without end.
    std::chrono::seconds patience() const { return m_patience; }

    /// A text of SQLGetInfo, empty when the driver has none.
    std::string info(SQLUSMALLINT what) const;
    SQLUSMALLINT shortInfo(SQLUSMALLINT what) const;

    /// Whether the driver gives a value again, from its beginning, that it brought into a place that was too small for
    /// it; and whether also in a block of several rows.
    bool readsBoundValues() const { return (m_readAgain & SQL_GD_BOUND) != 0; }
    bool readsWithinBlocks() const { return (m_readAgain & SQL_GD_BLOCK) != 0; }

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

    void beginTransaction();
    /// Throws EngineError when nothing was committed. What a server acknowledged is committed, whatever becomes of the
    /// connection then.
    void commitTransaction();
    void rollbackTransaction();
    bool inTransaction() const { return m_inTransaction; }
    /// The same, asked of the server where an error gave reason to doubt it.
    bool hasTransaction();

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

    void greet();
    void disconnect() noexcept;
    void run(std::string_view sql);
    SQLRETURN switchAutocommit(bool on);
    void abandonTransaction() noexcept;

    std::chrono::seconds m_patience{0};
    SQLHENV m_environment = SQL_NULL_HENV;
    SQLHDBC m_connection = SQL_NULL_HDBC;
    bool m_connected = false;
    bool m_inTransaction = false;
    bool m_doubtful = false; // an error came since the transaction was last known to be open
    bool m_lost = false;
    bool m_closed = false;
    const Product* m_product;
    SQLUINTEGER m_readAgain = 0; // SQL_GETDATA_EXTENSIONS
    OdbcRows* m_streaming = nullptr;
    std::list<Prepared> m_prepared; // the one used last in front
};

/// Opens the rows of a statement that was run and stands on a result with rows.
std::unique_ptr<RowStream> openOdbcRows(std::shared_ptr<OdbcStatement> statement);

/// The rest of a stream, read into memory; called by OdbcConnection.
void bufferOdbcRows(OdbcRows& rows);

} // namespace zul::host
