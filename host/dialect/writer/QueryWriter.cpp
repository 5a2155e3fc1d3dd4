#include "host/dialect/writer/QueryWriter.h"

#include "host/dialect/base/DialectError.h"
#include "host/dialect/base/Words.h"

namespace zul::dialect {

std::pair<std::string, ColumnType> QueryWriter::subQuery(const Query& query)
{
    const QueryText text = queryText(query, Use{});
    const bool one = text.complete && text.columns.size() == 1;
    return {text.sql, one ? text.columns.front().type : ColumnType::Unknown};
}

Piece QueryWriter::column(const std::vector<std::string>& names)
{
    Piece piece;
    piece.collates = true;
    const std::string& name = names.back();
    piece.sql = quotedName(name);
    if (names.size() > 1) {
        piece.sql = quotedName(names[names.size() - 2]) + "." + piece.sql;
    }
    for (const Scope* scope = m_scope; scope != nullptr; scope = scope->outer) {
        for (const Source& source : scope->sources) {
            const bool qualified = names.size() > 1;
            if (qualified && !sameWord(source.name, names[names.size() - 2])) {
                continue;
            }
            bool known = false;
            piece.type = typeIn(source, name, known);
            if (known || qualified) {
                // What a derived table computes has lost its collation.
                piece.collates = !source.derived;
                return piece;
            }
        }
    }
    return piece;
}

ColumnType QueryWriter::typeIn(const Source& source, const std::string& column, bool& known) const
{
    if (source.derived) {
        for (const OutputColumn& candidate : source.columns) {
            if (sameWord(candidate.name, column)) {
                known = true;
                return candidate.type;
            }
        }
        return ColumnType::Unknown;
    }
    const ColumnType type = m_columnTypes(source.table, column);
    known = type != ColumnType::Unknown;
    return type;
}

void QueryWriter::reads(const std::string& table)
{
    for (const std::string& known : m_tables) {
        if (sameWord(known, table)) {
            return;
        }
    }
    m_tables.push_back(table);
}

// First all tables come into sight, then the joins are written: an ON may look at each of them. A derived
// table sees only what stands outside of this FROM.
std::string QueryWriter::fromText(const std::vector<TableRefPtr>& tables, Scope& scope)
{
    std::vector<std::string> primaries;
    for (const TableRefPtr& table : tables) {
        bringIntoSight(*table, scope, primaries);
    }
    const Within within(*this, scope);
    std::size_t next = 0;
    std::string all;
    for (const TableRefPtr& table : tables) {
        // A comma binds as a join does in the engine; here it is looser.
        const std::string text = joinText(*table, primaries, next);
        all += all.empty() ? "" : ", ";
        all += tables.size() > 1 && table->left ? "(" + text + ")" : text;
    }
    return all;
}

void QueryWriter::bringIntoSight(const TableRef& table, Scope& scope, std::vector<std::string>& primaries)
{
    if (table.left) {
        bringIntoSight(*table.left, scope, primaries);
        bringIntoSight(*table.right, scope, primaries);
        return;
    }
    Source source;
    std::string text;
    if (table.query) {
        QueryText query = queryText(*table.query, Use{.named = true});
        source.derived = true;
        source.columns = std::move(query.columns);
        text = "(" + query.sql + ")";
        if (!table.columnAliases.empty()) {
            if (query.complete && source.columns.size() != table.columnAliases.size()) {
                failAt(m_text, table.offset, "the derived table has not as many columns as names");
            }
            text = "(WITH " + quotedName(table.alias) + "(" + quotedNames(table.columnAliases) + ") AS (" +
                   query.sql + ") SELECT * FROM " + quotedName(table.alias) + ")";
            source.columns.resize(table.columnAliases.size());
            for (std::size_t i = 0; i < source.columns.size(); ++i) {
                source.columns[i].name = table.columnAliases[i];
            }
        }
    } else {
        source.table = table.names.back();
        source.name = source.table;
        text = quotedName(source.table);
        if (const CteColumns* cte = commonTable(table.names)) {
            source.derived = true;
            source.columns = cte->columns;
        } else {
            reads(source.table);
        }
    }
    if (!table.alias.empty()) {
        source.name = table.alias;
        text += " AS " + quotedName(table.alias);
    }
    scope.sources.push_back(std::move(source));
    primaries.push_back(std::move(text));
}

std::string QueryWriter::joinText(const TableRef& table, const std::vector<std::string>& primaries,
                                  std::size_t& next)
{
    if (!table.left) {
        return primaries[next++];
    }
    static constexpr std::string_view words[] = {" INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN ", " FULL JOIN ",
                                                 " JOIN "};
    std::string text = joinText(*table.left, primaries, next);
    text += words[static_cast<std::size_t>(table.join)];
    const std::string right = joinText(*table.right, primaries, next);
    text += table.right->left ? "(" + right + ")" : right;
    if (table.on) {
        text += " ON " + m_expressions.write(*table.on).sql;
    }
    return text;
}

const QueryWriter::CteColumns* QueryWriter::commonTable(const std::vector<std::string>& name) const
{
    if (name.size() != 1) {
        return nullptr;
    }
    for (auto cte = m_ctes.rbegin(); cte != m_ctes.rend(); ++cte) {
        if (sameWord(cte->name, name.front())) {
            return &*cte;
        }
    }
    return nullptr;
}

std::string QueryWriter::ctesText(const std::vector<Cte>& ctes)
{
    std::string text;
    for (const Cte& cte : ctes) {
        // A common table may name itself; the columns are not known yet then.
        m_ctes.push_back({cte.name, {}});
        QueryText query = queryText(*cte.query, Use{.named = true});
        if (!cte.columns.empty()) {
            if (query.complete && query.columns.size() != cte.columns.size()) {
                failAt(m_text, cte.offset, "the common table has not as many columns as names");
            }
            query.columns.resize(cte.columns.size());
            for (std::size_t i = 0; i < cte.columns.size(); ++i) {
                query.columns[i].name = cte.columns[i];
            }
        }
        m_ctes.back().columns = std::move(query.columns);
        text += (text.empty() ? "WITH RECURSIVE " : ", ") + quotedName(cte.name);
        if (!cte.columns.empty()) {
            text += "(" + quotedNames(cte.columns) + ")";
        }
        text += " AS (" + query.sql + ")";
    }
    return text.empty() ? text : text + " ";
}

QueryText QueryWriter::queryText(const Query& query, const Use& use)
{
    const std::size_t known = m_ctes.size();
    const std::string ctes = ctesText(query.ctes);
    QueryText text = query.terms.size() == 1 ? singleText(query, use) : compoundText(query, use);
    if (!ctes.empty()) {
        text.sql.insert(0, ctes);
    }
    m_ctes.resize(known);
    return text;
}

QueryText QueryWriter::singleText(const Query& query, const Use& use)
{
    const Term& term = query.terms.front();
    if (term.select && term.select->values.empty()) {
        return selectText(*term.select, use, &query);
    }
    QueryText text = term.select ? valuesText(*term.select, use) : queryText(*term.query, use);
    if (query.orderBy.empty() && !query.offsetRows) {
        return text;
    }
    text.sql =
        "SELECT * FROM (" + text.sql + ")" + orderText(query, text.columns) + limitText(query, nullptr);
    return text;
}

QueryText QueryWriter::compoundText(const Query& query, const Use& use)
{
    Use inner = use;
    for (const std::string& op : query.operators) {
        inner.compound = inner.compound || op != "UNION ALL";
    }
    QueryText text;
    for (std::size_t i = 0; i < query.terms.size(); ++i) {
        const Term& term = query.terms[i];
        QueryText part = !term.select                   ? queryText(*term.query, inner)
                         : !term.select->values.empty() ? valuesText(*term.select, inner)
                                                        : selectText(*term.select, inner, nullptr);
        const bool wrap = term.query || (term.select && term.select->top);
        if (i > 0) {
            text.sql += " " + query.operators[i - 1] + " ";
        }
        text.sql += wrap ? "SELECT * FROM (" + part.sql + ")" : part.sql;
        if (i == 0) {
            text.columns = std::move(part.columns);
            text.complete = part.complete;
            continue;
        }
        if (text.complete && part.complete && text.columns.size() != part.columns.size()) {
            failAt(m_text, query.offset,
                   "all queries joined by UNION, EXCEPT or INTERSECT need as many columns");
        }
        for (std::size_t c = 0; c < text.columns.size() && c < part.columns.size(); ++c) {
            if (text.columns[c].type != part.columns[c].type) {
                text.columns[c].type = commonType(text.columns[c].type, part.columns[c].type);
            }
        }
    }
    text.sql += orderText(query, text.columns) + limitText(query, nullptr);
    return text;
}

QueryText QueryWriter::valuesText(const Select& select, const Use& use)
{
    QueryText text;
    text.sql = "VALUES ";
    for (std::size_t r = 0; r < select.values.size(); ++r) {
        text.sql += r == 0 ? "(" : ", (";
        for (std::size_t c = 0; c < select.values[r].size(); ++c) {
            const Piece piece = converted(m_expressions.write(*select.values[r][c]), use, c);
            text.sql += (c == 0 ? "" : ", ") + piece.sql;
            if (r == 0) {
                text.columns.push_back({"column" + std::to_string(c + 1), piece.type});
            } else {
                text.columns[c].type = commonType(text.columns[c].type, piece.type);
            }
        }
        text.sql += ")";
    }
    return text;
}

Piece QueryWriter::converted(Piece piece, const Use& use, std::size_t index)
{
    if (use.targets == nullptr || index >= use.targets->size()) {
        return piece;
    }
    return m_expressions.assigned(std::move(piece), (*use.targets)[index]);
}

// 'query' is the query around it when the SELECT is its only term: its ORDER BY sees the same tables.
QueryText QueryWriter::selectText(const Select& select, const Use& use, const Query* query)
{
    QueryText text;
    Scope scope;
    const std::string from = select.from.empty() ? "" : " FROM " + fromText(select.from, scope);
    const Within within(*this, scope);
    Use inner = use;
    inner.distinct = inner.distinct || select.distinct;
    text.sql = select.distinct ? "SELECT DISTINCT " : "SELECT ";
    for (std::size_t i = 0; i < select.items.size(); ++i) {
        text.sql += (i == 0 ? "" : ", ") + itemText(select.items[i], inner, text);
    }
    text.sql += from;
    text.sql += whereText(select.where);
    for (std::size_t i = 0; i < select.groupBy.size(); ++i) {
        text.sql += (i == 0 ? " GROUP BY " : ", ") +
                    m_expressions.collated(m_expressions.write(*select.groupBy[i])).sql;
    }
    if (select.having) {
        text.sql += " HAVING " + m_expressions.write(*select.having).sql;
    }
    if (query != nullptr) {
        if (select.top && query->offsetRows) {
            failAt(m_text, select.offset, "TOP and OFFSET cannot stand together");
        }
        text.sql += orderText(*query, text.columns);
        text.sql += limitText(*query, select.top.get());
    } else if (select.top) {
        text.sql += " LIMIT " + m_expressions.write(*select.top).sql;
    }
    return text;
}

std::string QueryWriter::itemText(const SelectItem& item, const Use& use, QueryText& text)
{
    if (item.star) {
        text.complete = false;
        return item.starOf.empty() ? "*" : quotedName(item.starOf.back()) + ".*";
    }
    Piece piece = m_expressions.write(*item.value);
    const ColumnType type = piece.type;
    const bool plain = item.value->kind == ExprKind::Column;
    // A literal is the same in every row of one SELECT; rows of several meet with theirs.
    if (use.compound || (use.distinct && piece.literal == nullptr)) {
        piece = m_expressions.collated(std::move(piece));
    }
    piece = converted(std::move(piece), use, text.columns.size());
    const std::string name = item.alias ? *item.alias : plain ? item.value->names.back() : "";
    text.columns.push_back({name, type});
    if (use.named && (!name.empty() || use.unnamed)) {
        return piece.sql + " AS " + quotedName(name);
    }
    if (item.alias && !name.empty()) {
        return piece.sql + " AS " + quotedName(name);
    }
    return piece.sql;
}

std::string QueryWriter::orderText(const Query& query, const std::vector<OutputColumn>& columns)
{
    std::string text;
    for (const OrderItem& item : query.orderBy) {
        text += text.empty() ? " ORDER BY " : ", ";
        text += orderPiece(*item.value, columns) + (item.descending ? " DESC" : "");
    }
    return text;
}

// A position or an alias of the list, or an expression. A text that the list computes needs its collation;
// on a plain column it does no harm.
std::string QueryWriter::orderPiece(const Expr& value, const std::vector<OutputColumn>& columns)
{
    if (value.kind == ExprKind::Integer) {
        return value.text;
    }
    if (value.kind == ExprKind::Column && value.names.size() == 1) {
        for (const OutputColumn& column : columns) {
            if (sameWord(column.name, value.names.front())) {
                return quotedName(column.name) + (column.type == ColumnType::Text ? " COLLATE NOCASE" : "");
            }
        }
    }
    return m_expressions.collated(m_expressions.write(value)).sql;
}

std::string QueryWriter::limitText(const Query& query, const Expr* top)
{
    if (top != nullptr) {
        return " LIMIT " + m_expressions.write(*top).sql;
    }
    if (!query.offsetRows) {
        return "";
    }
    const std::string limit = query.fetchRows ? m_expressions.write(*query.fetchRows).sql : "-1";
    return " LIMIT " + limit + " OFFSET " + m_expressions.write(*query.offsetRows).sql;
}

std::string QueryWriter::whereText(const ExprPtr& condition)
{
    return condition ? " WHERE " + m_expressions.write(*condition).sql : "";
}

} // namespace zul::dialect
