#pragma once
// The syntax trees of expressions and queries, which the parser builds and the writer reads. Chains of '+', AND,
// UNION … are flat lists, so that the depth of a tree is the nesting of the text and not its length.

#include "host/dialect/syntax/TypeName.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zul::dialect {

struct Expr;
struct Query;
using ExprPtr = std::unique_ptr<Expr>;
using QueryPtr = std::unique_ptr<Query>;

enum class ExprKind
{
    Null,
    Integer,
    Decimal,
    Real,
    Hex,
    Text,
    Parameter,
    Column,
    Star, ///< COUNT(*) only
    Default,
    Negate,
    Plus,
    Arithmetic, ///< args joined by ops, left to right
    And,
    Or,
    Not,
    Compare, ///< two args, ops[0]
    Between,
    InList,
    InQuery,
    Exists,
    Like,
    IsNull,
    Case, ///< args: when, then, when, then …; operand and otherwise apart
    Cast,
    Convert,
    Call,
    Scalar,
    Collate
};

struct OrderItem
{
    ExprPtr value;
    bool descending = false;
};

struct Expr
{
    ExprKind kind = ExprKind::Null;
    std::size_t offset = 0;
    std::string text;               ///< literal's value, function's name in capitals, collation
    std::vector<std::string> names; ///< Column: its parts
    std::vector<std::string> ops;
    std::vector<ExprPtr> args;
    ExprPtr operand;   ///< Case, In, Like …: what is looked at
    ExprPtr otherwise; ///< Case: ELSE; Like: ESCAPE
    QueryPtr query;
    TypeName type; ///< Cast, Convert
    bool negated = false;
    bool distinct = false; ///< aggregates
};

struct SelectItem
{
    bool star = false;
    std::vector<std::string> starOf; ///< t.*: the table's name parts
    ExprPtr value;
    std::optional<std::string> alias;
    std::size_t offset = 0;
};

enum class JoinKind
{
    Inner,
    Left,
    Right,
    Full,
    Cross
};

struct TableRef
{
    std::size_t offset = 0;
    std::vector<std::string> names; ///< a table
    QueryPtr query;                 ///< a derived table
    std::string alias;
    std::vector<std::string> columnAliases;
    // A join:
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<TableRef> left;
    std::unique_ptr<TableRef> right;
    ExprPtr on;
};
using TableRefPtr = std::unique_ptr<TableRef>;

struct Select
{
    std::size_t offset = 0;
    bool distinct = false;
    ExprPtr top;
    std::vector<SelectItem> items;
    std::vector<TableRefPtr> from;
    ExprPtr where;
    std::vector<ExprPtr> groupBy;
    ExprPtr having;
    std::vector<std::vector<ExprPtr>> values; ///< VALUES (…), (…) instead of all the above
};

/// One operand of UNION, EXCEPT, INTERSECT: a SELECT, or a query in parentheses.
struct Term
{
    std::unique_ptr<Select> select;
    QueryPtr query;
};

struct Cte
{
    std::size_t offset = 0;
    std::string name;
    std::vector<std::string> columns;
    QueryPtr query;
};

struct Query
{
    std::size_t offset = 0;
    std::vector<Cte> ctes;
    std::vector<Term> terms;
    std::vector<std::string> operators; ///< between the terms: "UNION", "UNION ALL", "EXCEPT", "INTERSECT"
    std::vector<OrderItem> orderBy;
    ExprPtr offsetRows;
    ExprPtr fetchRows;
};

} // namespace zul::dialect
