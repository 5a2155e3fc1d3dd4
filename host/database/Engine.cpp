#include "host/database/Engine.h"

#include "host/database/Counters.h"
#include "host/database/OwnTransaction.h"
#include "host/database/Schema.h"
#include "host/database/products/Product.h"

#include <limits>

namespace zul::host {

void requireGivableId(std::int64_t id, std::string_view table)
{
    if (id < 1 || id > std::numeric_limits<std::int32_t>::max()) {
        throw EngineError(ErrorCode::BadValue, "the ids of " + std::string(table) + " are used up");
    }
}

void Engine::begin()
{
    if (inTransaction()) {
        throw EngineError(ErrorCode::TransactionOpen, "a transaction is open already");
    }
    beginWork();
    m_begun = true;
    m_new.clear();
}

void Engine::commit()
{
    if (!inTransaction()) {
        throw EngineError(ErrorCode::NoTransaction, "no transaction is open");
    }
    try {
        requireTransaction();
        commitWork();
    } catch (...) {
        // Somebody else may be in the way for the moment, and the transaction still be open.
        m_begun = m_begun && mayHaveWork();
        throw;
    }
    m_begun = false;
}

void Engine::rollback()
{
    if (!inTransaction()) {
        throw EngineError(ErrorCode::NoTransaction, "no transaction is open");
    }
    const bool ended = m_begun && !mayHaveWork();
    m_begun = false;
    for (const std::string& table : m_new) {
        m_known.erase(table);
    }
    m_new.clear();
    if (!ended) {
        rollbackWork();
    }
}

bool Engine::inTransaction() const
{
    return m_begun || mayHaveWork();
}

void Engine::requireTransaction()
{
    if (m_begun && !hasWork()) {
        throw EngineError(ErrorCode::NoTransaction,
                          "the database has ended the transaction by itself and kept nothing of it");
    }
}

void Engine::close() noexcept
{
    m_begun = false;
    disconnect();
}

void Engine::addRow(const NewRow& row, std::int64_t& id)
{
    OwnTransaction transaction(*this);
    id = nextId(row.table, row.key);
    requireGivableId(id, row.table);
    std::string sql = "INSERT INTO " + product().tableName(row.table) + " (";
    sql += row.key;
    std::string marks = "?";
    for (const std::string_view column : row.columns) {
        sql += ", ";
        sql += column;
        marks += ", ?";
    }
    std::vector<Value> parameters;
    parameters.reserve(row.values.size() + 1);
    parameters.emplace_back(id);
    parameters.insert(parameters.end(), row.values.begin(), row.values.end());
    execute(sql + ") VALUES (" + marks + ")", Language::Native, parameters);
    transaction.commit();
}

void Engine::ensureTable(const TableDefinition& table)
{
    const std::string name(table.name);
    if (m_known.contains(name)) {
        return;
    }
    if (!hasTable(name)) {
        try {
            execute(createTableStatement(table, product(), true), Language::Native);
        } catch (const EngineError& error) {
            // Another program may have made it meanwhile.
            if (error.code() != ErrorCode::Statement || !hasTable(name)) {
                throw;
            }
        }
        // A table made in a transaction goes when that is undone.
        if (inTransaction()) {
            m_new.push_back(name);
        }
    }
    m_known.insert(name);
}

} // namespace zul::host
