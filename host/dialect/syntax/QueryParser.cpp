#include "host/dialect/syntax/QueryParser.h"

#include "host/dialect/base/Words.h"

#include <utility>

namespace zul::dialect {

std::vector<OrderItem> QueryParser::orderBy()
{
    expectWord("ORDER");
    expectWord("BY");
    std::vector<OrderItem> items;
    do {
        OrderItem item;
        item.value = value();
        item.descending = direction();
        items.push_back(std::move(item));
    } while (takeSymbol(","));
    return items;
}

bool QueryParser::direction()
{
    if (takeWord("DESC")) {
        return true;
    }
    takeWord("ASC");
    return false;
}

std::vector<Cte> QueryParser::commonTables()
{
    std::vector<Cte> ctes;
    if (!takeWord("WITH")) {
        return ctes;
    }
    do {
        Cte cte;
        cte.offset = peek().offset;
        cte.name = name("the name of a common table");
        if (peek().is("(")) {
            cte.columns = nameList();
        }
        expectWord("AS");
        expectSymbol("(");
        cte.query = query();
        expectSymbol(")");
        ctes.push_back(std::move(cte));
    } while (takeSymbol(","));
    return ctes;
}

QueryPtr QueryParser::query()
{
    const Nesting nesting(*this);
    auto result = std::make_unique<Query>();
    result->offset = peek().offset;
    result->ctes = commonTables();
    unions(*result);
    if (peek().isWord("ORDER")) {
        result->orderBy = orderBy();
    }
    if (takeWord("OFFSET")) {
        paging(*result);
    }
    if (peek().isWord("FOR")) {
        unsupported(peek(), "FOR");
    }
    if (takeWord("OPTION")) {
        skipParentheses(); // advice to another optimiser
    }
    return result;
}

void QueryParser::paging(Query& result)
{
    result.offsetRows = value();
    if (!takeAnyWord({"ROWS", "ROW"})) {
        unexpected("ROWS");
    }
    if (!takeWord("FETCH")) {
        return;
    }
    if (!takeAnyWord({"NEXT", "FIRST"})) {
        unexpected("NEXT");
    }
    result.fetchRows = value();
    if (!takeAnyWord({"ROWS", "ROW"})) {
        unexpected("ROWS");
    }
    expectWord("ONLY");
}

void QueryParser::unions(Query& result)
{
    result.terms.push_back(intersections());
    while (peek().isWord("UNION") || peek().isWord("EXCEPT")) {
        std::string op = upperAscii(take().text);
        if (op == "UNION" && takeWord("ALL")) {
            op = "UNION ALL";
        }
        result.operators.push_back(std::move(op));
        result.terms.push_back(intersections());
    }
}

// INTERSECT binds closer than UNION and EXCEPT here; the engine reads all three from left to right.
Term QueryParser::intersections()
{
    Term first = term();
    if (!peek().isWord("INTERSECT")) {
        return first;
    }
    Term nested;
    nested.query = std::make_unique<Query>();
    nested.query->offset = peek().offset;
    nested.query->terms.push_back(std::move(first));
    while (takeWord("INTERSECT")) {
        nested.query->operators.emplace_back("INTERSECT");
        nested.query->terms.push_back(term());
    }
    return nested;
}

Term QueryParser::term()
{
    Term result;
    if (takeSymbol("(")) {
        result.query = query();
        expectSymbol(")");
        return result;
    }
    if (peek().isWord("VALUES")) {
        result.select = valueRows(false);
    } else {
        result.select = select();
    }
    return result;
}

std::unique_ptr<Select> QueryParser::valueRows(bool ofInsert)
{
    auto result = std::make_unique<Select>();
    result->offset = peek().offset;
    expectWord("VALUES");
    do {
        expectSymbol("(");
        std::vector<ExprPtr> row;
        do {
            row.push_back(value());
            if (row.back()->kind == ExprKind::Default) {
                fail(row.back()->offset, ofInsert
                                             ? "DEFAULT as a value is not supported: leave the column out"
                                             : "incorrect syntax near 'DEFAULT': expected a value");
            }
        } while (takeSymbol(","));
        expectSymbol(")");
        if (!result->values.empty() && result->values.front().size() != row.size()) {
            unexpected("as many values in this row as in the first one");
        }
        result->values.push_back(std::move(row));
    } while (takeSymbol(","));
    return result;
}

std::unique_ptr<Select> QueryParser::select()
{
    auto result = std::make_unique<Select>();
    result->offset = peek().offset;
    expectWord("SELECT");
    result->distinct = takeWord("DISTINCT");
    if (takeWord("TOP")) {
        result->top = top();
    }
    do {
        result->items.push_back(selectItem());
    } while (takeSymbol(","));
    if (peek().isWord("INTO")) {
        fail(result->offset, "SELECT … INTO is not supported: create the table, then INSERT … SELECT");
    }
    if (takeWord("FROM")) {
        result->from = tableList();
    }
    if (takeWord("WHERE")) {
        result->where = condition();
    }
    if (takeWord("GROUP")) {
        groupBy(*result);
    }
    if (takeWord("HAVING")) {
        result->having = condition();
    }
    return result;
}

ExprPtr QueryParser::top()
{
    ExprPtr count;
    if (takeSymbol("(")) {
        count = value();
        expectSymbol(")");
    } else {
        if (peek().kind != TokenKind::Integer) {
            unexpected("a number or '(' after TOP");
        }
        count = literal(ExprKind::Integer);
    }
    if (peek().isWord("PERCENT")) {
        unsupported(peek(), "TOP … PERCENT");
    }
    if (peek().isWord("WITH")) {
        unsupported(peek(), "TOP … WITH TIES");
    }
    return count;
}

void QueryParser::groupBy(Select& result)
{
    expectWord("BY");
    if (peek().isWord("ALL")) {
        unsupported(peek(), "GROUP BY ALL");
    }
    do {
        result.groupBy.push_back(value());
    } while (takeSymbol(","));
    if (peek().isWord("WITH")) {
        unsupported(peek(), "GROUP BY … WITH CUBE or ROLLUP");
    }
}

SelectItem QueryParser::selectItem()
{
    SelectItem item;
    item.offset = peek().offset;
    if (takeSymbol("*")) {
        item.star = true;
        return item;
    }
    if (starOfTable(item)) {
        return item;
    }
    // alias = expression
    const bool text = peek().kind == TokenKind::Text;
    if ((atName() || text) && peek(1).is("=")) {
        item.alias = take().text;
        skip();
        item.value = value();
        return item;
    }
    if (peek().kind == TokenKind::Variable && peek(1).is("=")) {
        unsupported(peek(), "a variable");
    }
    item.value = value();
    item.alias = alias(true);
    return item;
}

bool QueryParser::starOfTable(SelectItem& item)
{
    std::size_t ahead = 0;
    while (atName(ahead) && peek(ahead + 1).is(".") && !peek(ahead + 2).is("*")) {
        ahead += 2;
    }
    if (!atName(ahead) || !peek(ahead + 1).is(".") || !peek(ahead + 2).is("*")) {
        return false;
    }
    item.star = true;
    item.starOf = qualifiedName("a table name");
    skip(2);
    return true;
}

std::optional<std::string> QueryParser::alias(bool textAllowed)
{
    const bool as = takeWord("AS");
    if (atName() || (textAllowed && peek().kind == TokenKind::Text)) {
        return take().text;
    }
    if (as) {
        unexpected("an alias after AS");
    }
    return std::nullopt;
}

std::vector<TableRefPtr> QueryParser::tableList()
{
    std::vector<TableRefPtr> tables;
    do {
        tables.push_back(joins());
    } while (takeSymbol(","));
    return tables;
}

bool QueryParser::atJoin() const
{
    const Token& token = peek();
    for (const std::string_view word : {"INNER", "LEFT", "RIGHT", "FULL", "CROSS", "JOIN"}) {
        if (token.isWord(word)) {
            return true;
        }
    }
    return token.isWord("OUTER");
}

TableRefPtr QueryParser::joins()
{
    const Nesting nesting(*this);
    TableRefPtr left = tablePrimary();
    for (int count = 1; atJoin(); ++count) {
        if (count > 63) {
            unexpected("at most 64 tables in one join");
        }
        left = joinOf(std::move(left));
    }
    return left;
}

JoinKind QueryParser::joinKind()
{
    JoinKind kind = JoinKind::Inner;
    if (takeWord("CROSS")) {
        kind = JoinKind::Cross;
    } else if (takeWord("LEFT")) {
        kind = JoinKind::Left;
    } else if (takeWord("RIGHT")) {
        kind = JoinKind::Right;
    } else if (takeWord("FULL")) {
        kind = JoinKind::Full;
    } else {
        takeWord("INNER");
    }
    if (kind == JoinKind::Left || kind == JoinKind::Right || kind == JoinKind::Full) {
        takeWord("OUTER");
    }
    if (peek().isWord("APPLY") || peek().isWord("OUTER")) {
        unsupported(peek(), "APPLY");
    }
    expectWord("JOIN");
    return kind;
}

TableRefPtr QueryParser::joinOf(TableRefPtr left)
{
    const Nesting nesting(*this);
    auto join = std::make_unique<TableRef>();
    join->offset = peek().offset;
    join->join = joinKind();
    join->left = std::move(left);
    join->right = tablePrimary();
    if (join->join == JoinKind::Cross) {
        return join;
    }
    while (atJoin()) {
        join->right = joinOf(std::move(join->right));
    }
    expectWord("ON");
    join->on = condition();
    return join;
}

TableRefPtr QueryParser::tablePrimary()
{
    const std::size_t offset = peek().offset;
    if (peek().is("(")) {
        return tableParenthesis();
    }
    auto table = std::make_unique<TableRef>();
    table->offset = offset;
    table->names = qualifiedName("a table name");
    hints();
    if (peek().is("(")) {
        fail(offset, "the function '" + table->names.back() + "' is not known");
    }
    if (const auto given = alias(false)) {
        table->alias = *given;
    }
    hints();
    if (peek().isWord("PIVOT") || peek().isWord("UNPIVOT") || peek().isWord("TABLESAMPLE")) {
        unsupported(peek(), upperAscii(peek().text));
    }
    return table;
}

TableRefPtr QueryParser::tableParenthesis()
{
    const Nesting nesting(*this);
    const std::size_t offset = take().offset;
    std::size_t ahead = 0;
    while (peek(ahead).is("(")) {
        ++ahead;
    }
    const Token& first = peek(ahead);
    const bool derived = first.isWord("SELECT") || first.isWord("VALUES") || first.isWord("WITH");
    if (!derived || (ahead > 0 && !unionFollows(ahead))) {
        TableRefPtr table = joins();
        expectSymbol(")");
        return table;
    }
    auto table = std::make_unique<TableRef>();
    table->offset = offset;
    table->query = query();
    expectSymbol(")");
    const auto given = alias(false);
    if (!given) {
        unexpected("an alias for the derived table");
    }
    table->alias = *given;
    if (peek().is("(")) {
        table->columnAliases = nameList();
    }
    return table;
}

// "((SELECT …" starts a query in parentheses when UNION and the like, or the closing parenthesis of the
// derived table, follows the inner one; else it is a derived table inside a parenthesised join.
bool QueryParser::unionFollows(std::size_t parentheses) const
{
    std::size_t ahead = parentheses;
    for (std::size_t open = parentheses; open >= parentheses; ++ahead) {
        const Token& token = peek(ahead);
        if (token.kind == TokenKind::End) {
            return false;
        }
        if (token.is("(")) {
            ++open;
        } else if (token.is(")")) {
            --open;
        }
    }
    const Token& after = peek(ahead);
    return after.isWord("UNION") || after.isWord("EXCEPT") || after.isWord("INTERSECT") || after.is(")");
}

void QueryParser::hints()
{
    if (peek().isWord("WITH") && peek(1).is("(")) {
        skip();
        skipParentheses();
        return;
    }
    if (peek().is("(") && peek(1).isWord("NOLOCK")) {
        skipParentheses();
    }
}

} // namespace zul::dialect
