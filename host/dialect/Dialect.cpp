#include "host/dialect/Dialect.h"

#include "host/dialect/base/Words.h"
#include "host/dialect/syntax/StatementParser.h"
#include "host/dialect/writer/DistinctKey.h"
#include "host/dialect/writer/StatementWriter.h"
#include "host/dialect/writer/TextSearch.h"

#include <utility>

namespace zul::dialect {

namespace {

// The tables that a batch creates, over those that the caller knows.
class Tables
{
public:
    Tables(const ColumnTypes& types, const TableColumns& columns)
        : m_types(types)
        , m_columns(columns)
    {}

    ColumnType type(std::string_view table, std::string_view column) const
    {
        if (const Table* created = find(table)) {
            for (const auto& [name, type] : created->columns) {
                if (sameWord(name, column)) {
                    return type;
                }
            }
        }
        return m_types ? m_types(table, column) : ColumnType::Unknown;
    }

    std::vector<std::string> columns(std::string_view table) const
    {
        const Table* created = find(table);
        if (created == nullptr || !created->whole) {
            return m_columns ? m_columns(table) : std::vector<std::string>();
        }
        return created->filled;
    }

    void learn(const Statement& statement)
    {
        std::visit([this](const auto& one) { apply(one); }, statement);
    }

private:
    struct Table
    {
        std::string name;
        bool whole = false; ///< created here, not only altered
        std::vector<std::pair<std::string, ColumnType>> columns;
        std::vector<std::string> filled;
    };

    static void add(Table& table, const ColumnDefinition& column)
    {
        table.columns.emplace_back(column.name, columnTypeNamed(column.type.name));
        if (!column.identity) {
            table.filled.push_back(column.name);
        }
    }

    void apply(const CreateTable& statement)
    {
        Table* table = find(statement.table);
        if (table == nullptr) {
            table = &m_created.emplace_back();
        }
        *table = Table{.name = statement.table, .whole = true, .columns = {}, .filled = {}};
        for (const ColumnDefinition& column : statement.columns) {
            add(*table, column);
        }
    }

    void apply(const AddColumn& statement)
    {
        Table* table = find(statement.table);
        if (table == nullptr) {
            table = &m_created.emplace_back();
            table->name = statement.table;
        }
        add(*table, statement.column);
    }

    void apply(const DropColumn& statement)
    {
        if (Table* table = find(statement.table)) {
            const auto same = [&](const std::string& name) { return sameWord(name, statement.column); };
            std::erase_if(table->columns, [&](const auto& column) { return same(column.first); });
            std::erase_if(table->filled, same);
        }
    }

    void apply(const DropTable& statement)
    {
        std::erase_if(m_created, [&](const Table& table) { return sameWord(table.name, statement.table); });
    }

    // The rest makes and changes no columns.
    void apply(const SelectStatement&) {}
    void apply(const InsertStatement&) {}
    void apply(const UpdateStatement&) {}
    void apply(const DeleteStatement&) {}
    void apply(const TruncateTable&) {}
    void apply(const CreateIndex&) {}
    void apply(const DropIndex&) {}
    void apply(const CreateView&) {}
    void apply(const DropView&) {}
    void apply(const BeginTransaction&) {}
    void apply(const CommitTransaction&) {}
    void apply(const RollbackTransaction&) {}

    const Table* find(std::string_view name) const
    {
        for (const Table& table : m_created) {
            if (sameWord(table.name, name)) {
                return &table;
            }
        }
        return nullptr;
    }

    Table* find(std::string_view name) { return const_cast<Table*>(std::as_const(*this).find(name)); }

    const ColumnTypes& m_types;
    const TableColumns& m_columns;
    std::vector<Table> m_created;
};

std::vector<Translation> translateAll(const std::vector<ParsedStatement>& statements, std::string_view tsql,
                                      const ColumnTypes& columnTypes, const TableColumns& tableColumns)
{
    Tables tables(columnTypes, tableColumns);
    const ColumnTypes types = [&](std::string_view table, std::string_view column) {
        return tables.type(table, column);
    };
    const TableColumns columns = [&](std::string_view table) { return tables.columns(table); };
    std::vector<Translation> translations;
    for (const ParsedStatement& statement : statements) {
        translations.push_back(written(statement, tsql, types, columns));
        tables.learn(statement.statement);
    }
    return translations;
}

} // namespace

Translation translate(std::string_view tsql, const ColumnTypes& columnTypes, const TableColumns& tableColumns,
                      const TableKey& tableKey)
{
    std::vector<ParsedStatement> statements = parseBatch(tsql);
    if (statements.empty()) {
        failAt(tsql, 0, "the statement is empty");
    }
    if (statements.size() > 1) {
        failAt(tsql, statements[1].offset, "only one statement can stand here");
    }
    const auto* select = std::get_if<SelectStatement>(&statements.front().statement);
    if (select != nullptr && columnTypes && tableKey) {
        useKeyForDistinct(*select->query, columnTypes, tableKey);
    }
    Translation translation = translateAll(statements, tsql, columnTypes, tableColumns).front();
    if (select != nullptr) {
        translation.search = textSearchOf(*select->query, columnTypes);
    }
    return translation;
}

std::size_t countStatements(std::string_view tsql)
{
    return parseBatch(tsql).size();
}

std::vector<Translation> translateBatch(std::string_view tsql, const ColumnTypes& columnTypes,
                                        const TableColumns& tableColumns)
{
    return translateAll(parseBatch(tsql), tsql, columnTypes, tableColumns);
}

} // namespace zul::dialect
