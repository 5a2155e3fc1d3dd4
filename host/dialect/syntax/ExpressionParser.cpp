#include "host/dialect/syntax/ExpressionParser.h"

#include "host/dialect/base/ColumnType.h"
#include "host/dialect/base/Words.h"

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

} // namespace

ExprPtr ExpressionParser::make(ExprKind kind, std::size_t offset) const
{
    auto expr = std::make_unique<Expr>();
    expr->kind = kind;
    expr->offset = offset;
    return expr;
}

ExprPtr ExpressionParser::expression()
{
    const Nesting nesting(*this);
    return disjunction();
}

ExprPtr ExpressionParser::value()
{
    ExprPtr expr = expression();
    requireValue(*expr);
    return expr;
}

ExprPtr ExpressionParser::condition()
{
    ExprPtr expr = expression();
    requireCondition(*expr);
    return expr;
}

void ExpressionParser::requireValue(const Expr& expr) const
{
    if (isCondition(expr)) {
        fail(expr.offset, "a condition stands here where a value is expected");
    }
}

void ExpressionParser::requireCondition(const Expr& expr) const
{
    if (!isCondition(expr)) {
        fail(expr.offset, "a value stands here where a condition is expected");
    }
}

ExprPtr ExpressionParser::logic(ExprKind kind, std::string_view keyword,
                                ExprPtr (ExpressionParser::*operand)())
{
    ExprPtr first = (this->*operand)();
    if (!peek().isWord(keyword)) {
        return first;
    }
    ExprPtr chain = make(kind, first->offset);
    requireCondition(*first);
    chain->args.push_back(std::move(first));
    while (takeWord(keyword)) {
        chain->args.push_back((this->*operand)());
        requireCondition(*chain->args.back());
    }
    return chain;
}

ExprPtr ExpressionParser::negation()
{
    const std::size_t offset = peek().offset;
    bool any = false;
    bool odd = false;
    while (takeWord("NOT")) {
        any = true;
        odd = !odd;
    }
    ExprPtr operand = predicate();
    if (any) {
        requireCondition(*operand);
    }
    if (!odd) {
        return operand;
    }
    ExprPtr expr = make(ExprKind::Not, offset);
    expr->args.push_back(std::move(operand));
    return expr;
}

ExprPtr ExpressionParser::predicate()
{
    ExprPtr left = additive();
    const Token& token = peek();
    if (token.kind == TokenKind::Symbol) {
        static constexpr std::string_view comparisons[] = {"=", "<>", "!=", "<", ">", "<=", ">="};
        for (const std::string_view comparison : comparisons) {
            if (token.is(comparison)) {
                return comparisonOf(std::move(left));
            }
        }
        return left;
    }
    if (token.isWord("IS")) {
        return nullTest(std::move(left));
    }
    const bool negated = token.isWord("NOT");
    const Token& keyword = negated ? peek(1) : token;
    if (!keyword.isWord("BETWEEN") && !keyword.isWord("IN") && !keyword.isWord("LIKE")) {
        return left;
    }
    requireValue(*left);
    if (negated) {
        skip();
    }
    ExprPtr expr = takeWord("BETWEEN") ? between() : takeWord("IN") ? membership() : like();
    expr->offset = left->offset;
    expr->operand = std::move(left);
    expr->negated = negated;
    return expr;
}

ExprPtr ExpressionParser::comparisonOf(ExprPtr left)
{
    requireValue(*left);
    ExprPtr expr = make(ExprKind::Compare, left->offset);
    expr->ops.push_back(take().text);
    if (peek().isWord("ALL") || peek().isWord("ANY") || peek().isWord("SOME")) {
        unsupported(peek(), "a comparison with ALL, ANY or SOME");
    }
    expr->args.push_back(std::move(left));
    expr->args.push_back(additive());
    requireValue(*expr->args.back());
    return expr;
}

ExprPtr ExpressionParser::nullTest(ExprPtr left)
{
    requireValue(*left);
    skip();
    ExprPtr expr = make(ExprKind::IsNull, left->offset);
    expr->negated = takeWord("NOT");
    expectWord("NULL");
    expr->operand = std::move(left);
    return expr;
}

ExprPtr ExpressionParser::between()
{
    ExprPtr expr = make(ExprKind::Between, peek().offset);
    expr->args.push_back(additive());
    requireValue(*expr->args.back());
    expectWord("AND");
    expr->args.push_back(additive());
    requireValue(*expr->args.back());
    return expr;
}

ExprPtr ExpressionParser::membership()
{
    ExprPtr expr = make(ExprKind::InList, peek().offset);
    expectSymbol("(");
    if (peek().isWord("SELECT") || peek().isWord("WITH")) {
        expr->kind = ExprKind::InQuery;
        expr->query = query();
    } else {
        do {
            expr->args.push_back(value());
        } while (takeSymbol(","));
    }
    expectSymbol(")");
    return expr;
}

ExprPtr ExpressionParser::like()
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

ExprPtr ExpressionParser::chain(std::initializer_list<std::string_view> symbols,
                                ExprPtr (ExpressionParser::*operand)())
{
    const auto atOperator = [&] {
        for (const std::string_view symbol : symbols) {
            if (peek().is(symbol)) {
                return true;
            }
        }
        return false;
    };
    ExprPtr first = (this->*operand)();
    if (!atOperator()) {
        return first;
    }
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

ExprPtr ExpressionParser::unary()
{
    const Token& token = peek();
    if (!token.is("-") && !token.is("+")) {
        return postfix();
    }
    const Nesting nesting(*this);
    const Token& op = take();
    ExprPtr expr = make(op.text == "-" ? ExprKind::Negate : ExprKind::Plus, op.offset);
    expr->args.push_back(unary());
    requireValue(*expr->args.back());
    return expr;
}

ExprPtr ExpressionParser::postfix()
{
    ExprPtr expr = primary();
    while (peek().isWord("COLLATE")) {
        requireValue(*expr);
        skip();
        // Only the innermost of several counts for nothing: the last one wins.
        ExprPtr collated = make(ExprKind::Collate, expr->offset);
        collated->text = upperAscii(name("a collation name"));
        collated->args.push_back(expr->kind == ExprKind::Collate ? std::move(expr->args.front())
                                                                 : std::move(expr));
        expr = std::move(collated);
    }
    return expr;
}

ExprPtr ExpressionParser::literal(ExprKind kind)
{
    const Token& token = take();
    ExprPtr expr = make(kind, token.offset);
    expr->text = token.text;
    return expr;
}

ExprPtr ExpressionParser::primary()
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
    if (token.is("(")) {
        return parenthesis();
    }
    if (token.is("?")) {
        ExprPtr expr = make(ExprKind::Parameter, take().offset);
        expr->text = std::to_string(++m_parameters);
        return expr;
    }
    unexpected("an expression");
}

ExprPtr ExpressionParser::parenthesis()
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

ExprPtr ExpressionParser::variable()
{
    const Token& token = take();
    const std::string upper = upperAscii(token.text);
    if (upper != "@@IDENTITY" && upper != "@@ROWCOUNT") {
        unsupported(token, "a variable");
    }
    ExprPtr expr = make(ExprKind::Call, token.offset);
    expr->text = upper;
    return expr;
}

ExprPtr ExpressionParser::word()
{
    const Token& token = peek();
    if (token.isWord("NULL")) {
        return literal(ExprKind::Null);
    }
    if (token.isWord("CASE")) {
        return caseExpression();
    }
    if (token.isWord("EXISTS")) {
        ExprPtr expr = make(ExprKind::Exists, take().offset);
        expectSymbol("(");
        expr->query = query();
        expectSymbol(")");
        return expr;
    }
    if (token.isWord("DEFAULT")) {
        return literal(ExprKind::Default);
    }
    if (token.isWord("CURRENT_TIMESTAMP")) {
        ExprPtr expr = make(ExprKind::Call, take().offset);
        expr->text = "CURRENT_TIMESTAMP";
        return expr;
    }
    const bool call = peek(1).is("(");
    if (call && token.isWord("CAST")) {
        return cast();
    }
    if (call && token.isWord("CONVERT")) {
        return convert();
    }
    if (call && (token.isWord("LEFT") || token.isWord("RIGHT") || token.isWord("COALESCE") ||
                 token.isWord("NULLIF"))) {
        return functionCall();
    }
    if (!atName()) {
        unexpected("an expression");
    }
    return columnOrCall();
}

ExprPtr ExpressionParser::columnOrCall()
{
    if (peek(1).is("(")) {
        return functionCall();
    }
    const std::size_t offset = peek().offset;
    std::vector<std::string> names = qualifiedName("a column name");
    if (peek().is("(")) {
        fail(offset, "the function '" + names.back() + "' is not known");
    }
    ExprPtr expr = make(ExprKind::Column, offset);
    expr->names = std::move(names);
    return expr;
}

ExprPtr ExpressionParser::functionCall()
{
    const Token& token = take();
    ExprPtr expr = make(ExprKind::Call, token.offset);
    expr->text = token.kind == TokenKind::Name ? token.text : upperAscii(token.text);
    expectSymbol("(");
    if (!takeSymbol(")")) {
        if (peek().is("*") && peek(1).is(")")) {
            expr->args.push_back(literal(ExprKind::Star));
        } else {
            arguments(*expr);
        }
        expectSymbol(")");
    }
    if (peek().isWord("OVER")) {
        unsupported(peek(), "OVER");
    }
    return expr;
}

void ExpressionParser::arguments(Expr& call)
{
    call.distinct = takeWord("DISTINCT");
    do {
        call.args.push_back(call.text == "IIF" && call.args.empty() ? condition() : value());
    } while (takeSymbol(","));
}

ExprPtr ExpressionParser::caseExpression()
{
    ExprPtr expr = make(ExprKind::Case, take().offset);
    if (!peek().isWord("WHEN")) {
        expr->operand = value();
    }
    if (!peek().isWord("WHEN")) {
        unexpected("WHEN");
    }
    while (takeWord("WHEN")) {
        expr->args.push_back(expr->operand ? value() : condition());
        expectWord("THEN");
        expr->args.push_back(value());
    }
    if (takeWord("ELSE")) {
        expr->otherwise = value();
    }
    expectWord("END");
    return expr;
}

ExprPtr ExpressionParser::cast()
{
    const Token& token = take();
    ExprPtr expr = make(ExprKind::Cast, token.offset);
    expectSymbol("(");
    expr->args.push_back(value());
    expectWord("AS");
    expr->type = typeName();
    expectSymbol(")");
    return expr;
}

ExprPtr ExpressionParser::convert()
{
    const Token& token = take();
    ExprPtr expr = make(ExprKind::Convert, token.offset);
    expectSymbol("(");
    expr->type = typeName();
    expectSymbol(",");
    expr->args.push_back(value());
    if (takeSymbol(",")) {
        expr->args.push_back(value());
    }
    expectSymbol(")");
    return expr;
}

TypeName ExpressionParser::typeName()
{
    TypeName type;
    const std::size_t offset = peek().offset;
    if (peek().kind != TokenKind::Name && peek().kind != TokenKind::Word) {
        unexpected("a type");
    }
    type.name = lowerAscii(take().text);
    if (!isTransactType(type.name)) {
        fail(offset, "the type '" + type.name + "' is not known");
    }
    if (takeSymbol("(")) {
        if (takeWord("MAX")) {
            type.max = true;
        } else {
            type.length = smallNumber("a length");
        }
        if (takeSymbol(",")) {
            type.scale = smallNumber("a number of decimals");
        }
        expectSymbol(")");
    }
    return type;
}

} // namespace zul::dialect
