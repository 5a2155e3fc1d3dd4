// What only an ODBC connection can meet: cut connections, sizes that drivers get wrong, batches.
#include "tests/host/database/Backends.h"
#include "tests/host/database/PostgresServer.h"

#include "host/database/Cell.h"
#include "host/database/odbc/OdbcEngine.h"
#include "host/demo/DemoData.h"

using namespace zul::host;

namespace {

class PostgresTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string why;
        PostgresServer* const server = PostgresServer::shared(why);
        if (server == nullptr) {
            GTEST_SKIP() << why;
        }
        m_connectionString = server->connectionString(server->newDatabase());
        m_engine = std::make_unique<OdbcEngine>(m_connectionString);
    }

    std::string m_connectionString;
    std::unique_ptr<OdbcEngine> m_engine;
};

class SqliteOdbcTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const std::string driver = odbcDriver("libsqlite3odbc.so");
        if (driver.empty()) {
            GTEST_SKIP() << "the ODBC driver of SQLite is not installed";
        }
        m_engine = std::make_unique<OdbcEngine>("DRIVER=" + driver + ";Database=" + m_folder.file("x.db"));
    }

    TemporaryFolder m_folder;
    std::unique_ptr<OdbcEngine> m_engine;
};

} // namespace

TEST_F(PostgresTest, SaysThatTheConnectionIsLostAndGoesOnSayingSo)
{
    m_engine->execute("CREATE TABLE t (a int)", Language::Native);
    m_engine->execute("INSERT INTO t SELECT * FROM generate_series(1, 5000)", Language::Native);
    m_engine->begin();
    m_engine->execute("INSERT INTO t VALUES (0)", Language::Native);
    auto rows = m_engine->query("SELECT a FROM t", Language::Native);
    ASSERT_TRUE(rows->next());
    {
        OdbcEngine other(m_connectionString);
        other.run(
            "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = current_database() AND"
            " pid <> pg_backend_pid()",
            Language::Native);
    }
    for (int i = 0; i < 3; ++i) {
        try {
            m_engine->execute("INSERT INTO t VALUES (1)", Language::Native);
            FAIL() << "the statement ran";
        } catch (const EngineError& error) {
            EXPECT_EQ(error.code(), ErrorCode::ConnectionLost);
            EXPECT_STRNE(error.what(), "");
        }
    }
    EXPECT_ANY_THROW(m_engine->commit());
    rows.reset();
    m_engine.reset();
    // What was not committed is gone, and a new connection works.
    m_engine = std::make_unique<OdbcEngine>(m_connectionString);
    auto count = m_engine->query("SELECT COUNT(*) FROM t WHERE a = 0", Language::Native);
    ASSERT_TRUE(count->next());
    EXPECT_EQ(count->cells()[0].Integer, 0);
}

TEST_F(PostgresTest, DoesNotTakeACutConnectionForTheEndOfTheRows)
{
    // With fetching in portions the rest is still at the server when it goes.
    m_engine = std::make_unique<OdbcEngine>(m_connectionString + ";UseDeclareFetch=1;Fetch=10");
    const auto rows = m_engine->query("SELECT * FROM generate_series(1, 5000)", Language::Native);
    int read = 0;
    const auto readAll = [&] {
        while (rows->next()) {
            ++read;
        }
    };
    ASSERT_TRUE(rows->next());
    {
        OdbcEngine other(m_connectionString);
        other.run(
            "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = current_database() AND"
            " pid <> pg_backend_pid()",
            Language::Native);
    }
    EXPECT_THROW(readAll(), EngineError);
    EXPECT_LT(read, 5000);
    EXPECT_THROW(m_engine->execute("SELECT 1", Language::Native), EngineError);
    EXPECT_THROW(rows->next(), EngineError);
}

TEST_F(PostgresTest, GoesOnWithAStreamWhileOtherStatementsRun)
{
    m_engine->execute("CREATE TABLE t (a int, b text)", Language::Native);
    m_engine->execute("INSERT INTO t SELECT n, 'riga ' || n FROM generate_series(1, 2500) AS n",
                      Language::Native);
    for (const char* sql : {"SELECT a FROM t ORDER BY a", "SELECT a, b FROM t ORDER BY a"}) {
        const auto rows = m_engine->query(sql, Language::Native);
        for (int i = 1; i <= 1500; ++i) {
            ASSERT_TRUE(rows->next());
        }
        m_engine->execute("UPDATE t SET b = 'x' WHERE a = 1", Language::Native);
        EXPECT_EQ(rows->cells()[0].Integer, 1500);
        if (rows->columns().size() > 1) {
            EXPECT_EQ(cellText(rows->cells()[1]), "riga 1500");
        }
        const auto second = m_engine->query(sql, Language::Native);
        ASSERT_TRUE(second->next());
        for (int i = 1501; i <= 2500; ++i) {
            ASSERT_TRUE(rows->next());
            ASSERT_EQ(rows->cells()[0].Integer, i);
        }
        EXPECT_FALSE(rows->next());
        EXPECT_FALSE(rows->next());
    }
}

TEST_F(PostgresTest, LetsARowSetOfANeverReadStreamGo)
{
    for (int i = 0; i < 50; ++i) {
        m_engine->query("SELECT * FROM generate_series(1, 10000)", Language::Native);
    }
    EXPECT_TRUE(m_engine->query("SELECT 1", Language::Native)->next());
}

TEST_F(PostgresTest, ReportsWhatALaterStatementOfABatchMeets)
{
    m_engine->execute("CREATE TABLE t (a int PRIMARY KEY)", Language::Native);
    EXPECT_EQ(m_engine->execute("INSERT INTO t VALUES (1); INSERT INTO t VALUES (2)", Language::Native), 2);
    EXPECT_THROW(m_engine->execute("INSERT INTO t VALUES (3); INSERT INTO t VALUES (1)", Language::Native),
                 EngineError);
    const auto rows = m_engine->query("SELECT MAX(a) FROM t", Language::Native);
    EXPECT_TRUE(rows->next());
}

TEST_F(PostgresTest, TakesTextsWithWhatOdbcReadsAsEscapes)
{
    m_engine->execute("CREATE TABLE t (a text)", Language::Native);
    m_engine->execute("INSERT INTO t VALUES ('{Cliente} {d ''2024-01-01''} ? {fn now()}')", Language::Native);
    const auto rows = m_engine->query("SELECT a FROM t", Language::Native);
    ASSERT_TRUE(rows->next());
    EXPECT_EQ(cellText(rows->cells()[0]), "{Cliente} {d '2024-01-01'} ? {fn now()}");
}

TEST_F(PostgresTest, HoldsTheDemonstrationToo)
{
    m_engine.reset();
    createDemo(m_connectionString, 300);
    HostDatabaseOptions options;
    options.database = m_connectionString;
    const HostDatabase database(options);
    const auto one = [&](const char* sql) { return database.run(sql).rows.at(0).at(0).value_or("NULL"); };
    EXPECT_EQ(one("SELECT COUNT(*) FROM tabClienti"), "300");
    EXPECT_EQ(one("SELECT COUNT(*) FROM tabProvince"), "107");
    EXPECT_EQ(one("SELECT Descrizione FROM tabProvince WHERE Codice = 'FC'"), "Forlì-Cesena");
    EXPECT_EQ(one("SELECT testoSMS FROM TMK_Messaggi WHERE idMessaggio = 5"),
              "Promo riservata ai clienti {Classificazione}: buono da 20 € entro fine mese.");
    // Row for row what the embedded database gets.
    const TemporaryFolder folder;
    HostDatabaseOptions embeddedOptions;
    embeddedOptions.database = folder.file("x.db");
    createDemo(embeddedOptions.database, 300);
    const HostDatabase embedded(embeddedOptions);
    for (const char* sql :
         {"SELECT IdCliente, RagioneSociale1, RagioneSociale2, Cliente, DataNascita, Sesso, Paese,"
          " provincia, Telefono, Telefono2, email, ConsensoSms, idClassificazione, PuntiFidelity"
          " FROM tabClienti ORDER BY IdCliente",
          "SELECT idVendita, IdCliente, DataVendita FROM tabVendite ORDER BY idVendita"}) {
        EXPECT_EQ(database.run(sql).rows, embedded.run(sql).rows);
    }
    EXPECT_THROW(createDemo(m_connectionString, 1), EngineError);
    EXPECT_EQ(one("SELECT COUNT(*) FROM tabClienti"), "300");
}

TEST_F(PostgresTest, ReadsAValueThatIsLongerThanTheDriverSaysWithoutRunningTheStatementAgain)
{
    m_engine->execute("CREATE TABLE t (a int)", Language::Native);
    // The values stand in blocks of rows, short ones beside long ones; the rows have no order.
    const Outcome outcome = m_engine->run("INSERT INTO t SELECT n FROM generate_series(1, 3000) AS n;"
                                          " SELECT a, CAST(CASE WHEN a % 7 = 0 THEN repeat('è', 2500) || a "
                                          "ELSE 'breve ' || a END AS varchar) AS b,"
                                          " a AS c FROM t",
                                          Language::Native);
    ASSERT_TRUE(outcome.rows);
    int rows = 0;
    std::string expected;
    while (outcome.rows->next()) {
        const std::int64_t a = outcome.rows->cells()[0].Integer;
        expected.clear();
        for (int i = 0; a % 7 == 0 && i < 2500; ++i) {
            expected += "è";
        }
        expected += (a % 7 == 0 ? "" : "breve ") + std::to_string(a);
        ASSERT_EQ(cellText(outcome.rows->cells()[1]), expected);
        ASSERT_EQ(outcome.rows->cells()[2].Integer, a);
        ++rows;
    }
    EXPECT_EQ(rows, 3000);
    const auto count = m_engine->query("SELECT COUNT(*) FROM t", Language::Native);
    ASSERT_TRUE(count->next());
    EXPECT_EQ(cellNumber(count->cells()[0]), 3000);
}

TEST_F(SqliteOdbcTest, ReadsOnWhereTheDriverSaysTooSmallASize)
{
    m_engine->execute("CREATE TABLE t (a int, b varchar(3))", Language::Native);
    for (int i = 1; i <= 20; ++i) {
        const std::vector<Value> row{std::int64_t{i}, i < 15 ? std::string("à") : std::string(5000, 'x')};
        m_engine->execute("INSERT INTO t (a, b) VALUES (?, ?)", Language::Native, row);
    }
    const auto rows = m_engine->query("SELECT a, b FROM t ORDER BY a", Language::Native);
    for (int i = 1; i <= 20; ++i) {
        ASSERT_TRUE(rows->next());
        EXPECT_EQ(rows->cells()[0].Integer, i);
        EXPECT_EQ(cellText(rows->cells()[1]), i < 15 ? std::string("à") : std::string(5000, 'x'));
    }
    EXPECT_FALSE(rows->next());
    // With a parameter, and while another statement runs, too.
    const std::vector<Value> from{std::int64_t{14}};
    const auto some = m_engine->query("SELECT b, a FROM t WHERE a >= ? ORDER BY a", Language::Native, from);
    for (int i = 14; i <= 20; ++i) {
        ASSERT_TRUE(some->next());
        EXPECT_EQ(cellText(some->cells()[0]).size(), i < 15 ? 2U : 5000U);
        if (i == 15) {
            EXPECT_EQ(m_engine->execute("UPDATE t SET b = 'y' WHERE a > 15", Language::Native), 5);
        }
        EXPECT_EQ(cellText(some->cells()[0]).size(), i < 15 ? 2U : 5000U);
        EXPECT_EQ(some->cells()[1].Integer, i);
    }
    EXPECT_FALSE(some->next());
}

TEST(OdbcConnection, SaysWhyItCannotConnect)
{
    for (const char* text : {"DRIVER=/no/such/driver.so;SERVER=x", "DSN=zul no such source", "=", ";;==;;"}) {
        HostDatabaseOptions options;
        options.database = text;
        try {
            HostDatabase database(options);
            FAIL() << text;
        } catch (const EngineError& error) {
            EXPECT_STRNE(error.what(), "") << text;
        }
    }
}
