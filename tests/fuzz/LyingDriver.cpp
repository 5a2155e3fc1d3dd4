#include "tests/fuzz/LyingDriver.h"

#include "host/database/odbc/OdbcApi.h"

#include <array>
#include <map>
#include <vector>

using zul::fuzz::Input;
using zul::fuzz::require;

namespace {

struct Binding
{
    SQLSMALLINT type = SQL_C_CHAR;
    char* place = nullptr;
    SQLLEN width = 0;
    SQLLEN* lengths = nullptr;
};

struct Handle
{
    SQLSMALLINT kind = 0;
    // Of a statement.
    std::vector<SQLSMALLINT> columns;
    std::map<SQLUSMALLINT, Binding> bound;
    std::map<SQLUSMALLINT, Binding> parameters;
    SQLULEN arraySize = 1;
    SQLULEN* fetched = nullptr;
    std::string value; // the rest of what SQLGetData gives
    SQLUSMALLINT valueColumn = 0;
};

Input* answers = nullptr;
long handles = 0;

bool ended()
{
    return answers == nullptr || answers->ended();
}

std::uint8_t byte()
{
    return ended() ? 0 : answers->number<std::uint8_t>();
}

SQLRETURN outcome()
{
    const std::uint8_t choice = byte();
    if (choice < 0xE0) {
        return SQL_SUCCESS;
    }
    constexpr std::array<SQLRETURN, 6> others{SQL_SUCCESS_WITH_INFO, SQL_ERROR,           SQL_ERROR,
                                              SQL_INVALID_HANDLE,    SQL_STILL_EXECUTING, SQL_ERROR};
    return others[choice % others.size()];
}

Handle& of(SQLHANDLE handle)
{
    require(handle != nullptr, "a call on a handle that there is");
    return *static_cast<Handle*>(handle);
}

/// Writes a text as the interface asks for it: no more than there is room for, and a zero behind it.
void write(std::string_view text, void* place, SQLLEN room)
{
    if (place == nullptr || room <= 0) {
        return;
    }
    const std::size_t size = std::min(text.size(), static_cast<std::size_t>(room - 1));
    std::memcpy(place, text.data(), size);
    static_cast<char*>(place)[size] = '\0';
}

std::string_view bytes()
{
    return answers == nullptr ? std::string_view() : answers->bytes();
}

/// Sizes of values, with those that mean something else, and lies.
SQLLEN lengthOf(std::size_t size)
{
    const std::uint8_t choice = byte();
    if (choice < 0xC0) {
        return static_cast<SQLLEN>(size);
    }
    constexpr std::array<SQLLEN, 4> others{SQL_NULL_DATA, SQL_NO_TOTAL, -7, 100'000};
    return others[choice % others.size()];
}

std::size_t sizeOf(SQLSMALLINT type)
{
    switch (type) {
    case SQL_C_BIT:
        return 1;
    case SQL_C_SBIGINT:
    case SQL_C_DOUBLE:
        return sizeof(SQLBIGINT);
    case SQL_C_TYPE_TIMESTAMP:
        return sizeof(SQL_TIMESTAMP_STRUCT);
    default:
        return 0;
    }
}

void giveValue(const Binding& binding, char* place, SQLLEN* length)
{
    const std::string_view given = bytes();
    const std::size_t size = sizeOf(binding.type);
    if (size == 0) {
        write(given, place, binding.width);
        *length = lengthOf(given.size());
        return;
    }
    require(binding.width >= static_cast<SQLLEN>(size), "room for a value of a fixed size");
    std::memset(place, 0, size);
    std::memcpy(place, given.data(), std::min(given.size(), size));
    *length = lengthOf(size);
}

void beginResult(Handle& statement)
{
    constexpr std::array<SQLSMALLINT, 18> types{
        SQL_BIT,      SQL_TINYINT, SQL_SMALLINT,    SQL_INTEGER,      SQL_BIGINT,         SQL_REAL,
        SQL_DOUBLE,   SQL_DECIMAL, SQL_NUMERIC,     SQL_TYPE_DATE,    SQL_TYPE_TIMESTAMP, SQL_CHAR,
        SQL_WVARCHAR, SQL_GUID,    SQL_LONGVARCHAR, SQL_WLONGVARCHAR, SQL_VARBINARY,      SQL_TYPE_TIME};
    statement.columns.clear();
    statement.value.clear();
    statement.valueColumn = 0;
    const std::uint32_t count = ended() ? 0 : answers->below(6);
    for (std::uint32_t i = 0; i < count; ++i) {
        statement.columns.push_back(types[answers->below(types.size())]);
    }
}

SQLRETURN run(Handle& statement)
{
    // What is bound is read, as a driver reads it.
    unsigned sum = 0;
    for (const auto& [index, parameter] : statement.parameters) {
        const SQLLEN length = *parameter.lengths;
        const auto fixed = static_cast<SQLLEN>(sizeOf(parameter.type));
        for (SQLLEN i = 0; length != SQL_NULL_DATA && i < (fixed != 0 ? fixed : length); ++i) {
            sum += static_cast<unsigned char>(parameter.place[i]);
        }
    }
    volatile unsigned seen = sum;
    static_cast<void>(seen);
    const SQLRETURN code = byte() < 0xF8 ? outcome() : static_cast<SQLRETURN>(SQL_NO_DATA);
    beginResult(statement);
    return code;
}

} // namespace

namespace zul::fuzz {

void setDriverInput(Input* input)
{
    answers = input;
}

long driverHandles()
{
    return handles;
}

} // namespace zul::fuzz

SQLRETURN SQLAllocHandle(SQLSMALLINT kind, SQLHANDLE, SQLHANDLE* handle)
{
    *handle = SQL_NULL_HANDLE;
    const SQLRETURN code = byte() < 0xFC ? SQL_SUCCESS : SQL_ERROR;
    if (SQL_SUCCEEDED(code)) {
        auto* const made = new Handle;
        made->kind = kind;
        *handle = made;
        ++handles;
    }
    return code;
}

SQLRETURN SQLFreeHandle(SQLSMALLINT kind, SQLHANDLE handle)
{
    if (handle == SQL_NULL_HANDLE) {
        return SQL_INVALID_HANDLE;
    }
    require(of(handle).kind == kind, "a handle is freed as what it is");
    delete static_cast<Handle*>(handle);
    --handles;
    return outcome();
}

SQLRETURN SQLSetEnvAttr(SQLHENV environment, SQLINTEGER, SQLPOINTER, SQLINTEGER)
{
    of(environment);
    return outcome();
}

SQLRETURN SQLSetConnectAttr(SQLHDBC connection, SQLINTEGER, SQLPOINTER, SQLINTEGER)
{
    of(connection);
    return outcome();
}

SQLRETURN SQLGetConnectAttr(SQLHDBC connection, SQLINTEGER, SQLPOINTER value, SQLINTEGER, SQLINTEGER*)
{
    of(connection);
    *static_cast<SQLUINTEGER*>(value) = byte() < 0xF0 ? SQL_CD_FALSE : SQL_CD_TRUE;
    return outcome();
}

SQLRETURN SQLSetStmtAttr(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER)
{
    Handle& statement = of(handle);
    const SQLRETURN code = outcome();
    if (!SQL_SUCCEEDED(code)) {
        return code;
    }
    if (attribute == SQL_ATTR_ROW_ARRAY_SIZE) {
        statement.arraySize = reinterpret_cast<SQLULEN>(value);
    } else if (attribute == SQL_ATTR_ROWS_FETCHED_PTR) {
        statement.fetched = static_cast<SQLULEN*>(value);
    }
    return code;
}

SQLRETURN SQLDriverConnect(SQLHDBC connection, SQLHWND, SQLCHAR* text, SQLSMALLINT length, SQLCHAR*,
                           SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT)
{
    of(connection);
    require(length >= 0 && (length == 0 || text[length - 1] != '\0'), "a connection string of its length");
    return outcome();
}

SQLRETURN SQLDisconnect(SQLHDBC connection)
{
    of(connection);
    return outcome();
}

SQLRETURN SQLGetInfo(SQLHDBC connection, SQLUSMALLINT what, SQLPOINTER place, SQLSMALLINT room, SQLSMALLINT*)
{
    of(connection);
    constexpr std::array<std::string_view, 4> products{"Microsoft SQL Server", "PostgreSQL", "SQLite", ""};
    if (what == SQL_DBMS_NAME) {
        write(products[byte() % products.size()], place, room);
    } else if (what == SQL_GETDATA_EXTENSIONS) {
        *static_cast<SQLUINTEGER*>(place) = byte();
    } else {
        *static_cast<SQLUSMALLINT*>(place) = byte() % 5;
    }
    return outcome();
}

SQLRETURN SQLGetDiagRec(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT, SQLCHAR* state, SQLINTEGER* native,
                        SQLCHAR* text, SQLSMALLINT room, SQLSMALLINT*)
{
    of(handle);
    constexpr std::array<std::string_view, 10> states{"42000", "08S01", "HYT00", "22001", "23000",
                                                      "HY010", "01004", "40001", "42S02", ""};
    if (ended() || byte() < 0x80) {
        return SQL_NO_DATA;
    }
    write(states[byte() % states.size()], state, 6);
    constexpr std::array<SQLINTEGER, 6> numbers{0, 102, 208, 1205, 3902, -1};
    *native = numbers[byte() % numbers.size()];
    write(bytes(), text, room);
    return outcome();
}

SQLRETURN SQLPrepare(SQLHSTMT statement, SQLCHAR*, SQLINTEGER)
{
    of(statement);
    return outcome();
}

SQLRETURN SQLExecute(SQLHSTMT statement)
{
    return run(of(statement));
}

SQLRETURN SQLExecDirect(SQLHSTMT statement, SQLCHAR*, SQLINTEGER)
{
    return run(of(statement));
}

SQLRETURN SQLBindParameter(SQLHSTMT statement, SQLUSMALLINT index, SQLSMALLINT, SQLSMALLINT type, SQLSMALLINT,
                           SQLULEN, SQLSMALLINT, SQLPOINTER place, SQLLEN room, SQLLEN* length)
{
    const SQLRETURN code = outcome();
    if (SQL_SUCCEEDED(code)) {
        of(statement).parameters[index] = {type, static_cast<char*>(place), room, length};
    }
    return code;
}

SQLRETURN SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT option)
{
    Handle& statement = of(handle);
    if (option == SQL_RESET_PARAMS) {
        statement.parameters.clear();
    } else if (option == SQL_UNBIND) {
        statement.bound.clear();
    } else {
        statement.columns.clear();
    }
    return outcome();
}

SQLRETURN SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* count)
{
    *count = static_cast<SQLSMALLINT>(of(handle).columns.size());
    if (byte() == 0xFF) {
        *count = static_cast<SQLSMALLINT>(byte() % 16 - 3); // another answer than to the same question before
    }
    return outcome();
}

SQLRETURN SQLRowCount(SQLHSTMT handle, SQLLEN* count)
{
    of(handle);
    *count = static_cast<SQLLEN>(byte()) - 4;
    return outcome();
}

SQLRETURN SQLMoreResults(SQLHSTMT handle)
{
    if (ended() || byte() < 0xA0) {
        return SQL_NO_DATA;
    }
    beginResult(of(handle));
    return outcome();
}

SQLRETURN SQLDescribeCol(SQLHSTMT handle, SQLUSMALLINT index, SQLCHAR* name, SQLSMALLINT room, SQLSMALLINT*,
                         SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* digits, SQLSMALLINT* nullable)
{
    const Handle& statement = of(handle);
    write(bytes(), name, room);
    *type = index <= statement.columns.size() ? statement.columns[index - 1U] : SQL_VARCHAR;
    const std::uint8_t choice = byte();
    *size = choice < 0xC0 ? choice % 40U : choice < 0xE0 ? 2000U : static_cast<SQLULEN>(-1);
    *digits = choice;
    *nullable = 1;
    return outcome();
}

SQLRETURN SQLColAttribute(SQLHSTMT handle, SQLUSMALLINT, SQLUSMALLINT, SQLPOINTER text, SQLSMALLINT room,
                          SQLSMALLINT*, SQLLEN*)
{
    of(handle);
    write(byte() < 0x80 ? std::string_view("decimal(18,2)") : bytes(), text, room);
    return outcome();
}

SQLRETURN SQLBindCol(SQLHSTMT handle, SQLUSMALLINT index, SQLSMALLINT type, SQLPOINTER place, SQLLEN room,
                     SQLLEN* lengths)
{
    const SQLRETURN code = outcome();
    if (SQL_SUCCEEDED(code)) {
        of(handle).bound[index] = {type, static_cast<char*>(place), room, lengths};
    }
    return code;
}

SQLRETURN SQLFetch(SQLHSTMT handle)
{
    Handle& statement = of(handle);
    statement.valueColumn = 0;
    if (ended() || byte() < 0x30) {
        return SQL_NO_DATA;
    }
    const SQLULEN rows = std::min<SQLULEN>(byte(), statement.arraySize);
    for (SQLULEN row = 0; row < rows && !ended(); ++row) {
        for (const auto& [index, binding] : statement.bound) {
            giveValue(binding, binding.place + row * static_cast<std::size_t>(binding.width),
                      binding.lengths + row);
        }
    }
    if (statement.fetched != nullptr) {
        // More than there is room for is one of the lies.
        *statement.fetched = byte() == 0xFF ? rows + byte() : rows;
    }
    return outcome();
}

SQLRETURN SQLGetData(SQLHSTMT handle, SQLUSMALLINT index, SQLSMALLINT type, SQLPOINTER place, SQLLEN room,
                     SQLLEN* length)
{
    Handle& statement = of(handle);
    if (sizeOf(type) != 0) {
        giveValue({type, static_cast<char*>(place), room, length}, static_cast<char*>(place), length);
        return outcome();
    }
    if (statement.valueColumn != index) {
        statement.valueColumn = index;
        statement.value = bytes();
        // Long enough for several pieces.
        for (int times = byte() % 8; times > 0 && statement.value.size() < 20'000; --times) {
            statement.value += statement.value;
        }
    }
    write(statement.value, place, room);
    *length = lengthOf(statement.value.size());
    const bool whole = statement.value.size() < static_cast<std::size_t>(room);
    statement.value.erase(0, static_cast<std::size_t>(room - 1));
    const SQLRETURN code = outcome();
    return code == SQL_SUCCESS && !whole ? static_cast<SQLRETURN>(SQL_SUCCESS_WITH_INFO) : code;
}

SQLRETURN SQLSetPos(SQLHSTMT handle, SQLSETPOSIROW row, SQLUSMALLINT, SQLUSMALLINT)
{
    require(row >= 1 && row <= of(handle).arraySize, "a row of the block");
    of(handle).valueColumn = 0;
    return outcome();
}

SQLRETURN SQLEndTran(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT)
{
    of(handle);
    return outcome();
}

SQLRETURN SQLPrimaryKeys(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT)
{
    return run(of(handle));
}

SQLRETURN SQLTables(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT,
                    SQLCHAR*, SQLSMALLINT)
{
    return run(of(handle));
}
