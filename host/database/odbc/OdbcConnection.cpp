#include "host/database/odbc/OdbcConnection.h"

#include "host/database/Cell.h"
#include "host/database/Names.h"
#include "host/database/odbc/Diagnosis.h"
#include "host/database/products/Product.h"

#include <algorithm>
#include <array>

namespace zul::host {

namespace {

constexpr std::size_t keptStatements = 24;

bool namesFreeTds(const std::string& connectionString)
{
    const std::string folded = foldedName(connectionString);
    return folded.find("freetds") != std::string::npos || folded.find("tdsodbc") != std::string::npos;
}

} // namespace

OdbcConnection::OdbcConnection(const std::string& connectionString, std::chrono::seconds patience)
    : m_product(&transactSqlProduct())
{
    std::string full = connectionString;
    // Without it the driver turns every character that the machine's locale does not know into "?".
    if (namesFreeTds(full) && foldedName(full).find("clientcharset") == std::string::npos) {
        full += (full.empty() || full.back() == ';' ? "" : ";") + std::string("ClientCharset=UTF-8");
    }
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &m_environment))) {
        throw EngineError(ErrorCode::Unspecified, "ODBC is not available");
    }
    try {
        SQLSetEnvAttr(m_environment, SQL_ATTR_ODBC_VERSION, attributeValue(SQL_OV_ODBC3), 0);
        if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, m_environment, &m_connection))) {
            fail(SQL_HANDLE_ENV, m_environment);
        }
        SQLSetConnectAttr(m_connection, SQL_ATTR_LOGIN_TIMEOUT, attributeValue(15), 0);
        const SQLRETURN code =
            SQLDriverConnect(m_connection, nullptr, characters(full), static_cast<SQLSMALLINT>(full.size()),
                             nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
        if (!SQL_SUCCEEDED(code)) {
            fail(SQL_HANDLE_DBC, m_connection);
        }
        m_connected = true;
        // FreeTDS speaks to servers of Transact-SQL only, whatever they call themselves.
        if (!namesFreeTds(full)) {
            m_product = &productNamed(info(SQL_DBMS_NAME));
        }
        SQLGetInfo(m_connection, SQL_GETDATA_EXTENSIONS, &m_readAgain, sizeof m_readAgain, nullptr);
        if (m_product->limitsSilence()) {
            m_patience = (patience + std::chrono::seconds(m_product->waitsForSilence() - 1)) /
                         m_product->waitsForSilence();
        }
        greet();
    } catch (...) {
        disconnect();
        throw;
    }
}

void OdbcConnection::greet()
{
    for (const std::string_view sql : m_product->settings()) {
        OdbcStatement(*this).executeDirect(sql);
    }
    for (const std::string_view sql : m_product->optionalSettings()) {
        try {
            OdbcStatement(*this).executeDirect(sql);
        } catch (const EngineError&) {
            if (isLost()) {
                throw;
            }
        }
    }
}

OdbcConnection::~OdbcConnection()
{
    disconnect();
}

void OdbcConnection::disconnect() noexcept
{
    m_prepared.clear();
    if (m_connected) {
        if (m_inTransaction && !m_lost) {
            abandonTransaction();
        }
        SQLDisconnect(m_connection);
    }
    if (m_connection != SQL_NULL_HDBC) {
        SQLFreeHandle(SQL_HANDLE_DBC, m_connection);
    }
    if (m_environment != SQL_NULL_HENV) {
        SQLFreeHandle(SQL_HANDLE_ENV, m_environment);
    }
    m_connection = SQL_NULL_HDBC;
    m_environment = SQL_NULL_HENV;
}

std::string OdbcConnection::info(SQLUSMALLINT what) const
{
    std::array<char, 256> text{};
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(
            SQLGetInfo(m_connection, what, text.data(), static_cast<SQLSMALLINT>(text.size()), &length))) {
        return {};
    }
    return text.data();
}

SQLUSMALLINT OdbcConnection::shortInfo(SQLUSMALLINT what) const
{
    SQLUSMALLINT value = 0;
    SQLGetInfo(m_connection, what, &value, sizeof value, nullptr);
    return value;
}

void OdbcConnection::close() noexcept
{
    if (m_inTransaction && !m_closed) {
        try {
            makeFree();
        } catch (const std::exception&) {
            // What was not read is not wanted any more.
        }
        abandonTransaction();
    }
    m_closed = true;
}

void OdbcConnection::makeFree()
{
    if (m_closed) {
        throw EngineError(ErrorCode::ConnectionLost, "the connection is closed");
    }
    if (m_streaming == nullptr) {
        return;
    }
    OdbcRows& rows = *m_streaming;
    m_streaming = nullptr;
    bufferOdbcRows(rows);
}

void OdbcConnection::streamingEnded(const OdbcRows* rows)
{
    if (m_streaming == rows) {
        m_streaming = nullptr;
    }
}

std::shared_ptr<OdbcStatement> OdbcConnection::prepared(std::string_view sql)
{
    const auto found = std::find_if(m_prepared.begin(), m_prepared.end(),
                                    [&](const Prepared& entry) { return entry.sql == sql; });
    if (found != m_prepared.end()) {
        if (found->statement.use_count() > 1) {
            auto another = std::make_shared<OdbcStatement>(*this);
            another->prepare(sql);
            return another;
        }
        m_prepared.splice(m_prepared.begin(), m_prepared, found);
        return m_prepared.front().statement;
    }
    auto statement = std::make_shared<OdbcStatement>(*this);
    statement->prepare(sql);
    if (m_prepared.size() >= keptStatements) {
        m_prepared.pop_back();
    }
    m_prepared.push_front({std::string(sql), statement});
    return statement;
}

void OdbcConnection::forget(const OdbcStatement& statement)
{
    m_prepared.remove_if([&](const Prepared& entry) { return entry.statement.get() == &statement; });
}

void OdbcConnection::run(std::string_view sql)
{
    OdbcStatement statement(*this);
    statement.executeDirect(sql);
    std::int64_t ignored = 0;
    statement.finish(ignored);
}

SQLRETURN OdbcConnection::switchAutocommit(bool on)
{
    return SQLSetConnectAttr(m_connection, SQL_ATTR_AUTOCOMMIT,
                             attributeValue(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER);
}

void OdbcConnection::beginTransaction()
{
    if (!m_product->beginStatement().empty()) {
        run(m_product->beginStatement());
    } else {
        check(switchAutocommit(false));
    }
    m_inTransaction = true;
    m_doubtful = false;
}

void OdbcConnection::commitTransaction()
{
    if (m_lost) {
        // The server has undone what was not committed; some drivers would report a success here all the same.
        m_inTransaction = false;
        throw EngineError(ErrorCode::ConnectionLost, "the connection to the server is lost");
    }
    try {
        if (!m_product->commitStatement().empty()) {
            run(m_product->commitStatement());
        } else {
            check(SQLEndTran(SQL_HANDLE_DBC, m_connection, SQL_COMMIT));
        }
    } catch (const EngineError&) {
        // What could not be ended is given up: the connection must not stay half in a transaction.
        abandonTransaction();
        throw;
    }
    m_inTransaction = false;
    // A connection that breaks only here is noticed by the next statement: the commit stands.
    if (m_product->beginStatement().empty() && !SQL_SUCCEEDED(switchAutocommit(true))) {
        m_lost = true;
    }
}

void OdbcConnection::rollbackTransaction()
{
    abandonTransaction();
}

// What cannot be undone is undone already, by the server (a deadlock) or with the connection.
void OdbcConnection::abandonTransaction() noexcept
{
    m_inTransaction = false;
    m_doubtful = false;
    if (m_lost) {
        return;
    }
    if (m_product->rollbackStatement().empty()) {
        SQLEndTran(SQL_HANDLE_DBC, m_connection, SQL_ROLLBACK);
        switchAutocommit(true);
        return;
    }
    try {
        run(m_product->rollbackStatement());
    } catch (const std::exception&) {
        // A server that does not even undo is left to do it when the connection ends, and no statement follows.
        m_lost = true;
    }
}

bool OdbcConnection::hasTransaction()
{
    if (!m_inTransaction || !m_doubtful || m_lost || m_product->transactionQuery().empty()) {
        return m_inTransaction;
    }
    m_doubtful = false;
    const auto statement = std::make_shared<OdbcStatement>(*this);
    statement->executeDirect(m_product->transactionQuery());
    const auto rows = openOdbcRows(statement);
    m_inTransaction = rows->next() && cellNumber(rows->cells()[0]) > 0;
    return m_inTransaction;
}

void OdbcConnection::fail(SQLSMALLINT kind, SQLHANDLE handle)
{
    const Diagnosis diagnosis = diagnose(kind, handle);
    m_doubtful = true;
    m_lost = m_lost || (m_connected && diagnosis.state.substr(0, 2) == "08");
    if (m_connected && isLost()) {
        throw EngineError(ErrorCode::ConnectionLost,
                          "the connection to the server is lost: " + diagnosis.text);
    }
    throw EngineError(codeOf(diagnosis, *m_product), diagnosis.text, diagnosis.native);
}

bool OdbcConnection::isLost()
{
    SQLUINTEGER dead = SQL_CD_FALSE;
    SQLGetConnectAttr(m_connection, SQL_ATTR_CONNECTION_DEAD, &dead, 0, nullptr);
    m_lost = m_lost || dead == SQL_CD_TRUE;
    return m_lost;
}

void OdbcConnection::check(SQLRETURN code)
{
    if (!SQL_SUCCEEDED(code)) {
        fail(SQL_HANDLE_DBC, m_connection);
    }
}

} // namespace zul::host
