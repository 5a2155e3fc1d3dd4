// How the operators + - * / % & | are written, and chains of them.
//
// A chain is flat in the syntax tree, but the engine reads it as a tree that leans to the left, of a limited depth:
// where the engine's operator may take its operands in any grouping, a long chain becomes a balanced tree. Where it
// may not, and for what is no operator of the engine but a call, the left side nests, and a text that nests too deep
// for the engine's parser is refused. Nothing here copies the left side for each operand, so that a chain costs what
// it is long.
#include "host/dialect/base/DialectError.h"
#include "host/dialect/base/NumberText.h"
#include "host/dialect/writer/ExpressionWriter.h"

#include <utility>

namespace zul::dialect {

namespace {

// The engine's parser takes some thirty calls inside each other. So many levels are two thousand '+'.
constexpr int deepestChain = 21;

bool isZero(const Expr& literal)
{
    return literal.text.substr(0, literal.text.find('e')).find_first_not_of("0.") == std::string::npos;
}

bool mayBeNumber(ColumnType type)
{
    return isNumeric(type) || type == ColumnType::Unknown;
}

} // namespace

Piece ExpressionWriter::arithmetic(const Expr& expr)
{
    Piece total = write(*expr.args.front());
    for (std::size_t next = 1; next < expr.args.size();) {
        const std::size_t before = next;
        if (expr.args.size() - next >= flatChain) {
            total = uniform(std::move(total), expr, next);
        }
        if (next > before) {
            continue;
        }
        total =
            combined(std::move(total), expr.ops[next - 1], write(*expr.args[next]), expr.args[next]->offset);
        ++next;
    }
    return total;
}

// The left side, and the operands from 'next' on as far as all are texts to join, numbers to add and subtract, or
// numbers to multiply; 'next' becomes the first one that is not. Real numbers are added in another order than the
// server's, which shows in their last digit at most.
Piece ExpressionWriter::uniform(Piece left, const Expr& expr, std::size_t& next)
{
    const bool texts = left.type == ColumnType::Text;
    const bool factors = !texts && expr.ops[next - 1] == "*";
    const auto fits = [&](ColumnType type) {
        return texts ? type == ColumnType::Text : factors ? mayBeNumber(type) : isNumeric(type);
    };
    if (!fits(left.type)) {
        return left;
    }
    const Binding binding = texts ? Binding::Concat : factors ? Binding::Product : Binding::Sum;
    std::vector<std::string> operands;
    ColumnType type = left.type;
    for (; next < expr.args.size(); ++next) {
        const std::string& op = expr.ops[next - 1];
        const bool minus = !texts && !factors && op == "-";
        if (!minus && op != (factors ? "*" : "+")) {
            break;
        }
        Piece piece = write(*expr.args[next]);
        if (!texts) {
            piece = addend(std::move(piece));
        }
        if (!fits(piece.type)) {
            break;
        }
        if (operands.empty()) {
            left = operand(std::move(left), binding, expr.args[next]->offset);
            operands.push_back(std::move(left.sql));
        }
        operands.push_back(minus ? "-" + piece.asRight(Binding::Sign) : piece.asRight(binding));
        type = commonType(type, piece.type);
    }
    if (operands.empty()) {
        return left;
    }
    const std::string word = texts ? " || " : factors ? " * " : " + ";
    if (operands.size() > flatChain) {
        for (std::size_t group = operands.size(); group > flatChain; group = (group + 1) / 2) {
            left.nesting = deeper(left, expr.offset);
        }
        left.sql = joined(operands, word);
    } else {
        left.sql = std::move(operands.front());
        for (std::size_t i = 1; i < operands.size(); ++i) {
            left.sql += word + operands[i];
        }
    }
    left.type = type;
    return left;
}

Piece ExpressionWriter::combined(Piece left, const std::string& op, Piece right, std::size_t offset)
{
    if (op == "+") {
        return plus(std::move(left), std::move(right), offset);
    }
    if (op == "-") {
        return minus(std::move(left), std::move(right), offset);
    }
    if (isMoment(left.type) || isMoment(right.type)) {
        failAt(m_text, offset, "a date cannot be an operand of '" + op + "'");
    }
    left = asNumber(std::move(left));
    right = asNumber(std::move(right));
    if (op == "/" || op == "%") {
        return quotient(std::move(left), op, right, offset);
    }
    return product(std::move(left), op, right, offset);
}

// A text that is a number stands for it beside a number; bytes always do.
Piece ExpressionWriter::addend(Piece piece) const
{
    const bool number = piece.isTextLiteral() && parseNumber(piece.literal->text).index() != 0;
    return number || piece.type == ColumnType::Binary ? asNumber(std::move(piece)) : piece;
}

// Two texts are joined, two numbers added; what is not known before the statement runs is decided then.
Piece ExpressionWriter::plus(Piece left, Piece right, std::size_t offset) const
{
    if (isMoment(left.type) || isMoment(right.type)) {
        const bool swapped = !isMoment(left.type);
        if (!mayBeNumber(swapped ? left.type : right.type)) {
            failAt(m_text, offset,
                   "a date and a text cannot be joined with '+': CONVERT the date to a text first");
        }
        if (swapped) {
            return enclosed("zul_dateplus(" + right.sql + ", ", std::move(left), ")", ColumnType::DateTime,
                            offset);
        }
        return enclosed("zul_dateplus(", std::move(left), ", " + right.sql + ")", ColumnType::DateTime,
                        offset);
    }
    if (left.type == ColumnType::Text && right.type == ColumnType::Text) {
        Piece piece = operand(std::move(left), Binding::Concat, offset);
        piece.type = ColumnType::Text;
        piece.sql += " || " + right.asRight(Binding::Concat);
        return piece;
    }
    if (isNumeric(left.type) || right.type == ColumnType::Binary) {
        right = addend(std::move(right));
    }
    if (isNumeric(right.type) || left.type == ColumnType::Binary) {
        left = addend(std::move(left));
    }
    const ColumnType type = commonType(left.type, right.type);
    if (isNumeric(left.type) && isNumeric(right.type)) {
        Piece piece = operand(std::move(left), Binding::Sum, offset);
        piece.type = type;
        piece.sql += " + " + right.asRight(Binding::Sum);
        return piece;
    }
    return added(std::move(left), right, type, offset);
}

// One call for a hundred operands: the function takes any number of arguments, the engine a limited depth.
Piece ExpressionWriter::added(Piece left, const Piece& right, ColumnType type, std::size_t offset) const
{
    if (left.addends == 0 || left.addends == flatChain) {
        Piece piece = enclosed("zul_add(", std::move(left), ", " + right.sql + ")", type, offset);
        piece.addends = 2;
        return piece;
    }
    left.sql.pop_back();
    left.sql += ", " + right.sql + ")";
    ++left.addends;
    left.type = type;
    return left;
}

Piece ExpressionWriter::minus(Piece left, Piece right, std::size_t offset) const
{
    if (isMoment(left.type) && isMoment(right.type)) {
        failAt(m_text, offset, "two dates cannot be subtracted: use DATEDIFF");
    }
    if (isMoment(right.type)) {
        failAt(m_text, offset, "a date cannot be subtracted from a number");
    }
    left = asNumber(std::move(left));
    right = asNumber(std::move(right));
    if (isMoment(left.type)) {
        return enclosed("zul_dateplus(", std::move(left), ", -(" + right.sql + "))", ColumnType::DateTime,
                        offset);
    }
    const ColumnType type = commonType(left.type, right.type);
    if (type == ColumnType::Unknown) { // may turn out to be a date less a number of days
        return enclosed("zul_sub(", std::move(left), ", " + right.sql + ")", type, offset);
    }
    Piece piece = operand(std::move(left), Binding::Sum, offset);
    piece.type = type;
    piece.sql += " - " + right.asRight(Binding::Sum);
    return piece;
}

Piece ExpressionWriter::product(Piece left, const std::string& op, const Piece& right,
                                std::size_t offset) const
{
    const bool factors = op == "*";
    const Binding binding = factors ? Binding::Product : Binding::Bit;
    const ColumnType type = factors ? commonType(left.type, right.type) : ColumnType::Integer;
    Piece piece = operand(std::move(left), binding, offset);
    piece.type = type;
    piece.sql += " " + op + " " + right.asRight(binding);
    return piece;
}

// Division by zero is an error on the server and NULL in the engine: the plain operator stands only where the
// divisor is a number that is not zero.
Piece ExpressionWriter::quotient(Piece left, const std::string& op, const Piece& right,
                                 std::size_t offset) const
{
    const ColumnType type = commonType(left.type, right.type);
    const bool safe = right.isNumberLiteral() && !isZero(*right.literal);
    const bool whole = type == ColumnType::Integer || type == ColumnType::Bit;
    const std::string divisor = ", " + right.sql + ")";
    if (op == "%" && !(safe && whole)) {
        return enclosed("zul_mod(", std::move(left), divisor, type, offset);
    }
    // A decimal column may hold a whole number; dividing it must not cut the fraction off.
    if (type == ColumnType::Decimal || type == ColumnType::Real) {
        left = enclosed("CAST(", std::move(left), " AS REAL)", type, offset);
    }
    if (!safe) {
        return enclosed("zul_div(", std::move(left), divisor, type, offset);
    }
    Piece piece = operand(std::move(left), Binding::Product, offset);
    piece.type = type;
    piece.sql += " " + op + " " + right.sql;
    return piece;
}

// The nesting of the left side, one level deeper.
int ExpressionWriter::deeper(const Piece& left, std::size_t offset) const
{
    if (left.nesting >= deepestChain) {
        failAt(m_text, offset,
               "a chain of operators as long as this one can only join texts, or add, subtract or multiply "
               "numbers");
    }
    return left.nesting + 1;
}

// The left side so far, inside a call.
Piece ExpressionWriter::enclosed(std::string_view before, Piece left, const std::string& after,
                                 ColumnType type, std::size_t offset) const
{
    Piece piece{.sql = std::move(left.sql), .type = type};
    piece.sql.insert(0, before);
    piece.sql += after;
    piece.nesting = deeper(left, offset);
    return piece;
}

// The left side so far, as the left operand of an operator of the engine.
Piece ExpressionWriter::operand(Piece left, Binding binding, std::size_t offset) const
{
    if (left.binding < binding) {
        const ColumnType type = left.type;
        left = enclosed("(", std::move(left), ")", type, offset);
    }
    return {.sql = std::move(left.sql), .type = left.type, .binding = binding, .nesting = left.nesting};
}

Piece ExpressionWriter::negated(const Expr& expr)
{
    Piece operand = asNumber(write(*expr.args.front()));
    if (isMoment(operand.type)) {
        fail(expr, "a date cannot have a sign");
    }
    if (expr.kind == ExprKind::Plus) {
        return operand;
    }
    return {.sql = "-" + operand.as(Binding::Primary), .type = operand.type, .binding = Binding::Sign};
}

} // namespace zul::dialect
