#include "host/dialect/writer/TextSearch.h"

#include "host/dialect/base/Words.h"

#include <algorithm>

namespace zul::dialect {

namespace {

const Select* onlySelect(const Query& query)
{
    if (!query.ctes.empty() || query.terms.size() != 1 || !query.orderBy.empty() || query.offsetRows) {
        return nullptr;
    }
    return query.terms.front().select.get();
}

bool isRowsOfOneTable(const Select& select)
{
    return !select.distinct && !select.top && select.groupBy.empty() && !select.having &&
           select.values.empty() && select.from.size() == 1 && !select.from.front()->left &&
           !select.from.front()->query && !select.from.front()->names.empty();
}

// Compared byte by byte in every collation: no letters, and none of the signs of LIKE.
bool isPlain(char c)
{
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return c >= ' ' && c <= '~' && !letter && c != '%' && c != '_' && c != '[';
}

// The text of '%text%'; empty for every other pattern, and for texts so short that many rows have them.
std::string textIn(const std::string& pattern)
{
    constexpr std::size_t shortest = 3;
    if (pattern.size() < shortest + 2 || pattern.front() != '%' || pattern.back() != '%') {
        return {};
    }
    std::string text = pattern.substr(1, pattern.size() - 2);
    return std::all_of(text.begin(), text.end(), isPlain) ? text : std::string();
}

} // namespace

std::optional<TextSearch> textSearchOf(const Query& query, const ColumnTypes& columnTypes)
{
    const Select* const select = onlySelect(query);
    if (select == nullptr || !isRowsOfOneTable(*select) || !select->where) {
        return std::nullopt;
    }
    const Expr& like = *select->where;
    if (like.kind != ExprKind::Like || like.negated || like.otherwise ||
        like.operand->kind != ExprKind::Column || like.args.front()->kind != ExprKind::Text) {
        return std::nullopt;
    }
    const TableRef& table = *select->from.front();
    const std::string& rows = table.alias.empty() ? table.names.back() : table.alias;
    const std::vector<std::string>& column = like.operand->names;
    if (column.size() > 2 || (column.size() == 2 && !sameWord(column.front(), rows))) {
        return std::nullopt;
    }
    TextSearch search{table.names.back(), rows, column.back(), textIn(like.args.front()->text)};
    if (search.text.empty() || !columnTypes || columnTypes(search.table, search.column) != ColumnType::Text) {
        return std::nullopt;
    }
    return search;
}

} // namespace zul::dialect
