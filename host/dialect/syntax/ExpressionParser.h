#pragma once
// The grammar of values, conditions and types.

#include "host/dialect/syntax/Ast.h"
#include "host/dialect/syntax/TokenReader.h"

#include <initializer_list>
#include <string_view>

namespace zul::dialect {

class ExpressionParser : protected TokenReader
{
protected:
    using TokenReader::TokenReader;
    ~ExpressionParser() = default;

    /// A query inside an expression, from its SELECT or WITH on.
    virtual QueryPtr query() = 0;

    ExprPtr value();
    ExprPtr condition();
    /// A value of '+' and what binds closer: the value of a DEFAULT ends before NOT NULL.
    ExprPtr additive() { return chain({"+", "-", "&", "|"}, &ExpressionParser::multiplicative); }
    void requireValue(const Expr& expr) const;

    ExprPtr make(ExprKind kind, std::size_t offset) const;
    ExprPtr literal(ExprKind kind);
    TypeName typeName();

    /// Those of the statement that is read, counted from 1.
    int m_parameters = 0;

private:
    ExprPtr expression();
    void requireCondition(const Expr& expr) const;

    ExprPtr logic(ExprKind kind, std::string_view keyword, ExprPtr (ExpressionParser::*operand)());
    ExprPtr disjunction() { return logic(ExprKind::Or, "OR", &ExpressionParser::conjunction); }
    ExprPtr conjunction() { return logic(ExprKind::And, "AND", &ExpressionParser::negation); }
    ExprPtr negation();
    ExprPtr predicate();
    ExprPtr comparisonOf(ExprPtr left);
    ExprPtr nullTest(ExprPtr left);
    ExprPtr between();
    ExprPtr membership();
    ExprPtr like();

    ExprPtr chain(std::initializer_list<std::string_view> symbols, ExprPtr (ExpressionParser::*operand)());
    ExprPtr multiplicative() { return chain({"*", "/", "%"}, &ExpressionParser::unary); }
    ExprPtr unary();
    ExprPtr postfix();
    ExprPtr primary();
    ExprPtr parenthesis();
    ExprPtr variable();
    ExprPtr word();
    ExprPtr columnOrCall();
    ExprPtr functionCall();
    void arguments(Expr& call);
    ExprPtr caseExpression();
    ExprPtr cast();
    ExprPtr convert();
};

} // namespace zul::dialect
