#include "host/database/odbc/OdbcStatement.h"

#include "host/database/odbc/Diagnosis.h"
#include "host/database/odbc/OdbcConnection.h"
#include "host/database/odbc/OdbcParameters.h"
#include "host/database/products/Product.h"

#include <array>
#include <vector>

namespace zul::host {

OdbcStatement::OdbcStatement(OdbcConnection& connection)
    : m_connection(connection)
{
    connection.check(SQLAllocHandle(SQL_HANDLE_STMT, connection.handle(), &m_handle));
    // What stands between braces in a text is no escape sequence.
    SQLSetStmtAttr(m_handle, SQL_ATTR_NOSCAN, attributeValue(SQL_NOSCAN_ON), 0);
    // A network that swallows packets leaves the host's only thread waiting for good.
    if (connection.patience().count() > 0) {
        SQLSetStmtAttr(m_handle, SQL_ATTR_QUERY_TIMEOUT,
                       attributeValue(static_cast<SQLULEN>(connection.patience().count())), 0);
    }
}

OdbcStatement::~OdbcStatement()
{
    SQLFreeHandle(SQL_HANDLE_STMT, m_handle);
}

void OdbcStatement::check(SQLRETURN code)
{
    if (!SQL_SUCCEEDED(code) && code != SQL_NO_DATA) {
        m_connection.fail(SQL_HANDLE_STMT, m_handle);
    }
}

void OdbcStatement::failAsDiagnosed()
{
    std::array<SQLCHAR, 6> state{};
    SQLINTEGER native = 0;
    for (SQLSMALLINT record = 1; SQL_SUCCEEDED(
             SQLGetDiagRec(SQL_HANDLE_STMT, m_handle, record, state.data(), &native, nullptr, 0, nullptr));
         ++record) {
        const std::string_view kind(reinterpret_cast<const char*>(state.data()), 2);
        if (kind != "00" && kind != "01" && kind != "02") {
            m_connection.fail(SQL_HANDLE_STMT, m_handle);
        }
    }
}

void OdbcStatement::executeDirect(std::string_view sql)
{
    check(SQLExecDirect(m_handle, characters(sql), static_cast<SQLINTEGER>(sql.size())));
}

void OdbcStatement::prepare(std::string_view sql)
{
    if (m_connection.product().keepsPlans()) {
        m_direct = sql;
    } else {
        check(SQLPrepare(m_handle, characters(sql), static_cast<SQLINTEGER>(sql.size())));
    }
}

void OdbcStatement::executePrepared(std::span<const Value> parameters)
{
    std::vector<BoundParameter> bound(parameters.size());
    const auto textSize = m_connection.product().announcedTextSize();
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        check(bindParameter(m_handle, static_cast<SQLUSMALLINT>(i + 1), parameters[i], bound[i], textSize));
    }
    const SQLRETURN code = m_direct.empty() ? SQLExecute(m_handle)
                                            : SQLExecDirect(m_handle, characters(m_direct),
                                                            static_cast<SQLINTEGER>(m_direct.size()));
    if (!SQL_SUCCEEDED(code) && code != SQL_NO_DATA) {
        m_connection.fail(SQL_HANDLE_STMT, m_handle);
    }
    // The storage goes; a driver must not look at it any more.
    SQLFreeStmt(m_handle, SQL_RESET_PARAMS);
}

int OdbcStatement::columnCount()
{
    SQLSMALLINT count = 0;
    return SQL_SUCCEEDED(SQLNumResultCols(m_handle, &count)) ? count : 0;
}

// A statement that answered "no data" at once is over for the driver manager: it calls the question for more an
// error in the sequence of calls.
bool OdbcStatement::hasMoreResults()
{
    const SQLRETURN code = SQLMoreResults(m_handle);
    if (code == SQL_NO_DATA) {
        return false;
    }
    if (!SQL_SUCCEEDED(code)) {
        if (diagnose(SQL_HANDLE_STMT, m_handle).state == "HY010") {
            return false;
        }
        m_connection.fail(SQL_HANDLE_STMT, m_handle);
    }
    return true;
}

bool OdbcStatement::moveToRows(std::int64_t& affected)
{
    while (columnCount() == 0) {
        SQLLEN count = 0;
        if (SQL_SUCCEEDED(SQLRowCount(m_handle, &count)) && count > 0) {
            affected += count;
        }
        if (!hasMoreResults()) {
            return false;
        }
    }
    return true;
}

void OdbcStatement::finish(std::int64_t& affected)
{
    while (moveToRows(affected) && hasMoreResults()) {
    }
    closeCursor();
}

void OdbcStatement::closeCursor() noexcept
{
    SQLFreeStmt(m_handle, SQL_CLOSE);
    SQLFreeStmt(m_handle, SQL_UNBIND);
}

} // namespace zul::host
