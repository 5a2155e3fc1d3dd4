#include "host/dialect/Dialect.h"

#include "host/dialect/base/Words.h"
#include "host/dialect/syntax/StatementParser.h"
#include "host/dialect/writer/DistinctKey.h"
#include "host/dialect/writer/Emitter.h"
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
        if (const Table* created = find(table))
            for (const auto& [name, type] : created->columns)
                if (sameWord(name, column))
                    return type;
        return m_types ? m_types(table, column) : ColumnType::Unknown;
    }

    std::vector<std::string> columns(std::string_view table) const
    {
        const Table* created = find(table);
        if (created == nullptr || !created->whole)
            return m_columns ? m_columns(table) : std::vector<std::string>();
        return created->filled;
    }

    void learn(const Statement& statement)
    {
        if (statement.type != StatementType::CreateTable && statement.type != StatementType::AlterAdd)
            return;
        Table* table = find(statement.target.back());
        if (table == nullptr)
            table = &m_created.emplace_back();
        if (statement.type == StatementType::CreateTable)
            *table = Table();
        table->name = statement.target.back();
        table->whole = table->whole || statement.type == StatementType::CreateTable;
        for (const ColumnDefinition& column : statement.definitions) {
            table->columns.emplace_back(column.name, columnTypeNamed(column.type.name));
            if (!column.identity)
                table->filled.push_back(column.name);
        }
    }

private:
    struct Table
    {
        std::string name;
        bool whole = false; ///< created here, not only altered
        std::vector<std::pair<std::string, ColumnType>> columns;
        std::vector<std::string> filled;
    };

    const Table* find(std::string_view name) const
    {
        for (const Table& table : m_created)
            if (sameWord(table.name, name))
                return &table;
        return nullptr;
    }

    Table* find(std::string_view name) { return const_cast<Table*>(std::as_const(*this).find(name)); }

    const ColumnTypes& m_types;
    const TableColumns& m_columns;
    std::vector<Table> m_created;
};

std::vector<Translation> translateAll(const std::vector<Statement>& statements, std::string_view tsql,
                                      const ColumnTypes& columnTypes, const TableColumns& tableColumns)
{
    Tables tables(columnTypes, tableColumns);
    const ColumnTypes types = [&](std::string_view table, std::string_view column) {
        return tables.type(table, column);
    };
    const TableColumns columns = [&](std::string_view table) { return tables.columns(table); };
    std::vector<Translation> translations;
    for (const Statement& statement : statements) {
        translations.push_back(emit(statement, tsql, types, columns));
        tables.learn(statement);
    }
    return translations;
}

} // namespace

Translation translate(std::string_view tsql, const ColumnTypes& columnTypes, const TableColumns& tableColumns,
                      const TableKey& tableKey)
{
    std::vector<Statement> statements = parseBatch(tsql);
    if (statements.empty())
        failAt(tsql, 0, "the statement is empty");
    if (statements.size() > 1)
        failAt(tsql, statements[1].offset, "only one statement can stand here");
    if (statements.front().type == StatementType::Select && columnTypes && tableKey)
        useKeyForDistinct(*statements.front().query, columnTypes, tableKey);
    Translation translation = translateAll(statements, tsql, columnTypes, tableColumns).front();
    if (translation.kind == StatementKind::Select)
        translation.search = textSearchOf(*statements.front().query, columnTypes);
    return translation;
}

std::vector<Translation> translateBatch(std::string_view tsql, const ColumnTypes& columnTypes,
                                        const TableColumns& tableColumns)
{
    return translateAll(parseBatch(tsql), tsql, columnTypes, tableColumns);
}

} // namespace zul::dialect
