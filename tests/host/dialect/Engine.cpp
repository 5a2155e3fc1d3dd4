#include "tests/host/dialect/Engine.h"

#include "host/dialect/SqliteFunctions.h"

#include <cstddef>
#include <ostream>
#include <stdexcept>

#include <sqlite3.h>

namespace zul::dialect::test {

std::ostream& operator<<(std::ostream& out, const ValueCase& example)
{
    return out << example.expression;
}

Engine::Engine()
{
    if (sqlite3_open(":memory:", &m_connection) != SQLITE_OK ||
        registerFunctions(m_connection) != SQLITE_OK) {
        throw std::runtime_error("no database");
    }
}

Engine::~Engine()
{
    sqlite3_close(m_connection);
}

ColumnTypes Engine::types() const
{
    return [this](std::string_view table, std::string_view column) {
        const char* declared = nullptr;
        const int code = sqlite3_table_column_metadata(m_connection, nullptr, std::string(table).c_str(),
                                                       std::string(column).c_str(), &declared, nullptr,
                                                       nullptr, nullptr, nullptr);
        return code != SQLITE_OK || declared == nullptr ? ColumnType::Unknown : columnTypeOf(declared);
    };
}

Rows Engine::run(std::string_view tsql)
{
    return runWith(tsql, types());
}

Rows Engine::runUntyped(std::string_view tsql)
{
    return runWith(tsql, {});
}

Rows Engine::runWith(std::string_view tsql, const ColumnTypes& types)
{
    Rows rows;
    for (const Translation& translation : translateBatch(tsql, types)) {
        rows = runNative(translation.sql);
    }
    return rows;
}

Rows Engine::runNative(const std::string& sql)
{
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    const int prepared =
        sqlite3_prepare_v2(m_connection, sql.c_str(), static_cast<int>(sql.size()), &statement, &tail);
    if (prepared != SQLITE_OK) {
        throw std::runtime_error(std::string(sqlite3_errmsg(m_connection)) + " in: " + sql);
    }
    if (*tail != '\0') {
        sqlite3_finalize(statement);
        throw std::runtime_error("more than one statement: " + sql);
    }
    m_columns.clear();
    const int count = sqlite3_column_count(statement);
    for (int i = 0; i < count; ++i) {
        m_columns.emplace_back(sqlite3_column_name(statement, i));
    }
    Rows rows;
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
        std::vector<std::string> row;
        for (int i = 0; i < count; ++i) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
            const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
            row.emplace_back(text == nullptr ? std::string("NULL") : std::string(text, size));
        }
        rows.push_back(std::move(row));
    }
    const std::string message = code == SQLITE_DONE ? "" : sqlite3_errmsg(m_connection);
    sqlite3_finalize(statement);
    if (!message.empty()) {
        throw std::runtime_error(message);
    }
    return rows;
}

std::string Engine::value(const std::string& expression)
{
    const Rows rows = run("SELECT " + expression);
    if (rows.size() != 1 || rows.front().size() != 1) {
        throw std::runtime_error("not one value: " + expression);
    }
    return rows.front().front();
}

std::string Engine::failure(std::string_view tsql)
{
    try {
        run(tsql);
    } catch (const DialectError&) {
        throw;
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

} // namespace zul::dialect::test
