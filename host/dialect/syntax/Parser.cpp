#include "host/dialect/syntax/Parser.h"

#include "host/dialect/base/ColumnType.h"
#include "host/dialect/base/DialectError.h"
#include "host/dialect/base/Words.h"
#include "host/dialect/syntax/Lexer.h"

#include <charconv>
#include <initializer_list>
#include <utility>

namespace zul::dialect {

namespace {

bool isCondition(const Expr& expr)
{
    switch (expr.kind) {
    case ExprKind::And:
    case ExprKind::Or:
    case ExprKind::Not:
    case ExprKind::Compare:
    case ExprKind::Between:
    case ExprKind::InList:
    case ExprKind::InQuery:
    case ExprKind::Exists:
    case ExprKind::Like:
    case ExprKind::IsNull:
        return true;
    default:
        return false;
    }
}

class Parser
{
public:
    explicit Parser(std::string_view text)
        : m_text(text)
        , m_tokens(tokenize(text))
    {}

    std::vector<Statement> batch()
    {
        std::vector<Statement> statements;
        while (true) {
            while (takeSymbol(";"))
                ;
            if (peek().kind == TokenKind::End)
                return statements;
            m_parameters = 0;
            statement(statements);
            if (!peek().is(";") && peek().kind != TokenKind::End && !atStatementStart())
                unexpected("the end of the statement");
        }
    }

private:
    // --- tokens -------------------------------------------------------------------------------------------

    const Token& peek(std::size_t ahead = 0) const
    {
        const std::size_t at = m_at + ahead;
        return at < m_tokens.size() ? m_tokens[at] : m_tokens.back();
    }

    Token take()
    {
        Token token = peek();
        if (token.kind != TokenKind::End)
            ++m_at;
        return token;
    }

    bool takeSymbol(std::string_view symbol)
    {
        if (!peek().is(symbol))
            return false;
        ++m_at;
        return true;
    }

    bool takeWord(std::string_view keyword)
    {
        if (!peek().isWord(keyword))
            return false;
        ++m_at;
        return true;
    }

    bool takeAnyWord(std::initializer_list<std::string_view> keywords)
    {
        for (const std::string_view keyword : keywords)
            if (takeWord(keyword))
                return true;
        return false;
    }

    void expectSymbol(std::string_view symbol)
    {
        if (!takeSymbol(symbol))
            unexpected("'" + std::string(symbol) + "'");
    }

    void expectWord(std::string_view keyword)
    {
        if (!takeWord(keyword))
            unexpected(std::string(keyword));
    }

    [[noreturn]] void unexpected(const std::string& expected) const
    {
        const Token& token = peek();
        if (token.kind == TokenKind::End)
            failAt(m_text, token.offset, "the statement ends where " + expected + " is expected");
        failAt(m_text, token.offset, "incorrect syntax near '" + written(token) + "': expected " + expected);
    }

    [[noreturn]] void unsupported(const Token& token, const std::string& what) const
    {
        failAt(m_text, token.offset, what + " is not supported (near '" + written(token) + "')");
    }

    // The token as it stands in the text; a long literal is cut at a character's border.
    std::string written(const Token& token) const
    {
        std::size_t length = token.length;
        if (length <= 60)
            return std::string(m_text.substr(token.offset, length));
        length = 57;
        while (length > 0 && (static_cast<unsigned char>(m_text[token.offset + length]) & 0xC0U) == 0x80U)
            --length;
        return std::string(m_text.substr(token.offset, length)) + "...";
    }

    class Nesting
    {
    public:
        explicit Nesting(Parser& parser)
            : m_parser(parser)
        {
            if (++m_parser.m_depth > deepestNesting)
                failAt(m_parser.m_text, m_parser.peek().offset,
                       "the statement is nested too deep: at most " + std::to_string(deepestNesting) +
                           " levels");
        }
        ~Nesting() { --m_parser.m_depth; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

    private:
        Parser& m_parser;
    };

    bool atName(std::size_t ahead = 0) const
    {
        const Token& token = peek(ahead);
        return token.kind == TokenKind::Name || (token.kind == TokenKind::Word && !isReserved(token.text));
    }

    std::string name(const std::string& expected = "a name")
    {
        if (!atName())
            unexpected(expected);
        return take().text;
    }

    // [server.][database.][schema.]name; a part between two dots may be missing (database..table).
    std::vector<std::string> qualifiedName(const std::string& expected)
    {
        std::vector<std::string> parts{name(expected)};
        while (peek().is(".") && !peek(1).is("*")) {
            ++m_at;
            if (peek().is("."))
                continue;
            // After a dot a reserved word is a name too.
            if (peek().kind != TokenKind::Name && peek().kind != TokenKind::Word)
                unexpected("a name after '.'");
            parts.push_back(take().text);
            if (parts.size() > 5)
                unexpected("a name of at most five parts");
        }
        return parts;
    }

    std::vector<std::string> nameList()
    {
        expectSymbol("(");
        std::vector<std::string> names;
        do
            names.push_back(qualifiedName("a column name").back());
        while (takeSymbol(","));
        expectSymbol(")");
        return names;
    }

    // Passes over "( … )" with whatever stands in it.
    void skipParentheses()
    {
        expectSymbol("(");
        for (int open = 1; open > 0;) {
            if (peek().kind == TokenKind::End)
                unexpected("')'");
            const Token token = take();
            if (token.is("("))
                ++open;
            else if (token.is(")"))
                --open;
        }
    }

    int smallNumber(const std::string& expected)
    {
        if (peek().kind != TokenKind::Integer)
            unexpected(expected);
        int number = 0;
        const std::string& digits = peek().text;
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (result.ec != std::errc())
            unexpected(expected);
        ++m_at;
        return number;
    }

    // --- expressions --------------------------------------------------------------------------------------

    ExprPtr make(ExprKind kind, std::size_t offset) const
    {
        auto expr = std::make_unique<Expr>();
        expr->kind = kind;
        expr->offset = offset;
        return expr;
    }

    ExprPtr expression()
    {
        const Nesting nesting(*this);
        return disjunction();
    }

    ExprPtr value()
    {
        ExprPtr expr = expression();
        requireValue(*expr);
        return expr;
    }

    ExprPtr condition()
    {
        ExprPtr expr = expression();
        requireCondition(*expr);
        return expr;
    }

    void requireValue(const Expr& expr) const
    {
        if (isCondition(expr))
            failAt(m_text, expr.offset, "a condition stands here where a value is expected");
    }

    void requireCondition(const Expr& expr) const
    {
        if (!isCondition(expr))
            failAt(m_text, expr.offset, "a value stands here where a condition is expected");
    }

    ExprPtr logic(ExprKind kind, std::string_view keyword, ExprPtr (Parser::*operand)())
    {
        ExprPtr first = (this->*operand)();
        if (!peek().isWord(keyword))
            return first;
        ExprPtr chain = make(kind, first->offset);
        requireCondition(*first);
        chain->args.push_back(std::move(first));
        while (takeWord(keyword)) {
            chain->args.push_back((this->*operand)());
            requireCondition(*chain->args.back());
        }
        return chain;
    }

    ExprPtr disjunction() { return logic(ExprKind::Or, "OR", &Parser::conjunction); }
    ExprPtr conjunction() { return logic(ExprKind::And, "AND", &Parser::negation); }

    ExprPtr negation()
    {
        const std::size_t offset = peek().offset;
        bool any = false;
        bool odd = false;
        while (takeWord("NOT")) {
            any = true;
            odd = !odd;
        }
        ExprPtr operand = predicate();
        if (any)
            requireCondition(*operand);
        if (!odd)
            return operand;
        ExprPtr expr = make(ExprKind::Not, offset);
        expr->args.push_back(std::move(operand));
        return expr;
    }

    ExprPtr predicate()
    {
        ExprPtr left = additive();
        const Token& token = peek();
        if (token.kind == TokenKind::Symbol) {
            static constexpr std::string_view comparisons[] = {"=", "<>", "!=", "<", ">", "<=", ">="};
            for (const std::string_view comparison : comparisons)
                if (token.is(comparison))
                    return comparisonOf(std::move(left));
            return left;
        }
        if (token.isWord("IS"))
            return nullTest(std::move(left));
        const bool negated = token.isWord("NOT");
        const Token& keyword = negated ? peek(1) : token;
        if (!keyword.isWord("BETWEEN") && !keyword.isWord("IN") && !keyword.isWord("LIKE"))
            return left;
        requireValue(*left);
        if (negated)
            ++m_at;
        ExprPtr expr = takeWord("BETWEEN") ? between() : takeWord("IN") ? membership() : like();
        expr->offset = left->offset;
        expr->operand = std::move(left);
        expr->negated = negated;
        return expr;
    }

    ExprPtr comparisonOf(ExprPtr left)
    {
        requireValue(*left);
        ExprPtr expr = make(ExprKind::Compare, left->offset);
        expr->ops.push_back(take().text);
        if (peek().isWord("ALL") || peek().isWord("ANY") || peek().isWord("SOME"))
            unsupported(peek(), "a comparison with ALL, ANY or SOME");
        expr->args.push_back(std::move(left));
        expr->args.push_back(additive());
        requireValue(*expr->args.back());
        return expr;
    }

    ExprPtr nullTest(ExprPtr left)
    {
        requireValue(*left);
        ++m_at;
        ExprPtr expr = make(ExprKind::IsNull, left->offset);
        expr->negated = takeWord("NOT");
        expectWord("NULL");
        expr->operand = std::move(left);
        return expr;
    }

    ExprPtr between()
    {
        ExprPtr expr = make(ExprKind::Between, peek().offset);
        expr->args.push_back(additive());
        requireValue(*expr->args.back());
        expectWord("AND");
        expr->args.push_back(additive());
        requireValue(*expr->args.back());
        return expr;
    }

    ExprPtr membership()
    {
        ExprPtr expr = make(ExprKind::InList, peek().offset);
        expectSymbol("(");
        if (peek().isWord("SELECT") || peek().isWord("WITH")) {
            expr->kind = ExprKind::InQuery;
            expr->query = query();
        } else {
            do
                expr->args.push_back(value());
            while (takeSymbol(","));
        }
        expectSymbol(")");
        return expr;
    }

    ExprPtr like()
    {
        expectWord("LIKE");
        ExprPtr expr = make(ExprKind::Like, peek().offset);
        expr->args.push_back(additive());
        requireValue(*expr->args.back());
        if (takeWord("ESCAPE")) {
            expr->otherwise = additive();
            requireValue(*expr->otherwise);
        }
        return expr;
    }

    ExprPtr chain(std::initializer_list<std::string_view> symbols, ExprPtr (Parser::*operand)())
    {
        const auto atOperator = [&] {
            for (const std::string_view symbol : symbols)
                if (peek().is(symbol))
                    return true;
            return false;
        };
        ExprPtr first = (this->*operand)();
        if (!atOperator())
            return first;
        ExprPtr expr = make(ExprKind::Arithmetic, first->offset);
        requireValue(*first);
        expr->args.push_back(std::move(first));
        while (atOperator()) {
            expr->ops.push_back(take().text);
            expr->args.push_back((this->*operand)());
            requireValue(*expr->args.back());
        }
        return expr;
    }

    ExprPtr additive() { return chain({"+", "-", "&", "|"}, &Parser::multiplicative); }
    ExprPtr multiplicative() { return chain({"*", "/", "%"}, &Parser::unary); }

    ExprPtr unary()
    {
        const Token& token = peek();
        if (!token.is("-") && !token.is("+"))
            return postfix();
        const Nesting nesting(*this);
        const Token op = take();
        ExprPtr expr = make(op.text == "-" ? ExprKind::Negate : ExprKind::Plus, op.offset);
        expr->args.push_back(unary());
        requireValue(*expr->args.back());
        return expr;
    }

    ExprPtr postfix()
    {
        ExprPtr expr = primary();
        while (peek().isWord("COLLATE")) {
            requireValue(*expr);
            ++m_at;
            // Only the innermost of several counts for nothing: the last one wins.
            ExprPtr collated = make(ExprKind::Collate, expr->offset);
            collated->text = upperAscii(name("a collation name"));
            collated->args.push_back(expr->kind == ExprKind::Collate ? std::move(expr->args.front())
                                                                     : std::move(expr));
            expr = std::move(collated);
        }
        return expr;
    }

    ExprPtr literal(ExprKind kind)
    {
        const Token token = take();
        ExprPtr expr = make(kind, token.offset);
        expr->text = token.text;
        return expr;
    }

    ExprPtr primary()
    {
        const Token& token = peek();
        switch (token.kind) {
        case TokenKind::Integer:
            return literal(ExprKind::Integer);
        case TokenKind::Decimal:
            return literal(ExprKind::Decimal);
        case TokenKind::Real:
            return literal(ExprKind::Real);
        case TokenKind::Hex:
            return literal(ExprKind::Hex);
        case TokenKind::Text:
            return literal(ExprKind::Text);
        case TokenKind::Variable:
            return variable();
        case TokenKind::Name:
            return columnOrCall();
        case TokenKind::Word:
            return word();
        case TokenKind::Symbol:
            break;
        case TokenKind::End:
            unexpected("an expression");
        }
        if (token.is("("))
            return parenthesis();
        if (token.is("?")) {
            ExprPtr expr = make(ExprKind::Parameter, take().offset);
            expr->text = std::to_string(++m_parameters);
            return expr;
        }
        unexpected("an expression");
    }

    ExprPtr parenthesis()
    {
        const std::size_t offset = take().offset;
        if (peek().isWord("SELECT") || peek().isWord("WITH")) {
            ExprPtr expr = make(ExprKind::Scalar, offset);
            expr->query = query();
            expectSymbol(")");
            return expr;
        }
        ExprPtr expr = expression();
        expectSymbol(")");
        return expr;
    }

    ExprPtr variable()
    {
        const Token token = take();
        const std::string upper = upperAscii(token.text);
        if (upper != "@@IDENTITY" && upper != "@@ROWCOUNT")
            unsupported(token, "a variable");
        ExprPtr expr = make(ExprKind::Call, token.offset);
        expr->text = upper;
        return expr;
    }

    ExprPtr word()
    {
        const Token& token = peek();
        if (token.isWord("NULL"))
            return literal(ExprKind::Null);
        if (token.isWord("CASE"))
            return caseExpression();
        if (token.isWord("EXISTS")) {
            ExprPtr expr = make(ExprKind::Exists, take().offset);
            expectSymbol("(");
            expr->query = query();
            expectSymbol(")");
            return expr;
        }
        if (token.isWord("DEFAULT"))
            return literal(ExprKind::Default);
        if (token.isWord("CURRENT_TIMESTAMP")) {
            ExprPtr expr = make(ExprKind::Call, take().offset);
            expr->text = "CURRENT_TIMESTAMP";
            return expr;
        }
        const bool call = peek(1).is("(");
        if (call && token.isWord("CAST"))
            return cast();
        if (call && token.isWord("CONVERT"))
            return convert();
        if (call && (token.isWord("LEFT") || token.isWord("RIGHT") || token.isWord("COALESCE") ||
                     token.isWord("NULLIF")))
            return functionCall();
        if (!atName())
            unexpected("an expression");
        return columnOrCall();
    }

    ExprPtr columnOrCall()
    {
        if (peek(1).is("("))
            return functionCall();
        const std::size_t offset = peek().offset;
        std::vector<std::string> names = qualifiedName("a column name");
        if (peek().is("("))
            failAt(m_text, offset, "the function '" + names.back() + "' is not known");
        ExprPtr expr = make(ExprKind::Column, offset);
        expr->names = std::move(names);
        return expr;
    }

    ExprPtr functionCall()
    {
        const Token token = take();
        ExprPtr expr = make(ExprKind::Call, token.offset);
        expr->text = token.kind == TokenKind::Name ? token.text : upperAscii(token.text);
        expectSymbol("(");
        if (!takeSymbol(")")) {
            if (peek().is("*") && peek(1).is(")"))
                expr->args.push_back(literal(ExprKind::Star));
            else
                arguments(*expr);
            expectSymbol(")");
        }
        if (peek().isWord("OVER"))
            unsupported(peek(), "OVER");
        return expr;
    }

    void arguments(Expr& call)
    {
        call.distinct = takeWord("DISTINCT");
        do
            call.args.push_back(call.text == "IIF" && call.args.empty() ? condition() : value());
        while (takeSymbol(","));
    }

    ExprPtr caseExpression()
    {
        ExprPtr expr = make(ExprKind::Case, take().offset);
        if (!peek().isWord("WHEN"))
            expr->operand = value();
        if (!peek().isWord("WHEN"))
            unexpected("WHEN");
        while (takeWord("WHEN")) {
            expr->args.push_back(expr->operand ? value() : condition());
            expectWord("THEN");
            expr->args.push_back(value());
        }
        if (takeWord("ELSE"))
            expr->otherwise = value();
        expectWord("END");
        return expr;
    }

    ExprPtr cast()
    {
        const Token token = take();
        ExprPtr expr = make(ExprKind::Cast, token.offset);
        expectSymbol("(");
        expr->args.push_back(value());
        expectWord("AS");
        expr->type = typeName();
        expectSymbol(")");
        return expr;
    }

    ExprPtr convert()
    {
        const Token token = take();
        ExprPtr expr = make(ExprKind::Convert, token.offset);
        expectSymbol("(");
        expr->type = typeName();
        expectSymbol(",");
        expr->args.push_back(value());
        if (takeSymbol(","))
            expr->args.push_back(value());
        expectSymbol(")");
        return expr;
    }

    TypeName typeName()
    {
        TypeName type;
        const std::size_t offset = peek().offset;
        if (peek().kind != TokenKind::Name && peek().kind != TokenKind::Word)
            unexpected("a type");
        type.name = lowerAscii(take().text);
        if (!isTransactType(type.name))
            failAt(m_text, offset, "the type '" + type.name + "' is not known");
        if (takeSymbol("(")) {
            if (takeWord("MAX"))
                type.max = true;
            else
                type.length = smallNumber("a length");
            if (takeSymbol(","))
                type.scale = smallNumber("a number of decimals");
            expectSymbol(")");
        }
        return type;
    }

    // --- queries ------------------------------------------------------------------------------------------

    std::vector<OrderItem> orderBy()
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

    bool direction()
    {
        if (takeWord("DESC"))
            return true;
        takeWord("ASC");
        return false;
    }

    std::vector<Cte> commonTables()
    {
        std::vector<Cte> ctes;
        if (!takeWord("WITH"))
            return ctes;
        do {
            Cte cte;
            cte.offset = peek().offset;
            cte.name = name("the name of a common table");
            if (peek().is("("))
                cte.columns = nameList();
            expectWord("AS");
            expectSymbol("(");
            cte.query = query();
            expectSymbol(")");
            ctes.push_back(std::move(cte));
        } while (takeSymbol(","));
        return ctes;
    }

    QueryPtr query()
    {
        const Nesting nesting(*this);
        auto result = std::make_unique<Query>();
        result->offset = peek().offset;
        result->ctes = commonTables();
        unions(*result);
        if (peek().isWord("ORDER"))
            result->orderBy = orderBy();
        if (takeWord("OFFSET"))
            paging(*result);
        if (peek().isWord("FOR"))
            unsupported(peek(), "FOR");
        if (takeWord("OPTION"))
            skipParentheses(); // advice to another optimiser
        return result;
    }

    void paging(Query& result)
    {
        result.offsetRows = value();
        if (!takeAnyWord({"ROWS", "ROW"}))
            unexpected("ROWS");
        if (!takeWord("FETCH"))
            return;
        if (!takeAnyWord({"NEXT", "FIRST"}))
            unexpected("NEXT");
        result.fetchRows = value();
        if (!takeAnyWord({"ROWS", "ROW"}))
            unexpected("ROWS");
        expectWord("ONLY");
    }

    void unions(Query& result)
    {
        result.terms.push_back(intersections());
        while (peek().isWord("UNION") || peek().isWord("EXCEPT")) {
            std::string op = upperAscii(take().text);
            if (op == "UNION" && takeWord("ALL"))
                op = "UNION ALL";
            result.operators.push_back(std::move(op));
            result.terms.push_back(intersections());
        }
    }

    // INTERSECT binds closer than UNION and EXCEPT here; the engine reads all three from left to right.
    Term intersections()
    {
        Term first = term();
        if (!peek().isWord("INTERSECT"))
            return first;
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

    Term term()
    {
        Term result;
        if (takeSymbol("(")) {
            result.query = query();
            expectSymbol(")");
            return result;
        }
        if (peek().isWord("VALUES"))
            result.select = valueRows(false);
        else
            result.select = select();
        return result;
    }

    std::unique_ptr<Select> valueRows(bool defaultAllowed)
    {
        auto result = std::make_unique<Select>();
        result->offset = peek().offset;
        expectWord("VALUES");
        do {
            expectSymbol("(");
            std::vector<ExprPtr> row;
            do {
                row.push_back(value());
                if (row.back()->kind == ExprKind::Default)
                    failAt(m_text, row.back()->offset,
                           defaultAllowed ? "DEFAULT as a value is not supported: leave the column out"
                                          : "incorrect syntax near 'DEFAULT': expected a value");
            } while (takeSymbol(","));
            expectSymbol(")");
            if (!result->values.empty() && result->values.front().size() != row.size())
                unexpected("as many values in this row as in the first one");
            result->values.push_back(std::move(row));
        } while (takeSymbol(","));
        return result;
    }

    std::unique_ptr<Select> select()
    {
        auto result = std::make_unique<Select>();
        result->offset = peek().offset;
        expectWord("SELECT");
        result->distinct = takeWord("DISTINCT");
        if (takeWord("TOP"))
            result->top = top();
        do
            result->items.push_back(selectItem());
        while (takeSymbol(","));
        if (peek().isWord("INTO"))
            failAt(m_text, result->offset,
                   "SELECT … INTO is not supported: create the table, then INSERT … SELECT");
        if (takeWord("FROM"))
            result->from = tableList();
        if (takeWord("WHERE"))
            result->where = condition();
        if (takeWord("GROUP"))
            groupBy(*result);
        if (takeWord("HAVING"))
            result->having = condition();
        return result;
    }

    ExprPtr top()
    {
        ExprPtr count;
        if (takeSymbol("(")) {
            count = value();
            expectSymbol(")");
        } else {
            if (peek().kind != TokenKind::Integer)
                unexpected("a number or '(' after TOP");
            count = literal(ExprKind::Integer);
        }
        if (peek().isWord("PERCENT"))
            unsupported(peek(), "TOP … PERCENT");
        if (peek().isWord("WITH"))
            unsupported(peek(), "TOP … WITH TIES");
        return count;
    }

    void groupBy(Select& result)
    {
        expectWord("BY");
        if (peek().isWord("ALL"))
            unsupported(peek(), "GROUP BY ALL");
        do
            result.groupBy.push_back(value());
        while (takeSymbol(","));
        if (peek().isWord("WITH"))
            unsupported(peek(), "GROUP BY … WITH CUBE or ROLLUP");
    }

    SelectItem selectItem()
    {
        SelectItem item;
        item.offset = peek().offset;
        if (takeSymbol("*")) {
            item.star = true;
            return item;
        }
        if (starOfTable(item))
            return item;
        // alias = expression
        const bool text = peek().kind == TokenKind::Text;
        if ((atName() || text) && peek(1).is("=")) {
            item.alias = take().text;
            ++m_at;
            item.value = value();
            return item;
        }
        if (peek().kind == TokenKind::Variable && peek(1).is("="))
            unsupported(peek(), "a variable");
        item.value = value();
        item.alias = alias(true);
        return item;
    }

    bool starOfTable(SelectItem& item)
    {
        std::size_t ahead = 0;
        while (atName(ahead) && peek(ahead + 1).is(".") && !peek(ahead + 2).is("*"))
            ahead += 2;
        if (!atName(ahead) || !peek(ahead + 1).is(".") || !peek(ahead + 2).is("*"))
            return false;
        item.star = true;
        item.starOf = qualifiedName("a table name");
        m_at += 2;
        return true;
    }

    std::optional<std::string> alias(bool textAllowed)
    {
        const bool as = takeWord("AS");
        if (atName() || (textAllowed && peek().kind == TokenKind::Text))
            return take().text;
        if (as)
            unexpected("an alias after AS");
        return std::nullopt;
    }

    std::vector<TableRefPtr> tableList()
    {
        std::vector<TableRefPtr> tables;
        do
            tables.push_back(joins());
        while (takeSymbol(","));
        return tables;
    }

    bool atJoin() const
    {
        const Token& token = peek();
        for (const std::string_view word : {"INNER", "LEFT", "RIGHT", "FULL", "CROSS", "JOIN"})
            if (token.isWord(word))
                return true;
        return token.isWord("OUTER");
    }

    TableRefPtr joins()
    {
        const Nesting nesting(*this);
        TableRefPtr left = tablePrimary();
        for (int count = 1; atJoin(); ++count) {
            if (count > 63)
                unexpected("at most 64 tables in one join");
            left = joinOf(std::move(left));
        }
        return left;
    }

    JoinKind joinKind()
    {
        JoinKind kind = JoinKind::Inner;
        if (takeWord("CROSS"))
            kind = JoinKind::Cross;
        else if (takeWord("LEFT"))
            kind = JoinKind::Left;
        else if (takeWord("RIGHT"))
            kind = JoinKind::Right;
        else if (takeWord("FULL"))
            kind = JoinKind::Full;
        else
            takeWord("INNER");
        if (kind == JoinKind::Left || kind == JoinKind::Right || kind == JoinKind::Full)
            takeWord("OUTER");
        if (peek().isWord("APPLY") || peek().isWord("OUTER"))
            unsupported(peek(), "APPLY");
        expectWord("JOIN");
        return kind;
    }

    TableRefPtr joinOf(TableRefPtr left)
    {
        const Nesting nesting(*this);
        auto join = std::make_unique<TableRef>();
        join->offset = peek().offset;
        join->join = joinKind();
        join->left = std::move(left);
        join->right = tablePrimary();
        if (join->join == JoinKind::Cross)
            return join;
        while (atJoin())
            join->right = joinOf(std::move(join->right));
        expectWord("ON");
        join->on = condition();
        return join;
    }

    TableRefPtr tablePrimary()
    {
        const std::size_t offset = peek().offset;
        if (peek().is("("))
            return tableParenthesis();
        auto table = std::make_unique<TableRef>();
        table->offset = offset;
        table->names = qualifiedName("a table name");
        hints();
        if (peek().is("("))
            failAt(m_text, offset, "the function '" + table->names.back() + "' is not known");
        if (const auto given = alias(false))
            table->alias = *given;
        hints();
        if (peek().isWord("PIVOT") || peek().isWord("UNPIVOT") || peek().isWord("TABLESAMPLE"))
            unsupported(peek(), upperAscii(peek().text));
        return table;
    }

    TableRefPtr tableParenthesis()
    {
        const Nesting nesting(*this);
        const std::size_t offset = take().offset;
        std::size_t ahead = 0;
        while (peek(ahead).is("("))
            ++ahead;
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
        if (!given)
            unexpected("an alias for the derived table");
        table->alias = *given;
        if (peek().is("("))
            table->columnAliases = nameList();
        return table;
    }

    // "((SELECT …" starts a query in parentheses when UNION and the like, or the closing parenthesis of the
    // derived table, follows the inner one; else it is a derived table inside a parenthesised join.
    bool unionFollows(std::size_t parentheses) const
    {
        std::size_t at = m_at + parentheses;
        for (std::size_t open = parentheses; open >= parentheses && at < m_tokens.size(); ++at) {
            if (m_tokens[at].is("("))
                ++open;
            else if (m_tokens[at].is(")"))
                --open;
        }
        if (at >= m_tokens.size())
            return false;
        const Token& after = m_tokens[at];
        return after.isWord("UNION") || after.isWord("EXCEPT") || after.isWord("INTERSECT") || after.is(")");
    }

    // WITH (NOLOCK, …) or (NOLOCK): advice about locks that this engine does not take.
    void hints()
    {
        if (peek().isWord("WITH") && peek(1).is("(")) {
            ++m_at;
            skipParentheses();
            return;
        }
        if (peek().is("(") && peek(1).isWord("NOLOCK"))
            skipParentheses();
    }

    // --- statements ---------------------------------------------------------------------------------------

    bool atStatementStart() const
    {
        for (const std::string_view word : {"SELECT", "WITH", "INSERT", "UPDATE", "DELETE", "CREATE", "DROP",
                                            "ALTER", "TRUNCATE", "BEGIN", "COMMIT", "ROLLBACK"})
            if (peek().isWord(word))
                return true;
        return false;
    }

    void statement(std::vector<Statement>& into)
    {
        Statement result;
        result.offset = peek().offset;
        const Token first = peek();
        if (first.isWord("WITH"))
            result.ctes = commonTables();
        const Token& token = peek();
        if (token.isWord("SELECT") || token.is("("))
            selectStatement(result);
        else if (takeWord("INSERT"))
            insert(result);
        else if (takeWord("UPDATE"))
            update(result);
        else if (takeWord("DELETE"))
            deletion(result);
        else if (!result.ctes.empty())
            unexpected("SELECT, INSERT, UPDATE or DELETE");
        else if (takeWord("CREATE"))
            create(result);
        else if (takeWord("DROP"))
            drop(result, into);
        else if (takeWord("ALTER")) {
            alter(result, into);
            return;
        } else if (takeWord("TRUNCATE")) {
            expectWord("TABLE");
            result.type = StatementType::Truncate;
            result.target = qualifiedName("a table name");
        } else if (takeWord("BEGIN"))
            transaction(result, StatementType::Begin);
        else if (takeWord("COMMIT"))
            transaction(result, StatementType::Commit);
        else if (takeWord("ROLLBACK"))
            transaction(result, StatementType::Rollback);
        else
            unexpected(
                "a statement (SELECT, INSERT, UPDATE, DELETE, CREATE, DROP, ALTER, TRUNCATE, BEGIN, COMMIT, "
                "ROLLBACK)");
        result.parameters = m_parameters;
        into.push_back(std::move(result));
    }

    void selectStatement(Statement& result)
    {
        result.type = StatementType::Select;
        result.query = query();
        result.query->ctes = std::move(result.ctes);
        result.ctes.clear();
    }

    void refuseTop()
    {
        if (peek().isWord("TOP"))
            unsupported(peek(), "TOP in a statement that writes");
    }

    void refuseOutput()
    {
        if (peek().isWord("OUTPUT"))
            unsupported(peek(), "OUTPUT");
    }

    void insert(Statement& result)
    {
        result.type = StatementType::Insert;
        refuseTop();
        takeWord("INTO");
        result.target = qualifiedName("a table name");
        hints();
        if (peek().is("(") && !peek(1).is("(") && !peek(1).isWord("SELECT"))
            result.columns = nameList();
        refuseOutput();
        if (takeWord("DEFAULT")) {
            expectWord("VALUES");
            return;
        }
        if (peek().isWord("VALUES")) {
            Term rows;
            const std::size_t offset = peek().offset;
            rows.select = valueRows(true);
            if (!result.columns.empty() && rows.select->values.front().size() != result.columns.size())
                failAt(m_text, offset, "the number of values is not the number of columns");
            result.query = std::make_unique<Query>();
            result.query->offset = offset;
            result.query->terms.push_back(std::move(rows));
            return;
        }
        if (!peek().isWord("SELECT") && !peek().is("(") && !peek().isWord("WITH"))
            unexpected("VALUES, SELECT or DEFAULT VALUES");
        result.query = query();
    }

    void update(Statement& result)
    {
        result.type = StatementType::Update;
        refuseTop();
        result.target = qualifiedName("a table name");
        hints();
        expectWord("SET");
        do
            result.assignments.push_back(assignment());
        while (takeSymbol(","));
        refuseOutput();
        if (takeWord("FROM"))
            result.from = tableList();
        tail(result);
    }

    Assignment assignment()
    {
        Assignment result;
        result.offset = peek().offset;
        if (peek().kind == TokenKind::Variable)
            unsupported(peek(), "a variable");
        result.column = qualifiedName("a column name").back();
        static constexpr std::string_view operators[] = {"=", "+=", "-=", "*=", "/=", "%="};
        for (const std::string_view op : operators)
            if (takeSymbol(op))
                result.op = op;
        if (result.op.empty())
            unexpected("'='");
        if (peek().isWord("DEFAULT"))
            unsupported(peek(), "DEFAULT as a new value");
        result.value = value();
        return result;
    }

    void deletion(Statement& result)
    {
        result.type = StatementType::Delete;
        refuseTop();
        takeWord("FROM");
        result.target = qualifiedName("a table name");
        hints();
        refuseOutput();
        if (takeWord("FROM"))
            result.from = tableList();
        tail(result);
    }

    void tail(Statement& result)
    {
        if (takeWord("WHERE")) {
            if (peek().isWord("CURRENT"))
                unsupported(peek(), "WHERE CURRENT OF");
            result.where = condition();
        }
        if (takeWord("OPTION"))
            skipParentheses();
    }

    void transaction(Statement& result, StatementType type)
    {
        result.type = type;
        if (!takeAnyWord({"TRAN", "TRANSACTION"}) && type == StatementType::Begin)
            unexpected("TRAN or TRANSACTION after BEGIN");
    }

    // --- schema -------------------------------------------------------------------------------------------

    void create(Statement& result)
    {
        if (takeWord("TABLE")) {
            createTable(result);
            return;
        }
        if (takeWord("VIEW")) {
            result.type = StatementType::CreateView;
            result.target = qualifiedName("a view name");
            if (peek().is("("))
                result.columns = nameList();
            expectWord("AS");
            result.query = query();
            return;
        }
        result.unique = takeWord("UNIQUE");
        takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
        if (!takeWord("INDEX"))
            unexpected("TABLE, VIEW or INDEX");
        result.type = StatementType::CreateIndex;
        result.name = name("an index name");
        expectWord("ON");
        result.target = qualifiedName("a table name");
        result.indexColumns = keyColumns();
    }

    std::vector<OrderItem> keyColumns()
    {
        expectSymbol("(");
        std::vector<OrderItem> columns;
        do {
            OrderItem item;
            item.value = make(ExprKind::Column, peek().offset);
            item.value->names.push_back(name("a column name"));
            item.descending = direction();
            columns.push_back(std::move(item));
        } while (takeSymbol(","));
        expectSymbol(")");
        return columns;
    }

    void createTable(Statement& result)
    {
        result.type = StatementType::CreateTable;
        result.target = qualifiedName("a table name");
        expectSymbol("(");
        do {
            if (peek().is(")"))
                break; // a comma before the closing parenthesis is allowed
            if (peek().isWord("CONSTRAINT") || peek().isWord("PRIMARY") || peek().isWord("UNIQUE") ||
                peek().isWord("FOREIGN") || peek().isWord("CHECK"))
                result.constraints.push_back(tableConstraint());
            else
                result.definitions.push_back(columnDefinition());
        } while (takeSymbol(","));
        if (result.definitions.empty())
            unexpected("a column");
        expectSymbol(")");
    }

    ColumnDefinition columnDefinition()
    {
        ColumnDefinition column;
        column.offset = peek().offset;
        column.name = name("a column name");
        if (peek().isWord("AS"))
            unsupported(peek(), "a computed column");
        column.type = typeName();
        while (columnOption(column))
            ;
        return column;
    }

    bool columnOption(ColumnDefinition& column)
    {
        if (takeWord("CONSTRAINT"))
            name("a constraint name");
        if (takeWord("NOT")) {
            expectWord("NULL");
            column.notNull = true;
        } else if (takeWord("NULL"))
            column.notNull = false;
        else if (takeWord("IDENTITY"))
            identity(column);
        else if (takeWord("PRIMARY")) {
            expectWord("KEY");
            takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
            column.primaryKey = true;
        } else if (takeWord("UNIQUE")) {
            takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
            column.unique = true;
        } else if (takeWord("DEFAULT")) {
            column.defaultValue = additive();
            requireValue(*column.defaultValue);
        } else if (takeWord("COLLATE"))
            name("a collation name");
        else if (takeWord("CHECK")) {
            expectSymbol("(");
            column.check = condition();
            expectSymbol(")");
        } else if (peek().isWord("REFERENCES"))
            column.references = references();
        else
            return false;
        return true;
    }

    void identity(ColumnDefinition& column)
    {
        column.identity = true;
        if (!takeSymbol("("))
            return;
        const std::size_t at = m_at;
        const int seed = smallNumber("1");
        expectSymbol(",");
        const int step = smallNumber("1");
        expectSymbol(")");
        if (seed != 1 || step != 1)
            unsupported(m_tokens[at], "an identity other than (1,1)");
    }

    ForeignKey references()
    {
        ForeignKey key;
        expectWord("REFERENCES");
        key.table = qualifiedName("a table name").back();
        if (peek().is("("))
            key.foreignColumns = nameList();
        while (takeWord("ON")) {
            if (!peek().isWord("DELETE") && !peek().isWord("UPDATE"))
                unexpected("DELETE or UPDATE");
            key.actions += " ON " + upperAscii(take().text);
            if (takeWord("CASCADE"))
                key.actions += " CASCADE";
            else if (takeWord("NO")) {
                expectWord("ACTION");
                key.actions += " NO ACTION";
            } else {
                expectWord("SET");
                if (takeWord("NULL"))
                    key.actions += " SET NULL";
                else {
                    expectWord("DEFAULT");
                    key.actions += " SET DEFAULT";
                }
            }
        }
        return key;
    }

    TableConstraint tableConstraint()
    {
        TableConstraint constraint;
        if (takeWord("CONSTRAINT"))
            name("a constraint name");
        if (takeWord("PRIMARY")) {
            expectWord("KEY");
            takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
            constraint.primaryKey = keyColumns();
        } else if (takeWord("UNIQUE")) {
            takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
            constraint.unique = keyColumns();
        } else if (takeWord("FOREIGN")) {
            expectWord("KEY");
            std::vector<std::string> columns = nameList();
            constraint.foreignKey = references();
            constraint.foreignKey->columns = std::move(columns);
        } else if (takeWord("CHECK")) {
            expectSymbol("(");
            constraint.check = condition();
            expectSymbol(")");
        } else
            unexpected("PRIMARY KEY, UNIQUE, FOREIGN KEY or CHECK");
        return constraint;
    }

    void drop(Statement& result, std::vector<Statement>& into)
    {
        const Token what = take();
        const bool table = what.isWord("TABLE");
        const bool view = what.isWord("VIEW");
        if (!table && !view && !what.isWord("INDEX")) {
            --m_at;
            unexpected("TABLE, VIEW or INDEX");
        }
        if (takeWord("IF")) {
            expectWord("EXISTS");
            result.ifExists = true;
        }
        if (table || view) {
            result.type = table ? StatementType::DropTable : StatementType::DropView;
            while (true) {
                result.target = qualifiedName("a name");
                if (!takeSymbol(","))
                    return;
                Statement one;
                one.type = result.type;
                one.offset = result.offset;
                one.ifExists = result.ifExists;
                one.target = result.target;
                into.push_back(std::move(one));
            }
        }
        result.type = StatementType::DropIndex;
        result.name = name("an index name");
        expectWord("ON");
        result.target = qualifiedName("a table name");
    }

    void alter(const Statement& start, std::vector<Statement>& into)
    {
        expectWord("TABLE");
        const std::vector<std::string> target = qualifiedName("a table name");
        if (takeWord("DROP")) {
            expectWord("COLUMN");
            do {
                Statement one;
                one.type = StatementType::AlterDrop;
                one.offset = start.offset;
                one.target = target;
                one.name = name("a column name");
                into.push_back(std::move(one));
            } while (takeSymbol(","));
            return;
        }
        if (!takeWord("ADD"))
            unexpected("ADD or DROP COLUMN");
        takeWord("COLUMN");
        if (peek().isWord("CONSTRAINT") || peek().isWord("PRIMARY") || peek().isWord("UNIQUE") ||
            peek().isWord("FOREIGN") || peek().isWord("CHECK") || peek().isWord("DEFAULT"))
            unsupported(peek(), "ALTER TABLE … ADD CONSTRAINT");
        do {
            Statement one;
            one.type = StatementType::AlterAdd;
            one.offset = start.offset;
            one.target = target;
            one.definitions.push_back(columnDefinition());
            one.parameters = 0;
            into.push_back(std::move(one));
        } while (takeSymbol(","));
    }

    std::string_view m_text;
    std::vector<Token> m_tokens;
    std::size_t m_at = 0;
    int m_depth = 0;
    int m_parameters = 0;
};

} // namespace

std::vector<Statement> parseBatch(std::string_view tsql)
{
    return Parser(tsql).batch();
}

} // namespace zul::dialect
