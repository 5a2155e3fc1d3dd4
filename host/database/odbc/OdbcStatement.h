#pragma once
// A statement of an ODBC connection. Private to OdbcEngine.
#include "host/database/Value.h"
#include "host/database/odbc/OdbcApi.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zul::host {

class OdbcConnection;

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

} // namespace zul::host
