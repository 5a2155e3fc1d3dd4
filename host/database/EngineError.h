#pragma once
// What a database refuses, as an error with the number that a data provider gives it.
#include <cstdint>
#include <stdexcept>
#include <string>

namespace zul::host {

/// The numbers that cross the boundary as failure HRESULTs.
enum class ErrorCode : std::uint32_t
{
    Unspecified = 0x80004005,
    InvalidArgument = 0x80070057,
    Statement = 0x80040E14,       ///< the statement has errors
    NoTable = 0x80040E37,         ///< no such table
    Integrity = 0x80040E2F,       ///< a key or a constraint refuses the value
    BadValue = 0x80040E21,        ///< a value that the column cannot hold
    Busy = 0x80040E31,            ///< somebody else holds the database for too long
    Permission = 0x80040E09,      ///< the database may only be read
    NoTransaction = 0x8004D00E,   ///< commit or rollback without begin
    TransactionOpen = 0x8004D013, ///< begin within a transaction
    ConnectionLost = 0x80004005,  ///< as a provider reports it: nothing more precise
    ItemNotFound = 0x800A0CC1,    ///< 3265: no field of that name or position
    NoCurrentRow = 0x800A0BCD,    ///< 3021: the row set stands on no row
    NotUpdatable = 0x800A0CB3,    ///< 3251: the row set takes no changes
    Closed = 0x800A0E78,          ///< 3704: the row set is closed
};

/// A failed database operation: number and the driver's text (UTF-8).
class EngineError : public std::runtime_error
{
public:
    EngineError(ErrorCode code, const std::string& text, int serverNumber = 0)
        : std::runtime_error(text)
        , m_code(code)
        , m_serverNumber(serverNumber)
    {}

    ErrorCode code() const { return m_code; }

    /// The number that the server itself gives the error; 0 where it has none.
    int serverNumber() const { return m_serverNumber; }

private:
    ErrorCode m_code;
    int m_serverNumber;
};

} // namespace zul::host
