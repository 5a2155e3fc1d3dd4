#include "host/dialect/writer/StatementWriter.h"

#include "host/dialect/base/DialectError.h"
#include "host/dialect/base/Words.h"
#include "host/dialect/writer/QueryWriter.h"
#include "host/dialect/writer/Sql.h"

#include <algorithm>
#include <utility>

namespace zul::dialect {

namespace {

class StatementWriter
{
public:
    StatementWriter(std::string_view text, const ColumnTypes& columnTypes, const TableColumns& tableColumns)
        : m_text(text)
        , m_columnTypes(columnTypes)
        , m_tableColumns(tableColumns)
        , m_queries(text, columnTypes)
    {}

    Translation write(const ParsedStatement& parsed)
    {
        m_out.parameters = parsed.parameters;
        std::visit([this](const auto& statement) { write(statement); }, parsed.statement);
        m_out.tables = std::move(m_queries.tables());
        return std::move(m_out);
    }

private:
    void begin(StatementKind kind, const std::string& target)
    {
        m_out.kind = kind;
        m_out.target = target;
    }

    std::string valueText(const Expr& value) { return m_queries.expressions().write(value).sql; }
    ColumnType targetType(const std::string& column) const { return m_columnTypes(m_out.target, column); }

    // --- rows ---------------------------------------------------------------------------------------------

    void write(const SelectStatement& statement)
    {
        m_out.kind = StatementKind::Select;
        QueryText text = m_queries.queryText(*statement.query, Use{.named = true, .unnamed = true});
        m_out.sql = std::move(text.sql);
        if (text.complete) {
            m_out.columns = std::move(text.columns);
        }
    }

    void write(const InsertStatement& statement)
    {
        begin(StatementKind::Insert, statement.table);
        m_out.sql = m_queries.ctesText(statement.ctes) + "INSERT INTO " + quotedName(m_out.target);
        if (!statement.query) {
            m_out.sql += " DEFAULT VALUES";
            return;
        }
        std::vector<std::string> columns = statement.columns;
        if (columns.empty()) {
            columns = m_tableColumns(m_out.target);
        }
        std::vector<ColumnType> targets;
        targets.reserve(columns.size());
        for (const std::string& column : columns) {
            targets.push_back(targetType(column));
        }
        const QueryText text = m_queries.queryText(*statement.query, Use{.targets = &targets});
        if (text.complete && !columns.empty() && columns.size() != text.columns.size()) {
            failAt(m_text, statement.query->offset, "the number of values is not the number of columns");
        }
        if (!columns.empty()) {
            m_out.sql += "(" + quotedNames(columns) + ")";
        }
        m_out.sql += " " + text.sql;
    }

    // The value to store: "c += 1" is "c + 1". The column stands for itself, or after the table's name where others
    // are in sight.
    std::string newValue(const Assignment& assignment, const std::vector<std::string>& column)
    {
        ExpressionWriter& expressions = m_queries.expressions();
        Piece value = expressions.write(*assignment.value);
        if (assignment.op != "=") {
            value = expressions.combined(m_queries.column(column), assignment.op.substr(0, 1),
                                         std::move(value), assignment.offset);
        }
        return expressions.assigned(std::move(value), targetType(assignment.column)).sql;
    }

    void write(const UpdateStatement& statement)
    {
        begin(StatementKind::Update, statement.table);
        const std::string ctes = m_queries.ctesText(statement.ctes);
        if (!statement.from.empty()) {
            updateFrom(statement, ctes);
            return;
        }
        Scope scope;
        scope.sources.push_back({m_out.target, m_out.target, false, {}});
        const QueryWriter::Within within(m_queries, scope);
        m_out.sql = ctes + "UPDATE " + quotedName(m_out.target) + " SET ";
        for (std::size_t i = 0; i < statement.assignments.size(); ++i) {
            const Assignment& assignment = statement.assignments[i];
            m_out.sql += (i == 0 ? "" : ", ") + quotedName(assignment.column) + " = " +
                         newValue(assignment, {assignment.column});
        }
        m_out.sql += m_queries.whereText(statement.where);
    }

    // The FROM of UPDATE and DELETE, and under which name the target stands in it. The target may be given by
    // its alias, and need not stand in the FROM at all.
    std::string targetFrom(const std::vector<TableRefPtr>& tables, Scope& scope, std::string& alias)
    {
        std::string text = m_queries.fromText(tables, scope);
        for (const Source& source : scope.sources) {
            if (alias.empty() && !source.derived && sameWord(source.name, m_out.target)) {
                alias = source.name;
                m_out.target = source.table;
            }
        }
        for (const Source& source : scope.sources) {
            if (alias.empty() && !source.derived && sameWord(source.table, m_out.target)) {
                alias = source.name;
            }
        }
        if (!alias.empty()) {
            return text;
        }
        alias = m_out.target;
        scope.sources.insert(scope.sources.begin(), Source{alias, alias, false, {}});
        return quotedName(alias) + ", " + (scope.sources.size() > 2 ? "(" + text + ")" : text);
    }

    // The new values are computed by a query over the whole FROM, then joined to the target by row.
    void updateFrom(const UpdateStatement& statement, const std::string& ctes)
    {
        Scope scope;
        std::string alias;
        const std::string from = targetFrom(statement.from, scope, alias);
        const QueryWriter::Within within(m_queries, scope);
        std::string sets;
        std::string values;
        for (std::size_t i = 0; i < statement.assignments.size(); ++i) {
            const Assignment& assignment = statement.assignments[i];
            const std::string name = "zul_value" + std::to_string(i + 1);
            values += ", " + newValue(assignment, {alias, assignment.column}) + " AS " + name;
            sets += (i == 0 ? "" : ", ") + quotedName(assignment.column) + " = zul_new." + name;
        }
        m_out.sql = ctes + "UPDATE " + quotedName(m_out.target) + " SET " + sets + " FROM (SELECT " +
                    quotedName(alias) + ".rowid AS zul_row" + values + " FROM " + from +
                    m_queries.whereText(statement.where) + ") AS zul_new WHERE " + quotedName(m_out.target) +
                    ".rowid = zul_new.zul_row";
    }

    void write(const DeleteStatement& statement)
    {
        begin(StatementKind::Delete, statement.table);
        const std::string ctes = m_queries.ctesText(statement.ctes);
        Scope scope;
        std::string alias;
        std::string from;
        if (statement.from.empty()) {
            scope.sources.push_back({m_out.target, m_out.target, false, {}});
        } else {
            from = targetFrom(statement.from, scope, alias);
        }
        const QueryWriter::Within within(m_queries, scope);
        const std::string where = m_queries.whereText(statement.where);
        m_out.sql = ctes + "DELETE FROM " + quotedName(m_out.target);
        m_out.sql += from.empty() ? where
                                  : " WHERE rowid IN (SELECT " + quotedName(alias) + ".rowid FROM " + from +
                                        where + ")";
    }

    void write(const TruncateTable& statement)
    {
        begin(StatementKind::Delete, statement.table);
        m_out.sql = "DELETE FROM " + quotedName(statement.table);
    }

    // --- schema -------------------------------------------------------------------------------------------

    // The columns of the table's key, which stands with its column or as a constraint.
    std::vector<KeyColumn> keyOf(const CreateTable& table) const
    {
        std::vector<KeyColumn> key;
        const auto take = [&](std::size_t offset, const std::vector<KeyColumn>& columns) {
            if (!key.empty()) {
                failAt(m_text, offset, "a table has one primary key");
            }
            key = columns;
        };
        for (const ColumnDefinition& column : table.columns) {
            if (column.primaryKey) {
                take(column.offset, {{column.offset, column.name}});
            }
        }
        for (const TableConstraint& constraint : table.constraints) {
            if (const auto* primary = std::get_if<PrimaryKey>(&constraint)) {
                take(primary->offset, primary->columns);
            }
        }
        return key;
    }

    void requireColumns(const CreateTable& table, const std::vector<KeyColumn>& key) const
    {
        for (const KeyColumn& column : key) {
            if (std::none_of(table.columns.begin(), table.columns.end(),
                             [&](const auto& known) { return sameWord(known.name, column.name); })) {
                failAt(m_text, column.offset, "the table has no column '" + column.name + "' for its key");
            }
        }
    }

    void write(const CreateTable& statement)
    {
        begin(StatementKind::Schema, statement.table);
        const std::vector<KeyColumn> key = keyOf(statement);
        requireColumns(statement, key);
        for (const TableConstraint& constraint : statement.constraints) {
            if (const auto* unique = std::get_if<UniqueKey>(&constraint)) {
                requireColumns(statement, unique->columns);
            }
        }
        std::string parts;
        for (const ColumnDefinition& column : statement.columns) {
            // A key of one whole number is the table's row number, which is the fastest key there is.
            bool isKey = key.size() == 1 && sameWord(column.name, key.front().name);
            if (column.identity && !isKey) {
                if (!key.empty()) {
                    failAt(m_text, column.offset, "an identity column must be the primary key");
                }
                isKey = true;
            }
            parts += (parts.empty() ? "" : ", ") + columnText(column, isKey, true);
        }
        for (const TableConstraint& constraint : statement.constraints) {
            parts += std::visit([this](const auto& kind) { return constraintText(kind); }, constraint);
        }
        const bool temporary = statement.table.front() == '#';
        m_out.sql = std::string(temporary ? "CREATE TEMP TABLE " : "CREATE TABLE ") +
                    quotedName(statement.table) + "(" + parts + ")";
    }

    std::string columnText(const ColumnDefinition& column, bool key, bool create)
    {
        const ColumnType type = columnTypeNamed(column.type.name);
        const bool whole = type == ColumnType::Integer;
        if (column.identity && !whole && column.type.scale.value_or(0) != 0) {
            failAt(m_text, column.offset, "an identity column holds whole numbers");
        }
        std::string text = quotedName(column.name) + " ";
        if (key && (whole || column.identity)) {
            text += column.identity ? "INTEGER PRIMARY KEY AUTOINCREMENT" : "INTEGER PRIMARY KEY";
        } else {
            text += declarationOf(column.type);
            if (column.notNull || key) {
                text += " NOT NULL";
            }
            if (key) {
                text += " PRIMARY KEY";
            }
        }
        if (column.unique && create) {
            text += " UNIQUE";
        }
        ExpressionWriter& expressions = m_queries.expressions();
        if (column.defaultValue) {
            text +=
                " DEFAULT (" + expressions.assigned(expressions.write(*column.defaultValue), type).sql + ")";
        }
        if (column.check) {
            text += " CHECK (" + valueText(*column.check) + ")";
        }
        if (column.references) {
            text += referencesText(*column.references);
        }
        return text;
    }

    static std::string keyText(const std::vector<KeyColumn>& columns)
    {
        std::string text;
        for (const KeyColumn& column : columns) {
            text += (text.empty() ? "" : ", ") + quotedName(column.name) + (column.descending ? " DESC" : "");
        }
        return text;
    }

    static std::string referencesText(const Reference& key)
    {
        std::string text = " REFERENCES " + quotedName(key.table);
        if (!key.columns.empty()) {
            text += "(" + quotedNames(key.columns) + ")";
        }
        return text + key.actions;
    }

    // A key of one column stands with the column.
    std::string constraintText(const PrimaryKey& key) const
    {
        return key.columns.size() > 1 ? ", PRIMARY KEY (" + keyText(key.columns) + ")" : "";
    }

    std::string constraintText(const UniqueKey& key) const
    {
        return ", UNIQUE (" + keyText(key.columns) + ")";
    }

    std::string constraintText(const ForeignKey& key) const
    {
        return ", FOREIGN KEY (" + quotedNames(key.columns) + ")" + referencesText(key.reference);
    }

    std::string constraintText(const Check& check) { return ", CHECK (" + valueText(*check.condition) + ")"; }

    void write(const DropTable& statement)
    {
        begin(StatementKind::Schema, statement.table);
        m_out.sql = "DROP TABLE " + ifExistsText(statement.ifExists) + quotedName(statement.table);
    }

    void write(const AddColumn& statement)
    {
        begin(StatementKind::Schema, statement.table);
        const ColumnDefinition& column = statement.column;
        if (column.identity || column.primaryKey || column.unique) {
            failAt(m_text, column.offset, "a key cannot be added to a table that exists");
        }
        m_out.sql =
            "ALTER TABLE " + quotedName(statement.table) + " ADD COLUMN " + columnText(column, false, false);
    }

    void write(const DropColumn& statement)
    {
        begin(StatementKind::Schema, statement.table);
        m_out.sql =
            "ALTER TABLE " + quotedName(statement.table) + " DROP COLUMN " + quotedName(statement.column);
    }

    void write(const CreateIndex& statement)
    {
        begin(StatementKind::Schema, statement.table);
        m_out.sql = std::string("CREATE ") + (statement.unique ? "UNIQUE " : "") + "INDEX " +
                    quotedName(statement.name) + " ON " + quotedName(statement.table) + "(" +
                    keyText(statement.columns) + ")";
    }

    void write(const DropIndex& statement)
    {
        begin(StatementKind::Schema, statement.table);
        m_out.sql = "DROP INDEX " + ifExistsText(statement.ifExists) + quotedName(statement.name);
    }

    void write(const CreateView& statement)
    {
        begin(StatementKind::Schema, statement.view);
        m_out.sql = "CREATE VIEW " + quotedName(statement.view);
        if (!statement.columns.empty()) {
            m_out.sql += "(" + quotedNames(statement.columns) + ")";
        }
        m_out.sql += " AS " + m_queries.queryText(*statement.query, Use{.named = true}).sql;
    }

    void write(const DropView& statement)
    {
        begin(StatementKind::Schema, statement.view);
        m_out.sql = "DROP VIEW " + ifExistsText(statement.ifExists) + quotedName(statement.view);
    }

    static std::string ifExistsText(bool ifExists) { return ifExists ? "IF EXISTS " : ""; }

    // --- transactions -------------------------------------------------------------------------------------

    // The lock is taken at once: a transaction that reads first and writes later cannot fail half-way.
    void write(const BeginTransaction&)
    {
        m_out.kind = StatementKind::Begin;
        m_out.sql = "BEGIN IMMEDIATE";
    }

    void write(const CommitTransaction&)
    {
        m_out.kind = StatementKind::Commit;
        m_out.sql = "COMMIT";
    }

    void write(const RollbackTransaction&)
    {
        m_out.kind = StatementKind::Rollback;
        m_out.sql = "ROLLBACK";
    }

    std::string_view m_text;
    const ColumnTypes& m_columnTypes;
    const TableColumns& m_tableColumns;
    QueryWriter m_queries;
    Translation m_out;
};

} // namespace

Translation written(const ParsedStatement& statement, std::string_view tsql, const ColumnTypes& columnTypes,
                    const TableColumns& tableColumns)
{
    return StatementWriter(tsql, columnTypes, tableColumns).write(statement);
}

} // namespace zul::dialect
