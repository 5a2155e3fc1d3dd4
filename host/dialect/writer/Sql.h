#pragma once
// Pieces of SQLite's SQL: how names and texts are quoted, and which operator binds closer than which.

#include "host/dialect/base/ColumnType.h"
#include "host/dialect/syntax/Ast.h"

#include <string>
#include <string_view>
#include <vector>

namespace zul::dialect {

/// [name]: unlike "name", the engine never takes it for a text when there is no such column.
std::string quotedName(std::string_view name);
/// [name], [name]
std::string quotedNames(const std::vector<std::string>& names);
/// 'text'
std::string quotedText(std::string_view text);

/// The engine's operators, from loosest to closest.
enum class Binding
{
    Or,
    And,
    Not,
    Equal, ///< also IS, IN, LIKE, BETWEEN
    Less,
    Bit,
    Sum,
    Product,
    Concat,
    Sign,
    Primary
};

/// An expression written out, and what is known of it.
struct Piece
{
    std::string sql;
    ColumnType type = ColumnType::Unknown;
    Binding binding = Binding::Primary;
    bool collates = false;         ///< brings its own collation: a table's column, or an explicit COLLATE
    const Expr* literal = nullptr; ///< the literal it is, if it is one
    std::size_t addends = 0;       ///< arguments so far of the zul_add call it is; 0 when it is none
    int nesting = 0; ///< how many calls and parentheses a chain of operators opens at its beginning

    /// As an operand of an operator that binds as given: in parentheses where needed.
    std::string as(Binding operatorBinding) const
    {
        return binding < operatorBinding ? "(" + sql + ")" : sql;
    }
    /// As the right operand of such an operator.
    std::string asRight(Binding operatorBinding) const
    {
        return binding > operatorBinding ? sql : "(" + sql + ")";
    }

    /// The text literal it is; null when it is none.
    const Expr* textLiteral() const
    {
        return literal != nullptr && literal->kind == ExprKind::Text ? literal : nullptr;
    }
    bool isTextLiteral() const { return textLiteral() != nullptr; }
    bool isNumberLiteral() const
    {
        return literal != nullptr && (literal->kind == ExprKind::Integer ||
                                      literal->kind == ExprKind::Decimal || literal->kind == ExprKind::Real);
    }
    bool isNull() const { return literal != nullptr && literal->kind == ExprKind::Null; }
};

/// More operands than this of one operator are written as a balanced tree: the engine limits the depth of an
/// expression.
inline constexpr std::size_t flatChain = 100;

/// The operands, each as it can stand beside the operator, which must give the same in any grouping.
std::string joined(const std::vector<std::string>& operands, const std::string& op);

} // namespace zul::dialect
