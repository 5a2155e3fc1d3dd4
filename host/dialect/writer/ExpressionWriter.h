#pragma once
// Writes expressions and conditions.

#include "host/dialect/syntax/Ast.h"
#include "host/dialect/writer/Sql.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zul::dialect {

/// What an expression needs from the statement around it.
class ExpressionContext
{
public:
    ExpressionContext() = default;
    ExpressionContext(const ExpressionContext&) = delete;
    ExpressionContext& operator=(const ExpressionContext&) = delete;

    /// A sub-select's text, without parentheses, and the type of its only column.
    virtual std::pair<std::string, ColumnType> subQuery(const Query& query) = 0;
    /// A column by its name parts.
    virtual Piece column(const std::vector<std::string>& names) = 0;

protected:
    ~ExpressionContext() = default;
};

/// The type of a value that may be either: the one to which the server converts.
ColumnType commonType(ColumnType a, ColumnType b);

class ExpressionWriter
{
public:
    /// Both arguments must outlive the writer.
    ExpressionWriter(std::string_view text, ExpressionContext& context)
        : m_text(text)
        , m_context(context)
    {}

    Piece write(const Expr& expr);
    /// left op right, op being one of + - * / % & |; the place is for errors.
    Piece combined(Piece left, const std::string& op, Piece right, std::size_t offset);
    /// With COLLATE NOCASE where a text would be compared case by case.
    Piece collated(Piece piece) const;
    /// As it is stored in a column of this type.
    Piece assigned(Piece piece, ColumnType target) const;

private:
    using Call = Piece (ExpressionWriter::*)(const Expr&);
    struct Builtin
    {
        std::string_view name;
        std::size_t least;
        std::size_t most;
        Call write;
    };
    static const Builtin* builtinNamed(std::string_view name);

    [[noreturn]] void fail(const Expr& expr, const std::string& message) const;

    Piece literal(const Expr& expr) const;
    Piece arithmetic(const Expr& expr);
    Piece uniform(Piece left, const Expr& expr, std::size_t& next);
    Piece addend(Piece piece) const;
    Piece plus(Piece left, Piece right, std::size_t offset) const;
    Piece minus(Piece left, Piece right, std::size_t offset) const;
    Piece product(Piece left, const std::string& op, const Piece& right, std::size_t offset) const;
    Piece quotient(Piece left, const std::string& op, const Piece& right, std::size_t offset) const;
    Piece added(Piece left, const Piece& right, ColumnType type, std::size_t offset) const;
    int deeper(const Piece& left, std::size_t offset) const;
    Piece enclosed(std::string_view before, Piece left, const std::string& after, ColumnType type,
                   std::size_t offset) const;
    Piece operand(Piece left, Binding binding, std::size_t offset) const;
    Piece negated(const Expr& expr);
    Piece logic(const Expr& expr);
    Piece comparison(const Expr& expr);
    void prepareComparison(Piece& left, Piece& right) const;
    Piece between(const Expr& expr);
    Piece membership(const Expr& expr);
    Piece like(const Expr& expr);
    Piece caseText(const Expr& expr);
    Piece cast(const Expr& expr);
    Piece collation(const Expr& expr);

    Piece asMoment(Piece piece, ColumnType target) const;
    Piece asNumber(Piece piece) const;
    Piece asText(Piece piece) const;
    Piece castCall(const Piece& piece, const TypeName& type, const std::string& style) const;
    Piece momentArgument(const Expr& expr);
    static bool isDateColumn(const Expr& expr, const Piece& piece);
    std::string knownMoment(const Expr& expr);
    static std::string digitsOf(std::string_view part, const Expr& expr, const Piece& moment);
    std::string momentOfLiteral(const Expr& literal, ColumnType target) const;
    std::string partArgument(const Expr& expr) const;

    Piece call(const Expr& expr);
    Piece callOf(const std::string& function, const std::vector<std::string>& arguments,
                 ColumnType type) const;
    std::string textArgument(const Expr& expr) { return asText(write(expr)).sql; }
    std::string numberArgument(const Expr& expr) { return asNumber(write(expr)).sql; }

    Piece aggregate(const Expr& expr);
    Piece average(const Expr& expr);
    Piece count(const Expr& expr);
    Piece isNull(const Expr& expr);
    Piece coalesce(const Expr& expr);
    Piece nullIf(const Expr& expr);
    Piece iif(const Expr& expr);
    Piece length(const Expr& expr);
    Piece left(const Expr& expr);
    Piece right(const Expr& expr);
    Piece substring(const Expr& expr);
    Piece trim(const Expr& expr);
    Piece textFunction(const Expr& expr);
    Piece concat(const Expr& expr);
    Piece space(const Expr& expr);
    Piece codeFunction(const Expr& expr);
    Piece numberFunction(const Expr& expr);
    Piece absolute(const Expr& expr);
    Piece now(const Expr& expr);
    Piece dateDifference(const Expr& expr);
    Piece dateSum(const Expr& expr);
    Piece datePart(const Expr& expr);
    Piece yearOrSo(const Expr& expr);
    Piece test(const Expr& expr);
    Piece engineState(const Expr& expr);

    std::string_view m_text;
    ExpressionContext& m_context;
};

} // namespace zul::dialect
