#include "host/database/OdbcConnection.h"

#include "base/DateText.h"
#include "host/database/Names.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zul::host {

namespace {

constexpr std::size_t keptStatements = 24;
constexpr SQLULEN longestPlainText = 4000; // beyond it the server's text columns are of the "max" kind

SQLCHAR* characters(std::string_view text)
{
    return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.data()));
}

struct Diagnosis
{
    std::string state;
    SQLINTEGER native = 0;
    std::string text;
};

Diagnosis diagnose(SQLSMALLINT kind, SQLHANDLE handle)
{
    Diagnosis result;
    for (SQLSMALLINT record = 1; record <= 8; ++record) {
        std::array<SQLCHAR, 6> state{};
        std::array<SQLCHAR, 2048> text{};
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        const SQLRETURN code = SQLGetDiagRec(kind, handle, record, state.data(), &native, text.data(),
                                             static_cast<SQLSMALLINT>(text.size()), &length);
        if (!SQL_SUCCEEDED(code))
            break;
        const std::string message(reinterpret_cast<const char*>(text.data()));
        const std::string stateText(reinterpret_cast<const char*>(state.data()));
        // The first record is the weightiest; a note such as "statement terminated" tells nothing more.
        if (record == 1 || (result.native == 0 && native != 0)) {
            result.state = stateText;
            result.native = native;
        }
        result.text += (result.text.empty() ? "" : "; ") + message;
    }
    if (result.text.empty())
        result.text = "the ODBC driver failed and does not say why";
    return result;
}

bool isOneOf(SQLINTEGER number, std::initializer_list<SQLINTEGER> numbers)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

// The numbers of the server come first: drivers put many of its errors under one state.
ErrorCode codeOf(const Diagnosis& diagnosis, Product product)
{
    const std::string_view state = diagnosis.state;
    const auto in = [&](std::string_view start) { return state.substr(0, start.size()) == start; };
    if (product == Product::TransactSql) {
        if (diagnosis.native == 208)
            return ErrorCode::NoTable;
        if (isOneOf(diagnosis.native, {2627, 2601, 515, 547}))
            return ErrorCode::Integrity;
        if (isOneOf(diagnosis.native, {8152, 2628, 245, 241, 242, 8115, 8114, 220, 2402}))
            return ErrorCode::BadValue;
        if (isOneOf(diagnosis.native, {229, 230, 262, 3906}))
            return ErrorCode::Permission;
        if (isOneOf(diagnosis.native, {1205, 1222}))
            return ErrorCode::Busy;
    }
    if (product == Product::Sqlite) {
        if (diagnosis.text.find("no such table") != std::string::npos)
            return ErrorCode::NoTable;
        if (diagnosis.text.find("constraint failed") != std::string::npos)
            return ErrorCode::Integrity;
        if (diagnosis.text.find("locked") != std::string::npos)
            return ErrorCode::Busy;
    }
    if (state == "42S02" || state == "42P01")
        return ErrorCode::NoTable;
    if (state == "42501")
        return ErrorCode::Permission;
    if (in("23"))
        return ErrorCode::Integrity;
    if (in("22"))
        return ErrorCode::BadValue;
    if (in("40") || in("HYT") || state == "55P03")
        return ErrorCode::Busy;
    if (in("08") || in("IM"))
        return ErrorCode::ConnectionLost;
    if (in("42") || in("37") || in("07") || diagnosis.native > 0)
        return ErrorCode::Statement;
    return ErrorCode::Unspecified;
}

/// Storage of one bound parameter for the time of a run.
struct BoundParameter
{
    SQLBIGINT whole = 0;
    SQLDOUBLE number = 0;
    unsigned char flag = 0;
    SQL_TIMESTAMP_STRUCT moment{};
    SQLLEN length = 0;
};

// UTF-16 units of a UTF-8 text, which is how the server counts.
SQLULEN unitsOf(std::string_view text)
{
    SQLULEN units = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80U)
            units += byte >= 0xF0U ? 2 : 1;
    }
    return units;
}

SQL_TIMESTAMP_STRUCT timestampOf(double date)
{
    const auto [days, milliseconds] = splitDateInRange(date);
    const CivilDay day = civilFromDays(days);
    SQL_TIMESTAMP_STRUCT moment{};
    moment.year = static_cast<SQLSMALLINT>(day.year);
    moment.month = static_cast<SQLUSMALLINT>(day.month);
    moment.day = static_cast<SQLUSMALLINT>(day.day);
    moment.hour = static_cast<SQLUSMALLINT>(milliseconds / 3'600'000);
    moment.minute = static_cast<SQLUSMALLINT>(milliseconds / 60'000 % 60);
    moment.second = static_cast<SQLUSMALLINT>(milliseconds / 1000 % 60);
    moment.fraction = static_cast<SQLUINTEGER>(milliseconds % 1000) * 1'000'000U;
    return moment;
}

struct BindParameter
{
    SQLHSTMT statement;
    SQLUSMALLINT index;
    BoundParameter& bound;
    Product product;

    SQLRETURN bind(SQLSMALLINT cType, SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT digits, void* data,
                   SQLLEN length)
    {
        bound.length = length;
        return SQLBindParameter(statement, index, SQL_PARAM_INPUT, cType, sqlType, size, digits, data, length,
                                &bound.length);
    }

    SQLRETURN operator()(std::monostate)
    {
        // The server knows a statement again by the types of its parameters: a NULL is announced as a text is.
        const bool transact = product == Product::TransactSql;
        const SQLRETURN code = bind(SQL_C_CHAR, transact ? SQL_WVARCHAR : SQL_VARCHAR,
                                    transact ? longestPlainText : 1, 0, &bound.flag, 1);
        bound.length = SQL_NULL_DATA;
        return code;
    }
    SQLRETURN operator()(bool value)
    {
        bound.flag = value ? 1 : 0;
        return bind(SQL_C_BIT, SQL_BIT, 1, 0, &bound.flag, 1);
    }
    SQLRETURN operator()(std::int64_t value)
    {
        bound.whole = value;
        const bool small = value >= INT32_MIN && value <= INT32_MAX;
        return bind(SQL_C_SBIGINT, small ? SQL_INTEGER : SQL_BIGINT, small ? 10 : 19, 0, &bound.whole, 0);
    }
    SQLRETURN operator()(double value)
    {
        bound.number = value;
        return bind(SQL_C_DOUBLE, SQL_DOUBLE, 15, 0, &bound.number, 0);
    }
    SQLRETURN operator()(const std::string& value)
    {
        SQLULEN units = std::max<SQLULEN>(unitsOf(value), 1);
        const bool isLong = units > longestPlainText;
        // One size for all, or the server makes a plan for every length that comes along.
        if (product == Product::TransactSql && !isLong)
            units = longestPlainText;
        return bind(SQL_C_CHAR, isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR, units, 0,
                    const_cast<char*>(value.data()), static_cast<SQLLEN>(value.size()));
    }
    SQLRETURN operator()(const DateValue& value)
    {
        bound.moment = timestampOf(value.days);
        return bind(SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 23, 3, &bound.moment,
                    static_cast<SQLLEN>(sizeof bound.moment));
    }
    SQLRETURN operator()(const DecimalValue& value)
    {
        const std::size_t dot = value.text.find('.');
        const auto digits = static_cast<SQLULEN>(
            std::count_if(value.text.begin(), value.text.end(), [](char c) { return c >= '0' && c <= '9'; }));
        const auto scale =
            static_cast<SQLSMALLINT>(dot == std::string::npos ? 0 : value.text.size() - dot - 1);
        return bind(SQL_C_CHAR, SQL_DECIMAL, std::min<SQLULEN>(std::max<SQLULEN>(digits, 1), 38), scale,
                    const_cast<char*>(value.text.data()), static_cast<SQLLEN>(value.text.size()));
    }
};

bool namesFreeTds(const std::string& connectionString)
{
    const std::string folded = foldedName(connectionString);
    return folded.find("freetds") != std::string::npos || folded.find("tdsodbc") != std::string::npos;
}

Product productOf(const std::string& name)
{
    const std::string folded = foldedName(name);
    if (folded.find("postgres") != std::string::npos)
        return Product::PostgreSql;
    if (folded.find("sqlite") != std::string::npos)
        return Product::Sqlite;
    return Product::TransactSql;
}

} // namespace

OdbcStatement::OdbcStatement(OdbcConnection& connection)
    : m_connection(connection)
{
    connection.check(SQLAllocHandle(SQL_HANDLE_STMT, connection.handle(), &m_handle));
    // What stands between braces in a text is no escape sequence.
    SQLSetStmtAttr(m_handle, SQL_ATTR_NOSCAN, attributeValue(SQL_NOSCAN_ON), 0);
    // A network that swallows packets leaves the host's only thread waiting for good.
    if (connection.patience().count() > 0)
        SQLSetStmtAttr(m_handle, SQL_ATTR_QUERY_TIMEOUT,
                       attributeValue(static_cast<SQLULEN>(connection.patience().count())), 0);
}

OdbcStatement::~OdbcStatement()
{
    SQLFreeHandle(SQL_HANDLE_STMT, m_handle);
}

void OdbcStatement::check(SQLRETURN code)
{
    if (!SQL_SUCCEEDED(code) && code != SQL_NO_DATA)
        m_connection.fail(SQL_HANDLE_STMT, m_handle);
}

void OdbcStatement::failAsDiagnosed()
{
    std::array<SQLCHAR, 6> state{};
    SQLINTEGER native = 0;
    for (SQLSMALLINT record = 1; SQL_SUCCEEDED(
             SQLGetDiagRec(SQL_HANDLE_STMT, m_handle, record, state.data(), &native, nullptr, 0, nullptr));
         ++record) {
        const std::string_view kind(reinterpret_cast<const char*>(state.data()), 2);
        if (kind != "00" && kind != "01" && kind != "02")
            m_connection.fail(SQL_HANDLE_STMT, m_handle);
    }
}

void OdbcStatement::executeDirect(std::string_view sql)
{
    check(SQLExecDirect(m_handle, characters(sql), static_cast<SQLINTEGER>(sql.size())));
}

void OdbcStatement::prepare(std::string_view sql)
{
    if (m_connection.product() == Product::TransactSql)
        m_direct = sql;
    else
        check(SQLPrepare(m_handle, characters(sql), static_cast<SQLINTEGER>(sql.size())));
}

void OdbcStatement::executePrepared(std::span<const Value> parameters)
{
    std::vector<BoundParameter> bound(parameters.size());
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        BindParameter binding{m_handle, static_cast<SQLUSMALLINT>(i + 1), bound[i], m_connection.product()};
        check(std::visit(binding, parameters[i]));
    }
    const SQLRETURN code = m_direct.empty() ? SQLExecute(m_handle)
                                            : SQLExecDirect(m_handle, characters(m_direct),
                                                            static_cast<SQLINTEGER>(m_direct.size()));
    if (!SQL_SUCCEEDED(code) && code != SQL_NO_DATA)
        m_connection.fail(SQL_HANDLE_STMT, m_handle);
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
    if (code == SQL_NO_DATA)
        return false;
    if (!SQL_SUCCEEDED(code)) {
        if (diagnose(SQL_HANDLE_STMT, m_handle).state == "HY010")
            return false;
        m_connection.fail(SQL_HANDLE_STMT, m_handle);
    }
    return true;
}

bool OdbcStatement::moveToRows(std::int64_t& affected)
{
    while (columnCount() == 0) {
        SQLLEN count = 0;
        if (SQL_SUCCEEDED(SQLRowCount(m_handle, &count)) && count > 0)
            affected += count;
        if (!hasMoreResults())
            return false;
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

OdbcConnection::OdbcConnection(const std::string& connectionString, std::chrono::seconds patience)
{
    std::string full = connectionString;
    // Without it the driver turns every character that the machine's locale does not know into "?".
    if (namesFreeTds(full) && foldedName(full).find("clientcharset") == std::string::npos)
        full += (full.empty() || full.back() == ';' ? "" : ";") + std::string("ClientCharset=UTF-8");
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &m_environment)))
        throw EngineError(ErrorCode::Unspecified, "ODBC is not available");
    try {
        SQLSetEnvAttr(m_environment, SQL_ATTR_ODBC_VERSION, attributeValue(SQL_OV_ODBC3), 0);
        if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, m_environment, &m_connection)))
            fail(SQL_HANDLE_ENV, m_environment);
        SQLSetConnectAttr(m_connection, SQL_ATTR_LOGIN_TIMEOUT, attributeValue(15), 0);
        const SQLRETURN code =
            SQLDriverConnect(m_connection, nullptr, characters(full), static_cast<SQLSMALLINT>(full.size()),
                             nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
        if (!SQL_SUCCEEDED(code))
            fail(SQL_HANDLE_DBC, m_connection);
        m_connected = true;
        // FreeTDS speaks to servers of Transact-SQL only, whatever they call themselves.
        m_product = namesFreeTds(full) ? Product::TransactSql : productOf(info(SQL_DBMS_NAME));
        if (m_product == Product::TransactSql) {
            m_patience = patience;
            // A driver may cut long texts at 64 KB unless told otherwise.
            OdbcStatement(*this).executeDirect("SET TEXTSIZE 2147483647");
            limitWaiting();
        }
    } catch (...) {
        disconnect();
        throw;
    }
}

// The server waits without end for what another program has locked; the host's only thread must not.
void OdbcConnection::limitWaiting()
{
    try {
        OdbcStatement(*this).executeDirect("SET LOCK_TIMEOUT 30000");
    } catch (const EngineError&) {
        // A compatible server may not know it.
        if (isLost())
            throw;
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
        if (m_inTransaction && !m_lost)
            SQLEndTran(SQL_HANDLE_DBC, m_connection, SQL_ROLLBACK);
        SQLDisconnect(m_connection);
    }
    if (m_connection != SQL_NULL_HDBC)
        SQLFreeHandle(SQL_HANDLE_DBC, m_connection);
    if (m_environment != SQL_NULL_HENV)
        SQLFreeHandle(SQL_HANDLE_ENV, m_environment);
    m_connection = SQL_NULL_HDBC;
    m_environment = SQL_NULL_HENV;
}

std::string OdbcConnection::info(SQLUSMALLINT what) const
{
    std::array<char, 256> text{};
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(
            SQLGetInfo(m_connection, what, text.data(), static_cast<SQLSMALLINT>(text.size()), &length)))
        return {};
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
    m_closed = true;
    if (m_inTransaction && !m_lost)
        SQLEndTran(SQL_HANDLE_DBC, m_connection, SQL_ROLLBACK);
    m_inTransaction = false;
}

void OdbcConnection::makeFree()
{
    if (m_closed)
        throw EngineError(ErrorCode::ConnectionLost, "the connection is closed");
    if (m_streaming == nullptr)
        return;
    OdbcRows& rows = *m_streaming;
    m_streaming = nullptr;
    bufferOdbcRows(rows);
}

void OdbcConnection::streamingEnded(const OdbcRows* rows)
{
    if (m_streaming == rows)
        m_streaming = nullptr;
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
    if (m_prepared.size() >= keptStatements)
        m_prepared.pop_back();
    m_prepared.push_front({std::string(sql), statement});
    return statement;
}

void OdbcConnection::forget(const OdbcStatement& statement)
{
    m_prepared.remove_if([&](const Prepared& entry) { return entry.statement.get() == &statement; });
}

void OdbcConnection::setAutocommit(bool on)
{
    check(SQLSetConnectAttr(m_connection, SQL_ATTR_AUTOCOMMIT,
                            attributeValue(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER));
    m_inTransaction = !on;
}

void OdbcConnection::endTransaction(bool commit)
{
    if (m_lost) {
        // The server has undone what was not committed; some drivers would report a success here all the same.
        m_inTransaction = false;
        if (commit)
            throw EngineError(ErrorCode::ConnectionLost, "the connection to the server is lost");
        return;
    }
    const SQLRETURN code = SQLEndTran(SQL_HANDLE_DBC, m_connection, commit ? SQL_COMMIT : SQL_ROLLBACK);
    if (!SQL_SUCCEEDED(code)) {
        // What could not be ended is given up: the connection must not stay half in a transaction.
        try {
            fail(SQL_HANDLE_DBC, m_connection);
        } catch (...) {
            SQLEndTran(SQL_HANDLE_DBC, m_connection, SQL_ROLLBACK);
            SQLSetConnectAttr(m_connection, SQL_ATTR_AUTOCOMMIT, attributeValue(SQL_AUTOCOMMIT_ON),
                              SQL_IS_UINTEGER);
            m_inTransaction = false;
            // What cannot be undone is undone already, by the server (a deadlock) or with the connection.
            if (!commit)
                return;
            throw;
        }
    }
    setAutocommit(true);
}

void OdbcConnection::fail(SQLSMALLINT kind, SQLHANDLE handle)
{
    const Diagnosis diagnosis = diagnose(kind, handle);
    m_lost = m_lost || (m_connected && diagnosis.state.substr(0, 2) == "08");
    if (m_connected && isLost())
        throw EngineError(ErrorCode::ConnectionLost,
                          "the connection to the server is lost: " + diagnosis.text);
    throw EngineError(codeOf(diagnosis, m_product), diagnosis.text);
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
    if (!SQL_SUCCEEDED(code))
        fail(SQL_HANDLE_DBC, m_connection);
}

} // namespace zul::host
