#include "host/dialect/writer/Emitter.h"

#include "host/dialect/base/DialectError.h"
#include "host/dialect/base/Words.h"
#include "host/dialect/writer/ExpressionWriter.h"
#include "host/dialect/writer/Sql.h"

#include <algorithm>
#include <utility>

namespace zul::dialect {

namespace {

// What a query has become: its text, and the columns it gives. 'complete' is false when a '*' hides some.
struct QueryText
{
    std::string sql;
    std::vector<OutputColumn> columns;
    bool complete = true;
};

// How a query is used.
struct Use
{
    bool named = false;    ///< every column needs a name: a result, a derived table, a view
    bool unnamed = false;  ///< an expression without alias is named '' as on the server
    bool distinct = false; ///< rows are compared, so texts need their collation
    bool compound = false; ///< rows are compared with those of another SELECT
    const std::vector<ColumnType>* targets = nullptr; ///< the columns that the values go to
};

class StatementWriter final : private QueryWriter
{
public:
    StatementWriter(std::string_view text, const ColumnTypes& columnTypes, const TableColumns& tableColumns)
        : m_text(text)
        , m_columnTypes(columnTypes)
        , m_tableColumns(tableColumns)
        , m_expressions(text, *this)
    {}

    Translation write(const Statement& statement)
    {
        m_out.parameters = statement.parameters;
        if (!statement.target.empty())
            m_out.target = statement.target.back();
        dispatch(statement);
        return std::move(m_out);
    }

private:
    // --- what the expression writer asks ------------------------------------------------------------------

    std::pair<std::string, ColumnType> subQuery(const Query& query) override
    {
        const QueryText text = queryText(query, Use{});
        const bool one = text.complete && text.columns.size() == 1;
        return {text.sql, one ? text.columns.front().type : ColumnType::Unknown};
    }

    Piece column(const std::vector<std::string>& names) override
    {
        Piece piece;
        piece.collates = true;
        const std::string& name = names.back();
        piece.sql = quotedName(name);
        if (names.size() > 1)
            piece.sql = quotedName(names[names.size() - 2]) + "." + piece.sql;
        for (const Scope* scope = m_scope; scope != nullptr; scope = scope->outer)
            for (const Source& source : scope->sources) {
                const bool qualified = names.size() > 1;
                if (qualified && !sameWord(source.name, names[names.size() - 2]))
                    continue;
                bool known = false;
                piece.type = typeIn(source, name, known);
                if (known || qualified) {
                    // What a derived table computes has lost its collation.
                    piece.collates = !source.derived;
                    return piece;
                }
            }
        return piece;
    }

    // --- names in sight -----------------------------------------------------------------------------------

    struct Source
    {
        std::string name;  ///< alias, or the table's name
        std::string table; ///< empty for a derived table
        bool derived = false;
        std::vector<OutputColumn> columns;
    };

    struct Scope
    {
        std::vector<Source> sources;
        const Scope* outer = nullptr;
    };

    class Within
    {
    public:
        Within(StatementWriter& writer, Scope& scope)
            : m_writer(writer)
            , m_outer(writer.m_scope)
        {
            scope.outer = m_outer;
            writer.m_scope = &scope;
        }
        ~Within() { m_writer.m_scope = m_outer; }
        Within(const Within&) = delete;
        Within& operator=(const Within&) = delete;

    private:
        StatementWriter& m_writer;
        const Scope* m_outer;
    };

    ColumnType typeIn(const Source& source, const std::string& column, bool& known) const
    {
        if (source.derived) {
            for (const OutputColumn& candidate : source.columns)
                if (sameWord(candidate.name, column)) {
                    known = true;
                    return candidate.type;
                }
            return ColumnType::Unknown;
        }
        const ColumnType type = m_columnTypes(source.table, column);
        known = type != ColumnType::Unknown;
        return type;
    }

    ColumnType targetType(const std::string& column) const { return m_columnTypes(m_out.target, column); }

    void reads(const std::string& table)
    {
        for (const std::string& known : m_out.tables)
            if (sameWord(known, table))
                return;
        m_out.tables.push_back(table);
    }

    // --- FROM ---------------------------------------------------------------------------------------------

    // First all tables come into sight, then the joins are written: an ON may look at each of them. A derived
    // table sees only what stands outside of this FROM.
    std::string fromText(const std::vector<TableRefPtr>& tables, Scope& scope)
    {
        std::vector<std::string> primaries;
        for (const TableRefPtr& table : tables)
            bringIntoSight(*table, scope, primaries);
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

    void bringIntoSight(const TableRef& table, Scope& scope, std::vector<std::string>& primaries)
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
                if (query.complete && source.columns.size() != table.columnAliases.size())
                    failAt(m_text, table.offset, "the derived table has not as many columns as names");
                text = "(WITH " + quotedName(table.alias) + "(" + names(table.columnAliases) + ") AS (" +
                       query.sql + ") SELECT * FROM " + quotedName(table.alias) + ")";
                source.columns.resize(table.columnAliases.size());
                for (std::size_t i = 0; i < source.columns.size(); ++i)
                    source.columns[i].name = table.columnAliases[i];
            }
        } else {
            source.table = table.names.back();
            source.name = source.table;
            text = quotedName(source.table);
            if (const CteColumns* cte = commonTable(table.names)) {
                source.derived = true;
                source.columns = cte->columns;
            } else
                reads(source.table);
        }
        if (!table.alias.empty()) {
            source.name = table.alias;
            text += " AS " + quotedName(table.alias);
        }
        scope.sources.push_back(std::move(source));
        primaries.push_back(std::move(text));
    }

    std::string joinText(const TableRef& table, const std::vector<std::string>& primaries, std::size_t& next)
    {
        if (!table.left)
            return primaries[next++];
        static constexpr std::string_view words[] = {" INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN ",
                                                     " FULL JOIN ", " JOIN "};
        std::string text = joinText(*table.left, primaries, next);
        text += words[static_cast<std::size_t>(table.join)];
        const std::string right = joinText(*table.right, primaries, next);
        text += table.right->left ? "(" + right + ")" : right;
        if (table.on)
            text += " ON " + m_expressions.write(*table.on).sql;
        return text;
    }

    static std::string names(const std::vector<std::string>& list)
    {
        std::string text;
        for (const std::string& name : list)
            text += (text.empty() ? "" : ", ") + quotedName(name);
        return text;
    }

    // --- queries ------------------------------------------------------------------------------------------

    struct CteColumns
    {
        std::string name;
        std::vector<OutputColumn> columns;
    };

    const CteColumns* commonTable(const std::vector<std::string>& name) const
    {
        if (name.size() != 1)
            return nullptr;
        for (auto cte = m_ctes.rbegin(); cte != m_ctes.rend(); ++cte)
            if (sameWord(cte->name, name.front()))
                return &*cte;
        return nullptr;
    }

    // "WITH … " or nothing. The tables stay known until the count of before is set again.
    std::string ctesText(const std::vector<Cte>& ctes)
    {
        std::string text;
        for (const Cte& cte : ctes) {
            // A common table may name itself; the columns are not known yet then.
            m_ctes.push_back({cte.name, {}});
            QueryText query = queryText(*cte.query, Use{.named = true});
            if (!cte.columns.empty()) {
                if (query.complete && query.columns.size() != cte.columns.size())
                    failAt(m_text, cte.offset, "the common table has not as many columns as names");
                query.columns.resize(cte.columns.size());
                for (std::size_t i = 0; i < cte.columns.size(); ++i)
                    query.columns[i].name = cte.columns[i];
            }
            m_ctes.back().columns = std::move(query.columns);
            text += (text.empty() ? "WITH RECURSIVE " : ", ") + quotedName(cte.name);
            if (!cte.columns.empty())
                text += "(" + names(cte.columns) + ")";
            text += " AS (" + query.sql + ")";
        }
        return text.empty() ? text : text + " ";
    }

    QueryText queryText(const Query& query, const Use& use)
    {
        const std::size_t known = m_ctes.size();
        const std::string ctes = ctesText(query.ctes);
        QueryText text = query.terms.size() == 1 ? singleText(query, use) : compoundText(query, use);
        text.sql = ctes + text.sql;
        m_ctes.resize(known);
        return text;
    }

    QueryText singleText(const Query& query, const Use& use)
    {
        const Term& term = query.terms.front();
        if (term.select && term.select->values.empty())
            return selectText(*term.select, use, &query);
        QueryText text = term.select ? valuesText(*term.select, use) : queryText(*term.query, use);
        if (query.orderBy.empty() && !query.offsetRows)
            return text;
        text.sql =
            "SELECT * FROM (" + text.sql + ")" + orderText(query, text.columns) + limitText(query, nullptr);
        return text;
    }

    QueryText compoundText(const Query& query, const Use& use)
    {
        Use inner = use;
        for (const std::string& op : query.operators)
            inner.compound = inner.compound || op != "UNION ALL";
        QueryText text;
        for (std::size_t i = 0; i < query.terms.size(); ++i) {
            const Term& term = query.terms[i];
            QueryText part = !term.select                   ? queryText(*term.query, inner)
                             : !term.select->values.empty() ? valuesText(*term.select, inner)
                                                            : selectText(*term.select, inner, nullptr);
            const bool wrap = term.query || (term.select && term.select->top);
            if (i > 0)
                text.sql += " " + query.operators[i - 1] + " ";
            text.sql += wrap ? "SELECT * FROM (" + part.sql + ")" : part.sql;
            if (i == 0) {
                text.columns = std::move(part.columns);
                text.complete = part.complete;
                continue;
            }
            if (text.complete && part.complete && text.columns.size() != part.columns.size())
                failAt(m_text, query.offset,
                       "all queries joined by UNION, EXCEPT or INTERSECT need as many columns");
            for (std::size_t c = 0; c < text.columns.size() && c < part.columns.size(); ++c)
                if (text.columns[c].type != part.columns[c].type)
                    text.columns[c].type = commonType(text.columns[c].type, part.columns[c].type);
        }
        text.sql += orderText(query, text.columns) + limitText(query, nullptr);
        return text;
    }

    QueryText valuesText(const Select& select, const Use& use)
    {
        QueryText text;
        text.sql = "VALUES ";
        for (std::size_t r = 0; r < select.values.size(); ++r) {
            text.sql += r == 0 ? "(" : ", (";
            for (std::size_t c = 0; c < select.values[r].size(); ++c) {
                const Piece piece = converted(m_expressions.write(*select.values[r][c]), use, c);
                text.sql += (c == 0 ? "" : ", ") + piece.sql;
                if (r == 0)
                    text.columns.push_back({"column" + std::to_string(c + 1), piece.type});
                else
                    text.columns[c].type = commonType(text.columns[c].type, piece.type);
            }
            text.sql += ")";
        }
        return text;
    }

    Piece converted(Piece piece, const Use& use, std::size_t index)
    {
        if (use.targets == nullptr || index >= use.targets->size())
            return piece;
        return m_expressions.assigned(std::move(piece), (*use.targets)[index]);
    }

    // 'query' is the query around it when the SELECT is its only term: its ORDER BY sees the same tables.
    QueryText selectText(const Select& select, const Use& use, const Query* query)
    {
        QueryText text;
        Scope scope;
        const std::string from = select.from.empty() ? "" : " FROM " + fromText(select.from, scope);
        const Within within(*this, scope);
        Use inner = use;
        inner.distinct = inner.distinct || select.distinct;
        text.sql = select.distinct ? "SELECT DISTINCT " : "SELECT ";
        for (std::size_t i = 0; i < select.items.size(); ++i)
            text.sql += (i == 0 ? "" : ", ") + itemText(select.items[i], inner, text);
        text.sql += from;
        if (select.where)
            text.sql += " WHERE " + m_expressions.write(*select.where).sql;
        for (std::size_t i = 0; i < select.groupBy.size(); ++i)
            text.sql += (i == 0 ? " GROUP BY " : ", ") +
                        m_expressions.collated(m_expressions.write(*select.groupBy[i])).sql;
        if (select.having)
            text.sql += " HAVING " + m_expressions.write(*select.having).sql;
        if (query != nullptr) {
            if (select.top && query->offsetRows)
                failAt(m_text, select.offset, "TOP and OFFSET cannot stand together");
            text.sql += orderText(*query, text.columns);
            text.sql += limitText(*query, select.top.get());
        } else if (select.top)
            text.sql += " LIMIT " + m_expressions.write(*select.top).sql;
        return text;
    }

    std::string itemText(const SelectItem& item, const Use& use, QueryText& text)
    {
        if (item.star) {
            text.complete = false;
            return item.starOf.empty() ? "*" : quotedName(item.starOf.back()) + ".*";
        }
        Piece piece = m_expressions.write(*item.value);
        const ColumnType type = piece.type;
        const bool plain = item.value->kind == ExprKind::Column;
        // A literal is the same in every row of one SELECT; rows of several meet with theirs.
        if (use.compound || (use.distinct && piece.literal == nullptr))
            piece = m_expressions.collated(std::move(piece));
        piece = converted(std::move(piece), use, text.columns.size());
        const std::string name = item.alias ? *item.alias : plain ? item.value->names.back() : "";
        text.columns.push_back({name, type});
        if (use.named && (!name.empty() || use.unnamed))
            return piece.sql + " AS " + quotedName(name);
        if (item.alias && !name.empty())
            return piece.sql + " AS " + quotedName(name);
        return piece.sql;
    }

    std::string orderText(const Query& query, const std::vector<OutputColumn>& columns)
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
    std::string orderPiece(const Expr& value, const std::vector<OutputColumn>& columns)
    {
        if (value.kind == ExprKind::Integer)
            return value.text;
        if (value.kind == ExprKind::Column && value.names.size() == 1)
            for (const OutputColumn& column : columns)
                if (sameWord(column.name, value.names.front()))
                    return quotedName(column.name) +
                           (column.type == ColumnType::Text ? " COLLATE NOCASE" : "");
        return m_expressions.collated(m_expressions.write(value)).sql;
    }

    std::string limitText(const Query& query, const Expr* top)
    {
        if (top != nullptr)
            return " LIMIT " + m_expressions.write(*top).sql;
        if (!query.offsetRows)
            return "";
        const std::string limit = query.fetchRows ? m_expressions.write(*query.fetchRows).sql : "-1";
        return " LIMIT " + limit + " OFFSET " + m_expressions.write(*query.offsetRows).sql;
    }

    // --- statements ---------------------------------------------------------------------------------------

    void dispatch(const Statement& statement)
    {
        switch (statement.type) {
        case StatementType::Select:
            select(statement);
            break;
        case StatementType::Insert:
            insert(statement);
            break;
        case StatementType::Update:
            update(statement);
            break;
        case StatementType::Delete:
            deletion(statement);
            break;
        case StatementType::Truncate:
            m_out.kind = StatementKind::Delete;
            m_out.sql = "DELETE FROM " + quotedName(m_out.target);
            break;
        case StatementType::Begin:
            // The lock is taken at once: a transaction that reads first and writes later cannot fail half-way.
            m_out.kind = StatementKind::Begin;
            m_out.sql = "BEGIN IMMEDIATE";
            break;
        case StatementType::Commit:
            m_out.kind = StatementKind::Commit;
            m_out.sql = "COMMIT";
            break;
        case StatementType::Rollback:
            m_out.kind = StatementKind::Rollback;
            m_out.sql = "ROLLBACK";
            break;
        default:
            m_out.kind = StatementKind::Schema;
            schema(statement);
            break;
        }
    }

    void select(const Statement& statement)
    {
        m_out.kind = StatementKind::Select;
        QueryText text = queryText(*statement.query, Use{.named = true, .unnamed = true});
        m_out.sql = std::move(text.sql);
        if (text.complete)
            m_out.columns = std::move(text.columns);
    }

    void insert(const Statement& statement)
    {
        m_out.kind = StatementKind::Insert;
        m_out.sql = ctesText(statement.ctes) + "INSERT INTO " + quotedName(m_out.target);
        if (!statement.query) {
            m_out.sql += " DEFAULT VALUES";
            return;
        }
        std::vector<std::string> columns = statement.columns;
        if (columns.empty())
            columns = m_tableColumns(m_out.target);
        std::vector<ColumnType> targets;
        targets.reserve(columns.size());
        for (const std::string& column : columns)
            targets.push_back(targetType(column));
        const QueryText text = queryText(*statement.query, Use{.targets = &targets});
        if (text.complete && !columns.empty() && columns.size() != text.columns.size())
            failAt(m_text, statement.query->offset, "the number of values is not the number of columns");
        if (!columns.empty())
            m_out.sql += "(" + names(columns) + ")";
        m_out.sql += " " + text.sql;
    }

    std::string newValue(const Assignment& assignment, const ColumnType type)
    {
        Piece value = m_expressions.write(*assignment.value);
        if (assignment.op != "=")
            value = m_expressions.combined(column({assignment.column}), assignment.op.substr(0, 1),
                                           std::move(value), assignment.offset);
        return m_expressions.assigned(std::move(value), type).sql;
    }

    void update(const Statement& statement)
    {
        m_out.kind = StatementKind::Update;
        const std::string ctes = ctesText(statement.ctes);
        if (!statement.from.empty()) {
            updateFrom(statement, ctes);
            return;
        }
        Scope scope;
        scope.sources.push_back({m_out.target, m_out.target, false, {}});
        const Within within(*this, scope);
        m_out.sql = ctes + "UPDATE " + quotedName(m_out.target) + " SET ";
        for (std::size_t i = 0; i < statement.assignments.size(); ++i) {
            const Assignment& assignment = statement.assignments[i];
            m_out.sql += (i == 0 ? "" : ", ") + quotedName(assignment.column) + " = " +
                         newValue(assignment, targetType(assignment.column));
        }
        if (statement.where)
            m_out.sql += " WHERE " + m_expressions.write(*statement.where).sql;
    }

    // The FROM of UPDATE and DELETE, and under which name the target stands in it. The target may be given by
    // its alias, and need not stand in the FROM at all.
    std::string targetFrom(const Statement& statement, Scope& scope, std::string& alias)
    {
        std::string text = fromText(statement.from, scope);
        for (const Source& source : scope.sources)
            if (alias.empty() && !source.derived && sameWord(source.name, m_out.target)) {
                alias = source.name;
                m_out.target = source.table;
            }
        for (const Source& source : scope.sources)
            if (alias.empty() && !source.derived && sameWord(source.table, m_out.target))
                alias = source.name;
        if (!alias.empty())
            return text;
        alias = m_out.target;
        scope.sources.insert(scope.sources.begin(), Source{alias, alias, false, {}});
        return quotedName(alias) + ", " + (scope.sources.size() > 2 ? "(" + text + ")" : text);
    }

    // The new values are computed by a query over the whole FROM, then joined to the target by row.
    void updateFrom(const Statement& statement, const std::string& ctes)
    {
        Scope scope;
        std::string alias;
        const std::string from = targetFrom(statement, scope, alias);
        const Within within(*this, scope);
        std::string sets;
        std::string values;
        for (std::size_t i = 0; i < statement.assignments.size(); ++i) {
            Assignment const& assignment = statement.assignments[i];
            const std::string name = "zul_value" + std::to_string(i + 1);
            Piece value = m_expressions.write(*assignment.value);
            if (assignment.op != "=")
                value = m_expressions.combined(column({alias, assignment.column}), assignment.op.substr(0, 1),
                                               std::move(value), assignment.offset);
            values += ", " + m_expressions.assigned(std::move(value), targetType(assignment.column)).sql +
                      " AS " + name;
            sets += (i == 0 ? "" : ", ") + quotedName(assignment.column) + " = zul_new." + name;
        }
        m_out.sql = ctes + "UPDATE " + quotedName(m_out.target) + " SET " + sets + " FROM (SELECT " +
                    quotedName(alias) + ".rowid AS zul_row" + values + " FROM " + from;
        if (statement.where)
            m_out.sql += " WHERE " + m_expressions.write(*statement.where).sql;
        m_out.sql += ") AS zul_new WHERE " + quotedName(m_out.target) + ".rowid = zul_new.zul_row";
    }

    void deletion(const Statement& statement)
    {
        m_out.kind = StatementKind::Delete;
        const std::string ctes = ctesText(statement.ctes);
        Scope scope;
        std::string alias;
        std::string from;
        if (statement.from.empty())
            scope.sources.push_back({m_out.target, m_out.target, false, {}});
        else
            from = targetFrom(statement, scope, alias);
        const Within within(*this, scope);
        const std::string where =
            statement.where ? " WHERE " + m_expressions.write(*statement.where).sql : "";
        m_out.sql = ctes + "DELETE FROM " + quotedName(m_out.target);
        m_out.sql += from.empty() ? where
                                  : " WHERE rowid IN (SELECT " + quotedName(alias) + ".rowid FROM " + from +
                                        where + ")";
    }

    // --- schema -------------------------------------------------------------------------------------------

    void schema(const Statement& statement)
    {
        const std::string target = quotedName(m_out.target);
        const std::string ifExists = statement.ifExists ? "IF EXISTS " : "";
        switch (statement.type) {
        case StatementType::CreateTable:
            createTable(statement);
            break;
        case StatementType::DropTable:
            m_out.sql = "DROP TABLE " + ifExists + target;
            break;
        case StatementType::DropView:
            m_out.sql = "DROP VIEW " + ifExists + target;
            break;
        case StatementType::DropIndex:
            m_out.sql = "DROP INDEX " + ifExists + quotedName(statement.name);
            break;
        case StatementType::AlterAdd: {
            const ColumnDefinition& column = statement.definitions.front();
            if (column.identity || column.primaryKey || column.unique)
                failAt(m_text, column.offset, "a key cannot be added to a table that exists");
            m_out.sql = "ALTER TABLE " + target + " ADD COLUMN " + columnText(column, false, false);
            break;
        }
        case StatementType::AlterDrop:
            m_out.sql = "ALTER TABLE " + target + " DROP COLUMN " + quotedName(statement.name);
            break;
        case StatementType::CreateIndex:
            m_out.sql = std::string("CREATE ") + (statement.unique ? "UNIQUE " : "") + "INDEX " +
                        quotedName(statement.name) + " ON " + target + "(" + keyText(statement.indexColumns) +
                        ")";
            break;
        case StatementType::CreateView:
            m_out.sql = "CREATE VIEW " + target;
            if (!statement.columns.empty())
                m_out.sql += "(" + names(statement.columns) + ")";
            m_out.sql += " AS " + queryText(*statement.query, Use{.named = true}).sql;
            break;
        default:
            break;
        }
    }

    static std::string keyText(const std::vector<OrderItem>& columns)
    {
        std::string text;
        for (const OrderItem& item : columns)
            text += (text.empty() ? "" : ", ") + quotedName(item.value->names.front()) +
                    (item.descending ? " DESC" : "");
        return text;
    }

    void createTable(const Statement& statement)
    {
        // A key of one whole number is the table's row number, which is the fastest key there is.
        std::string key;
        for (const ColumnDefinition& column : statement.definitions)
            if (column.primaryKey)
                key = column.name;
        bool wide = false;
        for (const TableConstraint& constraint : statement.constraints)
            if (!constraint.primaryKey.empty()) {
                wide = constraint.primaryKey.size() > 1;
                key = wide ? "" : constraint.primaryKey.front().value->names.front();
            }
        std::string parts;
        for (const ColumnDefinition& column : statement.definitions) {
            bool isKey = sameWord(column.name, key);
            if (column.identity && !isKey) {
                if (!key.empty() || wide)
                    failAt(m_text, column.offset, "an identity column must be the primary key");
                isKey = true;
            }
            parts += (parts.empty() ? "" : ", ") + columnText(column, isKey, true);
        }
        for (const TableConstraint& constraint : statement.constraints)
            parts += constraintText(constraint);
        const bool temporary = m_out.target.front() == '#';
        m_out.sql = std::string(temporary ? "CREATE TEMP TABLE " : "CREATE TABLE ") +
                    quotedName(m_out.target) + "(" + parts + ")";
    }

    std::string columnText(const ColumnDefinition& column, bool key, bool create)
    {
        const ColumnType type = columnTypeNamed(column.type.name);
        const bool whole = type == ColumnType::Integer;
        if (column.identity && !whole && column.type.scale.value_or(0) != 0)
            failAt(m_text, column.offset, "an identity column holds whole numbers");
        std::string text = quotedName(column.name) + " ";
        if (key && (whole || column.identity))
            text += column.identity ? "INTEGER PRIMARY KEY AUTOINCREMENT" : "INTEGER PRIMARY KEY";
        else {
            text += declarationOf(column.type);
            if (column.notNull || key)
                text += " NOT NULL";
            if (key)
                text += " PRIMARY KEY";
        }
        if (column.unique && create)
            text += " UNIQUE";
        if (column.defaultValue)
            text += " DEFAULT (" +
                    m_expressions.assigned(m_expressions.write(*column.defaultValue), type).sql + ")";
        if (column.check)
            text += " CHECK (" + m_expressions.write(*column.check).sql + ")";
        if (column.references)
            text += referencesText(*column.references);
        return text;
    }

    static std::string referencesText(const ForeignKey& key)
    {
        std::string text = " REFERENCES " + quotedName(key.table);
        if (!key.foreignColumns.empty())
            text += "(" + names(key.foreignColumns) + ")";
        return text + key.actions;
    }

    std::string constraintText(const TableConstraint& constraint)
    {
        if (constraint.primaryKey.size() > 1)
            return ", PRIMARY KEY (" + keyText(constraint.primaryKey) + ")";
        if (!constraint.unique.empty())
            return ", UNIQUE (" + keyText(constraint.unique) + ")";
        if (constraint.foreignKey)
            return ", FOREIGN KEY (" + names(constraint.foreignKey->columns) + ")" +
                   referencesText(*constraint.foreignKey);
        if (constraint.check)
            return ", CHECK (" + m_expressions.write(*constraint.check).sql + ")";
        return "";
    }

    std::string_view m_text;
    const ColumnTypes& m_columnTypes;
    const TableColumns& m_tableColumns;
    Translation m_out;
    const Scope* m_scope = nullptr;
    std::vector<CteColumns> m_ctes;
    ExpressionWriter m_expressions;
};

} // namespace

Translation emit(const Statement& statement, std::string_view tsql, const ColumnTypes& columnTypes,
                 const TableColumns& tableColumns)
{
    return StatementWriter(tsql, columnTypes, tableColumns).write(statement);
}

} // namespace zul::dialect
