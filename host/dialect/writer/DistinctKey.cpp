#include "host/dialect/writer/DistinctKey.h"

#include "host/dialect/base/Words.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zul::dialect {

namespace {

// Functions of one row's values and nothing else.
constexpr std::array<std::string_view, 16> rowFunctions{
    "ISNULL", "COALESCE", "NULLIF", "DATEDIFF", "YEAR", "MONTH", "DAY",       "LEN",
    "LTRIM",  "RTRIM",    "UPPER",  "LOWER",    "LEFT", "RIGHT", "SUBSTRING", "ABS"};

const std::string& nameOf(const TableRef& table)
{
    return table.alias.empty() ? table.names.back() : table.alias;
}

bool isPlainTable(const TableRef& table)
{
    return !table.left && !table.query && !table.names.empty();
}

bool isColumnOf(const Expr& expr, const std::string& table)
{
    return expr.kind == ExprKind::Column && expr.names.size() == 2 && sameWord(expr.names.front(), table);
}

// The date part of DATEDIFF is written as a column without a table is.
bool isDatePart(const Expr& call, std::size_t argument)
{
    return argument == 0 && call.text == "DATEDIFF" && call.args[0]->kind == ExprKind::Column &&
           call.args[0]->names.size() == 1;
}

bool dependsOnlyOn(const Expr& expr, const std::string& table)
{
    switch (expr.kind) {
    case ExprKind::Null:
    case ExprKind::Integer:
    case ExprKind::Decimal:
    case ExprKind::Real:
    case ExprKind::Text:
        return true;
    case ExprKind::Column:
        return isColumnOf(expr, table);
    case ExprKind::Call:
        if (std::find(rowFunctions.begin(), rowFunctions.end(), expr.text) == rowFunctions.end()) {
            return false;
        }
        break;
    case ExprKind::Negate:
    case ExprKind::Plus:
    case ExprKind::Arithmetic:
    case ExprKind::And:
    case ExprKind::Or:
    case ExprKind::Not:
    case ExprKind::Compare:
    case ExprKind::Between:
    case ExprKind::InList:
    case ExprKind::Like:
    case ExprKind::IsNull:
    case ExprKind::Case:
    case ExprKind::Collate:
        break;
    default:
        return false;
    }
    if ((expr.operand && !dependsOnlyOn(*expr.operand, table)) ||
        (expr.otherwise && !dependsOnlyOn(*expr.otherwise, table))) {
        return false;
    }
    for (std::size_t i = 0; i < expr.args.size(); ++i) {
        if (!isDatePart(expr, i) && !dependsOnlyOn(*expr.args[i], table)) {
            return false;
        }
    }
    return true;
}

// A join of two plain tables over the key of one of them.
struct KeyJoin
{
    TableRefPtr* kept = nullptr; // the table whose key it is
    TableRefPtr* asked = nullptr;
    ExprPtr* key = nullptr;   // in the ON
    ExprPtr* other = nullptr; // the asked table's column, in the ON

    explicit operator bool() const { return kept != nullptr; }
};

KeyJoin keyJoinOf(TableRef& join, const ColumnTypes& columnTypes, const TableKey& tableKey)
{
    if (!join.left || join.join != JoinKind::Inner || !isPlainTable(*join.left) ||
        !isPlainTable(*join.right) || sameWord(nameOf(*join.left), nameOf(*join.right))) {
        return {};
    }
    if (!join.on || join.on->kind != ExprKind::Compare || join.on->ops.front() != "=" ||
        join.on->args.size() != 2) {
        return {};
    }
    for (const bool keptIsLeft : {false, true}) {
        TableRefPtr& kept = keptIsLeft ? join.left : join.right;
        TableRefPtr& asked = keptIsLeft ? join.right : join.left;
        const std::vector<std::string> keyColumns = tableKey(kept->names.back());
        if (keyColumns.size() != 1) {
            continue;
        }
        for (const std::size_t side : {std::size_t{0}, std::size_t{1}}) {
            ExprPtr& key = join.on->args[side];
            ExprPtr& other = join.on->args[1 - side];
            // Whole numbers on both sides: IN compares them exactly as "=" does.
            if (isColumnOf(*key, nameOf(*kept)) && sameWord(key->names.back(), keyColumns.front()) &&
                isColumnOf(*other, nameOf(*asked)) &&
                columnTypes(kept->names.back(), key->names.back()) == ColumnType::Integer &&
                columnTypes(asked->names.back(), other->names.back()) == ColumnType::Integer) {
                return {&kept, &asked, &key, &other};
            }
        }
    }
    return {};
}

bool isSimple(const Select& select)
{
    return select.distinct && !select.top && select.groupBy.empty() && !select.having &&
           select.values.empty() && select.from.size() == 1;
}

ExprPtr made(ExprKind kind, std::size_t offset)
{
    auto expr = std::make_unique<Expr>();
    expr->kind = kind;
    expr->offset = offset;
    return expr;
}

// k IN (SELECT x FROM s)
ExprPtr membership(ExprPtr key, ExprPtr other, TableRefPtr asked)
{
    auto select = std::make_unique<Select>();
    select->offset = asked->offset;
    select->items.emplace_back().value = std::move(other);
    select->from.push_back(std::move(asked));
    auto query = std::make_unique<Query>();
    query->offset = select->offset;
    query->terms.emplace_back().select = std::move(select);
    ExprPtr in = made(ExprKind::InQuery, key->offset);
    in->operand = std::move(key);
    in->query = std::move(query);
    return in;
}

} // namespace

void useKeyForDistinct(Query& query, const ColumnTypes& columnTypes, const TableKey& tableKey)
{
    // A common table might have the name of one of the tables.
    if (!query.ctes.empty() || query.terms.size() != 1 || !query.terms.front().select ||
        !query.orderBy.empty() || query.offsetRows) {
        return;
    }
    Select& select = *query.terms.front().select;
    if (!isSimple(select)) {
        return;
    }
    const KeyJoin join = keyJoinOf(*select.from.front(), columnTypes, tableKey);
    if (!join) {
        return;
    }
    const std::string kept = nameOf(**join.kept);
    const std::string key = (*join.key)->names.back();
    bool hasKey = false;
    for (const SelectItem& item : select.items) {
        if (item.star || !dependsOnlyOn(*item.value, kept)) {
            return;
        }
        hasKey = hasKey || (isColumnOf(*item.value, kept) && sameWord(item.value->names.back(), key));
    }
    if (!hasKey || (select.where && !dependsOnlyOn(*select.where, kept))) {
        return;
    }

    ExprPtr in = membership(std::move(*join.key), std::move(*join.other), std::move(*join.asked));
    if (select.where) {
        ExprPtr both = made(ExprKind::And, select.where->offset);
        both->args.push_back(std::move(select.where));
        both->args.push_back(std::move(in));
        select.where = std::move(both);
    } else {
        select.where = std::move(in);
    }
    TableRefPtr table = std::move(*join.kept);
    select.from.front() = std::move(table);
    select.distinct = false;
}

} // namespace zul::dialect
