// The least that a program can do to put statements to a server through an ODBC driver, and the statements.
#pragma once

#include "host/database/odbc/OdbcApi.h"
#include "tests/host/tds/Types.h"

#include <list>
#include <string>
#include <vector>

namespace zul::bench {

/// A statement as a server got it.
struct Request
{
    std::string text; ///< parameters are "?"
    std::vector<tds::Parameter> parameters;
};

/// Binds, runs and fetches; it looks at nothing that comes.
class BareClient
{
public:
    /// @throws std::runtime_error with the driver's text, as the other members do
    explicit BareClient(std::string connectionString);
    ~BareClient();
    BareClient(const BareClient&) = delete;
    BareClient& operator=(const BareClient&) = delete;

    /// Brings the parameters into the form in which they are bound, which a program of its own has them in.
    void take(const std::vector<Request>& requests);
    /// Runs everything that was taken, in its order.
    void run();

private:
    struct Bound
    {
        SQLSMALLINT cType = SQL_C_CHAR;
        SQLSMALLINT sqlType = SQL_WVARCHAR;
        SQLULEN size = 0;
        SQLSMALLINT digits = 0;
        SQLLEN length = 0;
        SQLBIGINT whole = 0;
        double real = 0;
        SQL_TIMESTAMP_STRUCT moment{};
        unsigned char flag = 0;
        std::string text;

        SQLPOINTER place();
    };
    struct Ready
    {
        std::string text;
        std::vector<Bound> parameters;
    };

    static Bound boundOf(const tds::Parameter& parameter);
    void run(Ready& request);
    void fetchAll();
    void check(SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle) const;

    SQLHENV m_environment = SQL_NULL_HENV;
    SQLHDBC m_connection = SQL_NULL_HDBC;
    SQLHSTMT m_statement = SQL_NULL_HSTMT;
    std::list<Ready> m_requests;
};

} // namespace zul::bench
