#include "host/dialect/base/DialectError.h"

#include <algorithm>

namespace zul::dialect {

DialectError::DialectError(const std::string& message, std::size_t offset, std::size_t line,
                           std::size_t column)
    : std::runtime_error("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " +
                         message)
    , m_message(message)
    , m_offset(offset)
    , m_line(line)
    , m_column(column)
{}

void failAt(std::string_view tsql, std::size_t offset, const std::string& message)
{
    std::size_t line = 1;
    std::size_t column = 1;
    offset = std::min(offset, tsql.size());
    for (std::size_t i = 0; i < offset; ++i) {
        if (tsql[i] == '\n') {
            ++line;
            column = 1;
        } else if ((static_cast<unsigned char>(tsql[i]) & 0xC0U) != 0x80U) {
            ++column;
        }
    }
    throw DialectError(message, offset, line, column);
}

} // namespace zul::dialect
