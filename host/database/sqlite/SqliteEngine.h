#pragma once
// The embedded engine: SQLite behind the seam, with the Transact-SQL of the component read by the dialect
// layer. Begin takes the write lock at once, so that a transaction never fails half-way for want of it.
#include "host/database/Engine.h"
#include "host/database/sqlite/SqliteDatabase.h"
#include "host/database/sqlite/TextColumn.h"
#include "host/dialect/Dialect.h"

namespace zul::host {

class SqliteEngine final : public Engine
{
public:
    /// Throws EngineError when the file cannot be opened or is no database.
    SqliteEngine(const std::string& path, SqliteDatabase::Mode mode);

    std::int64_t execute(std::string_view sql, Language language,
                         std::span<const Value> parameters = {}) override;
    std::unique_ptr<RowStream> query(std::string_view sql, Language language,
                                     std::span<const Value> parameters = {}) override;
    Outcome run(std::string_view sql, Language language) override;
    void insertRows(std::string_view table, std::span<const std::string_view> columns,
                    std::span<const Value> values) override;
    RowIdentity rowIdentity(std::string_view table) override;
    std::int64_t nextId(std::string_view table, std::string_view key) override;
    bool hasTable(std::string_view name) override;
    void refreshStatistics() override;
    const Product& product() const override;
    std::string connectionString() const override;

    SqliteDatabase& database() { return m_database; }

protected:
    void beginWork() override;
    void commitWork() override;
    void rollbackWork() override;
    bool hasWork() override { return mayHaveWork(); }
    bool mayHaveWork() const override;
    void disconnect() noexcept override { m_database.close(); }

private:
    struct DeclaredTable
    {
        std::unordered_map<std::string, dialect::ColumnType> types; // by column, names folded
        std::vector<std::string> key;
    };

    struct IdStatement
    {
        std::string table; // as asked for
        std::string key;
        std::string sql;
        std::vector<Value> parameters;
    };

    /// The texts of the column that was searched last, and of which state of the database they are.
    struct SearchedTexts
    {
        std::string table;
        std::string column;
        std::int64_t ownChanges = 0;
        std::int64_t dataVersion = 0;
        std::optional<TextColumn> texts; // none: too many to keep, or not to be had
    };

    std::unique_ptr<RowStream> narrowedQuery(const NativeStatement& native);
    const std::optional<TextColumn>& textsFor(const dialect::TextSearch& search);
    std::optional<TextColumn> readTexts(const dialect::TextSearch& search);
    std::int64_t dataVersion();
    const IdStatement& idStatement(std::string_view table, std::string_view key);
    const DeclaredTable& declared(std::string_view table);
    dialect::ColumnType declaredType(std::string_view table, std::string_view column);
    void forgetSchema();
    NativeStatement translated(std::string_view sql);
    std::int64_t run(SqliteStatement& statement, std::span<const Value> parameters);
    std::int64_t executeBatch(std::string_view sql);
    SqliteStatement prepare(std::string_view sql, Language language);

    SqliteDatabase m_database;
    std::unordered_map<std::string, DeclaredTable> m_declared; // by name, folded
    dialect::ColumnTypes m_columnTypes;
    dialect::TableKey m_tableKey;
    SqlTranslator m_translator;
    IdStatement m_ids; // the last one
    SearchedTexts m_searched;
};

} // namespace zul::host
