#pragma once
// Any database behind an ODBC driver. The component's statements are sent to the letter; where the engine
// speaks for itself it keeps to what every product understands, with Transact-SQL's short cuts where they help.
//
// A driver may allow one running statement a connection. So before a statement runs, the rest of the rows of
// one that still streams is read into memory; its stream goes on from there and notices nothing.
//
// Texts go through the narrow interface as UTF-8. FreeTDS gets ClientCharset=UTF-8 when the connection string
// does not say otherwise.
#include "host/database/Engine.h"

#include <chrono>
#include <memory>
#include <optional>
#include <unordered_map>

namespace zul::host {

class OdbcConnection;

class OdbcEngine final : public Engine
{
public:
    /// Connects. Throws EngineError with the driver's text; it waits at most 15 seconds for a server.
    /// A server of Transact-SQL that is silent for as long as `patience` while an answer is awaited counts as lost;
    /// it is asked after half of that time to call the statement off.
    explicit OdbcEngine(const std::string& connectionString,
                        std::chrono::seconds patience = std::chrono::minutes(5));
    ~OdbcEngine() override;

    std::int64_t execute(std::string_view sql, Language language,
                         std::span<const Value> parameters = {}) override;
    std::unique_ptr<RowStream> query(std::string_view sql, Language language,
                                     std::span<const Value> parameters = {}) override;
    Outcome run(std::string_view sql, Language language) override;
    void insertRows(std::string_view table, std::span<const std::string_view> columns,
                    std::span<const Value> values) override;
    RowIdentity rowIdentity(std::string_view table) override;
    std::int64_t nextId(std::string_view table, std::string_view key) override;
    void addRow(const NewRow& row, std::int64_t& id) override;
    bool hasTable(std::string_view name) override;
    const Product& product() const override;
    std::string connectionString() const override { return m_connectionString; }

protected:
    void beginWork() override;
    void commitWork() override;
    void rollbackWork() override;
    bool hasWork() override;
    bool mayHaveWork() const override;
    void disconnect() noexcept override;

private:
    void makeReady();
    std::optional<std::int64_t> addedAtOnce(const NewRow& row);
    RowIdentity readIdentity(std::string_view table);
    bool readCatalogueKey(std::string_view table, std::vector<std::string>& columns);
    void readAskedKey(std::string_view table, std::vector<std::string>& columns);
    std::optional<std::int64_t> raisedCounter(const std::string& table, const std::string& key);
    std::optional<std::int64_t> raisedCounterAtOnce(const std::string& sql, std::span<const Value> names);

    std::string m_connectionString;
    std::unique_ptr<OdbcConnection> m_connection;
    std::unordered_map<std::string, RowIdentity> m_identities; // by table name, folded
    bool m_raisesAtOnce = true; // until the server does not know the product's way
    bool m_addsAtOnce = true;   // the same
};

} // namespace zul::host
