#include "bench/BareClient.h"

#include <array>
#include <cstdio>
#include <stdexcept>

namespace zul::bench {

namespace {

// What the host announces for every short text, so that the server has one plan for all.
constexpr SQLULEN textSize = 4000;

SQLCHAR* chars(std::string& text)
{
    return reinterpret_cast<SQLCHAR*>(text.data());
}

SQL_TIMESTAMP_STRUCT momentOf(const std::string& text)
{
    SQL_TIMESTAMP_STRUCT moment{};
    unsigned milliseconds = 0;
    std::sscanf(text.c_str(), "%hd-%hu-%hu %hu:%hu:%hu.%3u", &moment.year, &moment.month, &moment.day,
                &moment.hour, &moment.minute, &moment.second, &milliseconds);
    moment.fraction = milliseconds * 1'000'000U;
    return moment;
}

} // namespace

SQLPOINTER BareClient::Bound::place()
{
    switch (cType) {
    case SQL_C_SBIGINT:
        return &whole;
    case SQL_C_DOUBLE:
        return &real;
    case SQL_C_BIT:
        return &flag;
    case SQL_C_TYPE_TIMESTAMP:
        return &moment;
    default:
        return text.data();
    }
}

BareClient::BareClient(std::string connectionString)
{
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &m_environment);
    SQLSetEnvAttr(m_environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, m_environment, &m_connection);
    check(SQLDriverConnect(m_connection, nullptr, chars(connectionString), SQL_NTS, nullptr, 0, nullptr,
                           SQL_DRIVER_NOPROMPT),
          SQL_HANDLE_DBC, m_connection);
    SQLAllocHandle(SQL_HANDLE_STMT, m_connection, &m_statement);
}

BareClient::~BareClient()
{
    SQLFreeHandle(SQL_HANDLE_STMT, m_statement);
    SQLDisconnect(m_connection);
    SQLFreeHandle(SQL_HANDLE_DBC, m_connection);
    SQLFreeHandle(SQL_HANDLE_ENV, m_environment);
}

void BareClient::check(SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle) const
{
    if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA) {
        return;
    }
    std::array<SQLCHAR, 1024> text{};
    SQLGetDiagRec(kind, handle, 1, nullptr, nullptr, text.data(), static_cast<SQLSMALLINT>(text.size()),
                  nullptr);
    throw std::runtime_error("the bare client: " + std::string(reinterpret_cast<const char*>(text.data())));
}

BareClient::Bound BareClient::boundOf(const tds::Parameter& parameter)
{
    Bound bound;
    if (std::holds_alternative<std::monostate>(parameter.value)) {
        bound.size = textSize;
        bound.length = SQL_NULL_DATA;
    } else if (const auto* whole = std::get_if<std::int64_t>(&parameter.value);
               whole && parameter.type == "bit") {
        bound.cType = SQL_C_BIT;
        bound.sqlType = SQL_BIT;
        bound.flag = *whole != 0 ? 1 : 0;
    } else if (whole) {
        bound.cType = SQL_C_SBIGINT;
        bound.sqlType = parameter.type == "bigint" ? SQL_BIGINT : SQL_INTEGER;
        bound.whole = *whole;
    } else if (const auto* real = std::get_if<double>(&parameter.value)) {
        bound.cType = SQL_C_DOUBLE;
        bound.sqlType = SQL_DOUBLE;
        bound.real = *real;
    } else if (parameter.type.find("date") != std::string::npos) {
        bound.cType = SQL_C_TYPE_TIMESTAMP;
        bound.sqlType = SQL_TYPE_TIMESTAMP;
        bound.size = 23;
        bound.digits = 3;
        bound.moment = momentOf(std::get<std::string>(parameter.value));
    } else {
        bound.text = std::get<std::string>(parameter.value);
        bound.size = textSize;
        bound.length = static_cast<SQLLEN>(bound.text.size());
    }
    return bound;
}

void BareClient::take(const std::vector<Request>& requests)
{
    for (const Request& request : requests) {
        Ready& ready = m_requests.emplace_back();
        ready.text = request.text;
        for (const tds::Parameter& parameter : request.parameters) {
            ready.parameters.push_back(boundOf(parameter));
        }
    }
}

void BareClient::run()
{
    for (Ready& request : m_requests) {
        run(request);
    }
}

void BareClient::run(Ready& request)
{
    SQLUSMALLINT index = 0;
    for (Bound& bound : request.parameters) {
        check(SQLBindParameter(m_statement, ++index, SQL_PARAM_INPUT, bound.cType, bound.sqlType, bound.size,
                               bound.digits, bound.place(), 0, &bound.length),
              SQL_HANDLE_STMT, m_statement);
    }
    // The server keeps the plan of a text with parameters; a statement prepared by itself takes more requests.
    check(SQLExecDirect(m_statement, chars(request.text), static_cast<SQLINTEGER>(request.text.size())),
          SQL_HANDLE_STMT, m_statement);
    fetchAll();
    SQLFreeStmt(m_statement, SQL_RESET_PARAMS);
}

void BareClient::fetchAll()
{
    std::array<char, 8192> cell{};
    SQLRETURN more = SQL_SUCCESS;
    while (SQL_SUCCEEDED(more)) {
        SQLSMALLINT columns = 0;
        SQLNumResultCols(m_statement, &columns);
        while (columns > 0 && SQL_SUCCEEDED(SQLFetch(m_statement))) {
            for (SQLSMALLINT i = 1; i <= columns; ++i) {
                SQLLEN length = 0;
                SQLGetData(m_statement, static_cast<SQLUSMALLINT>(i), SQL_C_CHAR, cell.data(),
                           static_cast<SQLLEN>(cell.size()), &length);
            }
        }
        more = SQLMoreResults(m_statement);
        check(more, SQL_HANDLE_STMT, m_statement);
    }
    SQLFreeStmt(m_statement, SQL_CLOSE);
}

} // namespace zul::bench
