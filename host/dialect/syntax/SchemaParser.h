#pragma once
// The grammar of CREATE, ALTER and DROP.

#include "host/dialect/syntax/QueryParser.h"

#include <vector>

namespace zul::dialect {

class SchemaParser : protected QueryParser
{
protected:
    using QueryParser::QueryParser;
    ~SchemaParser() = default;

    // Each begins behind the statement's first word.
    void create(Statement& result);
    void drop(Statement& result, std::vector<Statement>& into);
    void alter(const Statement& start, std::vector<Statement>& into);

private:
    void createTable(Statement& result);
    std::vector<OrderItem> keyColumns();
    ColumnDefinition columnDefinition();
    bool columnOption(ColumnDefinition& column);
    void identity(ColumnDefinition& column);
    ForeignKey references();
    TableConstraint tableConstraint();
};

} // namespace zul::dialect
