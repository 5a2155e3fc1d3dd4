#pragma once
// The grammar of queries: SELECT and VALUES, what joins them, and what they read from.

#include "host/dialect/syntax/Ast.h"
#include "host/dialect/syntax/ExpressionParser.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zul::dialect {

class QueryParser : protected ExpressionParser
{
protected:
    using ExpressionParser::ExpressionParser;
    ~QueryParser() = default;

    QueryPtr query() final;
    /// WITH …, or nothing.
    std::vector<Cte> commonTables();
    /// VALUES (…), …; in an INSERT the message about DEFAULT is another.
    std::unique_ptr<Select> valueRows(bool ofInsert);
    std::vector<TableRefPtr> tableList();
    /// Passes over WITH (NOLOCK, …) or (NOLOCK): advice about locks that this engine does not take.
    void hints();
    /// [ASC|DESC]; true for DESC.
    bool direction();

private:
    std::vector<OrderItem> orderBy();
    void paging(Query& result);
    void unions(Query& result);
    Term intersections();
    Term term();
    std::unique_ptr<Select> select();
    ExprPtr top();
    void groupBy(Select& result);
    SelectItem selectItem();
    bool starOfTable(SelectItem& item);
    std::optional<std::string> alias(bool textAllowed);

    bool atJoin() const;
    TableRefPtr joins();
    JoinKind joinKind();
    TableRefPtr joinOf(TableRefPtr left);
    TableRefPtr tablePrimary();
    TableRefPtr tableParenthesis();
    bool unionFollows(std::size_t parentheses) const;
};

} // namespace zul::dialect
