#pragma once
// A connection to the stand-in of a server of Transact-SQL.
#include "tests/host/tds/StandIn.h"
#include "tests/support/TemporaryFolder.h"

#include "host/database/Cell.h"
#include "host/database/odbc/OdbcEngine.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace zul::host {

/// The first number of a statement's first row.
inline std::int64_t numberOf(Engine& engine, std::string_view sql)
{
    const auto rows = engine.query(sql, Language::Native);
    return rows->next() ? cellNumber(rows->cells()[0]) : -1;
}

class StandInTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (tds::freeTdsDriver().empty()) {
            GTEST_SKIP() << "the ODBC driver of FreeTDS is not installed";
        }
        m_options.file = m_folder.file("server.db");
        start();
    }

    void start()
    {
        m_engine.reset();
        m_server.reset();
        m_server = std::make_unique<tds::StandIn>(m_options);
        m_engine = std::make_unique<OdbcEngine>(m_server->connectionString());
    }

    void execute(std::string_view sql) { m_engine->execute(sql, Language::Native); }

    void fillTable(int rows)
    {
        execute("CREATE TABLE t (a int, b nvarchar(50))");
        std::vector<Value> values;
        for (std::int64_t i = 1; i <= rows; ++i) {
            values.emplace_back(i);
            values.emplace_back("riga " + std::to_string(i));
        }
        const std::vector<std::string_view> columns{"a", "b"};
        m_engine->insertRows("t", columns, values);
    }

    /// A second look at the same file, when the first connection is gone.
    std::int64_t later(std::string_view sql)
    {
        m_engine.reset();
        m_engine = std::make_unique<OdbcEngine>(m_server->connectionString());
        return numberOf(*m_engine, sql);
    }

    static ErrorCode codeOf(const std::function<void()>& work)
    {
        try {
            work();
        } catch (const EngineError& error) {
            EXPECT_STRNE(error.what(), "");
            return error.code();
        }
        ADD_FAILURE() << "nothing failed";
        return {};
    }

    TemporaryFolder m_folder;
    tds::ServerOptions m_options;
    std::unique_ptr<tds::StandIn> m_server;
    std::unique_ptr<OdbcEngine> m_engine;
};

} // namespace zul::host
