#pragma once
// The grammar of CREATE, ALTER and DROP.

#include "host/dialect/syntax/QueryParser.h"
#include "host/dialect/syntax/Statement.h"

#include <vector>

namespace zul::dialect {

class SchemaParser : protected QueryParser
{
protected:
    using QueryParser::QueryParser;
    ~SchemaParser() = default;

    // Each begins behind the statement's first word. A list of names is one statement for each.
    Statement create();
    std::vector<Statement> drop();
    std::vector<Statement> alter();

    std::string tableName() { return qualifiedName("a table name").back(); }

private:
    CreateTable createTable();
    CreateView createView();
    CreateIndex createIndex();
    std::vector<KeyColumn> keyColumns();
    ColumnDefinition columnDefinition();
    bool columnOption(ColumnDefinition& column);
    void identity(ColumnDefinition& column);
    Reference references();
    bool atConstraint() const;
    TableConstraint tableConstraint();
    /// KEY [[NON]CLUSTERED]
    void primaryKeyWords();
};

} // namespace zul::dialect
