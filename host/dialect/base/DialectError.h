#pragma once
// The one error of the dialect layer, and how it is raised.

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zul::dialect {

/// Why and where a statement could not be translated. what() holds message and place.
class DialectError : public std::runtime_error
{
public:
    DialectError(const std::string& message, std::size_t offset, std::size_t line, std::size_t column);

    const std::string& message() const { return m_message; } ///< without the place
    std::size_t offset() const { return m_offset; }          ///< in bytes, from 0
    std::size_t line() const { return m_line; }              ///< from 1
    std::size_t column() const { return m_column; }          ///< in characters, from 1

private:
    std::string m_message;
    std::size_t m_offset;
    std::size_t m_line;
    std::size_t m_column;
};

/// Throws a DialectError for a place in the text, given in bytes.
[[noreturn]] void failAt(std::string_view tsql, std::size_t offset, const std::string& message);

} // namespace zul::dialect
