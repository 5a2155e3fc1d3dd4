#include "host/dialect/Dialect.h"

#include "host/dialect/Emitter.h"
#include "host/dialect/Lexer.h"
#include "host/dialect/Parser.h"

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

Translation translate(std::string_view tsql, const ColumnTypes& columnTypes)
{
    const std::vector<Statement> statements = parseBatch(tsql);
    if (statements.empty())
        failAt(tsql, 0, "the statement is empty");
    if (statements.size() > 1)
        failAt(tsql, statements[1].offset, "only one statement can stand here");
    return emit(statements.front(), tsql, columnTypes);
}

std::vector<Translation> translateBatch(std::string_view tsql, const ColumnTypes& columnTypes)
{
    std::vector<Translation> translations;
    for (const Statement& statement : parseBatch(tsql))
        translations.push_back(emit(statement, tsql, columnTypes));
    return translations;
}

} // namespace zul::dialect
