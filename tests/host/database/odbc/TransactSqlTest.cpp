// What a connection to a server of Transact-SQL meets: its refusals, its catalogue or the lack of it, its clock, and
// its end in the middle of everything. Against the stand-in, and what needs no special server also against the one
// that ZUL_TEST_TSQL names.
#include "tests/host/database/Backends.h"
#include "tests/host/database/odbc/StandInTest.h"

#include "base/DateText.h"
#include "host/database/Cell.h"
#include "host/database/Recordset.h"
#include "host/database/Session.h"
#include "host/database/odbc/OdbcEngine.h"

#include "automation/Variant.h"

#include <thread>

using namespace zul;
using namespace zul::host;

namespace {

void dropAll(Engine& engine)
{
    for (const TableDefinition& table : allTables()) {
        if (engine.hasTable(table.name)) {
            engine.execute("DROP TABLE " + std::string(table.name), Language::Native);
        }
    }
}

/// The same against the stand-in and against a server of the user's.
class TransactSqlTest : public ::testing::TestWithParam<std::string>
{
protected:
    void SetUp() override
    {
        for (const Backend& backend : backends()) {
            if (backend.name != GetParam()) {
                continue;
            }
            std::string why;
            const auto database = backend.database(m_folder, why);
            if (!database) {
                GTEST_SKIP() << why;
            }
            m_connectionString = *database;
        }
        m_engine = std::make_unique<OdbcEngine>(m_connectionString);
        dropAll(*m_engine);
        if (m_engine->hasTable("tabProvaTds")) {
            execute("DROP TABLE tabProvaTds");
        }
    }

    void TearDown() override
    {
        if (!m_engine) {
            return;
        }
        dropAll(*m_engine);
        if (m_engine->hasTable("tabProvaTds")) {
            execute("DROP TABLE tabProvaTds");
        }
    }

    std::int64_t execute(std::string_view sql, std::span<const Value> parameters = {})
    {
        return m_engine->execute(sql, Language::Native, parameters);
    }

    TemporaryFolder m_folder;
    std::string m_connectionString;
    std::unique_ptr<OdbcEngine> m_engine;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(On, TransactSqlTest, ::testing::Values("TransactSqlStandIn", "TransactSqlByOdbc"),
                         [](const auto& test) { return test.param; });

TEST_P(TransactSqlTest, TakesTextsWithWhatDriversReadAsMarks)
{
    const std::string text = "{Cliente} {d '2024-01-01'} ? {fn now()} @P1 -- [x] \"y\" /* à è € 😀 */";
    execute("CREATE TABLE tabProvaTds (a int, b nvarchar(200), c nvarchar(max))");
    std::string literal = text;
    for (std::size_t at = 0; (at = literal.find('\'', at)) != std::string::npos; at += 2) {
        literal.insert(at, "'");
    }
    execute("INSERT INTO tabProvaTds (a, b, c) VALUES (1, N'" + literal + "', N'" + literal + "')");
    execute("INSERT INTO tabProvaTds (a, b, c) VALUES (?, ?, ?)",
            std::vector<Value>{std::int64_t{2}, text, text});
    execute("INSERT INTO tabProvaTds (a, b, c) VALUES (3, ?, N'?')", std::vector<Value>{text});
    const auto rows = m_engine->query("SELECT b, c FROM tabProvaTds ORDER BY a", Language::Native);
    for (int i = 1; i <= 3; ++i) {
        ASSERT_TRUE(rows->next());
        EXPECT_EQ(cellText(rows->cells()[0]), text);
        EXPECT_EQ(cellText(rows->cells()[1]), i < 3 ? text : "?");
    }
    EXPECT_FALSE(rows->next());
}

TEST_P(TransactSqlTest, BringsNullIntoAColumnOfEveryType)
{
    execute("CREATE TABLE tabProvaTds (a int, b smallint, c bit, d float, e decimal(18,2), f nvarchar(10),"
            " g nvarchar(max), h datetime)");
    const std::vector<Value> nulls(8);
    EXPECT_EQ(
        execute("INSERT INTO tabProvaTds (a, b, c, d, e, f, g, h) VALUES (?, ?, ?, ?, ?, ?, ?, ?)", nulls),
        1);
    const std::vector<Value> set{
        std::int64_t{1}, std::int64_t{-2}, true, 0.5, DecimalValue{"-0.05"}, "", "x", DateValue{45000.25}};
    EXPECT_EQ(
        execute("INSERT INTO tabProvaTds (a, b, c, d, e, f, g, h) VALUES (?, ?, ?, ?, ?, ?, ?, ?)", set), 1);
    EXPECT_EQ(execute("UPDATE tabProvaTds SET a = ?, b = ?, c = ?, d = ?, e = ?, f = ?, g = ?, h = ?", nulls),
              2);
    EXPECT_EQ(numberOf(*m_engine,
                       "SELECT COUNT(*) FROM tabProvaTds WHERE a IS NULL AND b IS NULL AND c IS NULL AND d IS"
                       " NULL AND e IS NULL AND f IS NULL AND g IS NULL AND h IS NULL"),
              2);
}

TEST_P(TransactSqlTest, RefusesWhatAColumnCannotHoldAndGoesOn)
{
    execute("CREATE TABLE tabProvaTds (a int NOT NULL PRIMARY KEY, b nvarchar(3), c datetime, d smallint)");
    const auto codeOf = [&](std::string_view sql, const std::vector<Value>& parameters) {
        try {
            execute(sql, parameters);
        } catch (const EngineError& error) {
            EXPECT_STRNE(error.what(), "");
            return error.code();
        }
        ADD_FAILURE() << sql;
        return ErrorCode{};
    };
    for (const bool inTransaction : {false, true}) {
        if (inTransaction) {
            m_engine->begin();
        }
        EXPECT_EQ(codeOf("INSERT INTO tabProvaTds (a, b) VALUES (1, 'quattro')", {}), ErrorCode::BadValue);
        EXPECT_EQ(codeOf("INSERT INTO tabProvaTds (a, b) VALUES (1, ?)", {std::string("àèìò")}),
                  ErrorCode::BadValue);
        EXPECT_EQ(codeOf("INSERT INTO tabProvaTds (a, b) VALUES (NULL, 'x')", {}), ErrorCode::Integrity);
        EXPECT_EQ(codeOf("INSERT INTO tabProvaTds (b) VALUES ('x')", {}), ErrorCode::Integrity);
        EXPECT_EQ(codeOf("UPDATE tabCheManca SET a = 1", {}), ErrorCode::NoTable);
        EXPECT_EQ(codeOf("INSERT INTO tabProvaTds (nonEsiste) VALUES (1)", {}), ErrorCode::Statement);
        execute("INSERT INTO tabProvaTds (a, b) VALUES (1, 'tre')");
        EXPECT_EQ(codeOf("INSERT INTO tabProvaTds (a, b) VALUES (1, 'tre')", {}), ErrorCode::Integrity);
        if (inTransaction) {
            m_engine->rollback();
        } else {
            execute("DELETE FROM tabProvaTds");
        }
    }
    EXPECT_EQ(numberOf(*m_engine, "SELECT COUNT(*) FROM tabProvaTds"), 0);
}

TEST_P(TransactSqlTest, FindsARowWithoutAKeyByItsMomentAndItsLongText)
{
    execute("CREATE TABLE tabProvaTds (a int, quando datetime, testo nvarchar(max), reale float, importo "
            "decimal(18,2))");
    const std::string text(5000, 'x');
    execute("INSERT INTO tabProvaTds (a, quando, testo, reale, importo) VALUES (?, ?, ?, ?, ?)",
            std::vector<Value>{std::int64_t{1}, DateValue{*parseDate("2024-05-01 10:20:30.123")}, text, 0.1,
                               DecimalValue{"12345678.91"}});
    HostDatabaseOptions options;
    options.database = m_connectionString;
    const HostDatabase database(options);
    ComPtr<IConnection> connection;
    ASSERT_EQ(database.connection()->get_Connection(connection.put()), S_OK);
    ComPtr<IRecordset> rows;
    ASSERT_EQ(connection->OpenRecordset(Bstr(u"SELECT * FROM tabProvaTds").get(), CursorDynamic,
                                        LockOptimistic, rows.put()),
              S_OK);
    ASSERT_EQ(rows->put_Value(Variant::fromText(u"a"), Variant::fromLong(2)), S_OK);
    EXPECT_EQ(rows->Update(), S_OK);
    EXPECT_EQ(numberOf(*m_engine, "SELECT a FROM tabProvaTds"), 2);
}

TEST_P(TransactSqlTest, ReportsWhatALaterStatementOfABatchMeets)
{
    execute("CREATE TABLE tabProvaTds (a int NOT NULL PRIMARY KEY)");
    EXPECT_EQ(execute("INSERT INTO tabProvaTds VALUES (1); INSERT INTO tabProvaTds VALUES (2)"), 2);
    EXPECT_THROW(execute("INSERT INTO tabProvaTds VALUES (3); INSERT INTO tabProvaTds VALUES (1)"),
                 EngineError);
    EXPECT_EQ(numberOf(*m_engine, "SELECT MAX(a) FROM tabProvaTds"), 3);
}

TEST_P(TransactSqlTest, DoesNotTakeAnErrorBehindRowsForTheirEnd)
{
    execute("CREATE TABLE tabProvaTds (a int NOT NULL PRIMARY KEY, b nvarchar(50), c nvarchar(max))");
    std::vector<Value> values;
    for (std::int64_t i = 1; i <= 1100; ++i) {
        values.emplace_back(i);
        values.emplace_back(std::to_string(i));
        values.emplace_back("lungo");
    }
    const std::vector<std::string_view> columns{"a", "b", "c"};
    m_engine->insertRows("tabProvaTds", columns, values);
    // At the first row, around the ends of the blocks in which rows are fetched, and at the last one.
    for (const int bad : {1, 2, 4, 5, 6, 1003, 1004, 1005, 1100}) {
        execute("UPDATE tabProvaTds SET b = 'x' WHERE a = " + std::to_string(bad));
        for (const char* sql : {"SELECT a, CAST(b AS int) AS n FROM tabProvaTds",
                                "SELECT a, CAST(b AS int) AS n, c FROM tabProvaTds"}) {
            int read = 0;
            try {
                const auto rows = m_engine->query(sql, Language::Native);
                while (rows->next()) {
                    ++read;
                }
                ADD_FAILURE() << sql << ": the rows came to an end at " << bad;
            } catch (const EngineError& error) {
                EXPECT_EQ(error.code(), ErrorCode::BadValue) << error.what();
            }
            EXPECT_LT(read, bad);
        }
        execute("UPDATE tabProvaTds SET b = '0' WHERE a = " + std::to_string(bad));
    }
    EXPECT_EQ(numberOf(*m_engine, "SELECT COUNT(*) FROM tabProvaTds"), 1100);
}

TEST_P(TransactSqlTest, GoesOnWithAStreamWhileOtherStatementsRun)
{
    execute("CREATE TABLE tabProvaTds (a int, b nvarchar(50))");
    std::vector<Value> values;
    for (std::int64_t i = 1; i <= 2500; ++i) {
        values.emplace_back(i);
        values.emplace_back("riga " + std::to_string(i));
    }
    const std::vector<std::string_view> columns{"a", "b"};
    m_engine->insertRows("tabProvaTds", columns, values);
    const auto rows = m_engine->query("SELECT a, b FROM tabProvaTds ORDER BY a", Language::Native);
    for (int i = 1; i <= 1500; ++i) {
        ASSERT_TRUE(rows->next());
    }
    EXPECT_EQ(execute("UPDATE tabProvaTds SET b = 'x' WHERE a = 1"), 1);
    EXPECT_EQ(cellText(rows->cells()[1]), "riga 1500");
    for (int i = 1501; i <= 2500; ++i) {
        ASSERT_TRUE(rows->next());
        ASSERT_EQ(rows->cells()[0].Integer, i);
    }
    EXPECT_FALSE(rows->next());
    // Streams that nobody reads are let go.
    for (int i = 0; i < 20; ++i) {
        m_engine->query("SELECT a, b FROM tabProvaTds", Language::Native);
    }
    EXPECT_EQ(numberOf(*m_engine, "SELECT COUNT(*) FROM tabProvaTds"), 2500);
}

TEST_P(TransactSqlTest, MakesATableThatAnotherProgramMakesToo)
{
    for (int round = 0; round < 10; ++round) {
        dropAll(*m_engine);
        std::vector<std::string> errors(2);
        std::vector<std::thread> programs;
        programs.reserve(errors.size());
        for (std::string& error : errors) {
            programs.emplace_back([&] {
                try {
                    OdbcEngine own(m_connectionString);
                    own.ensureTable(counterTable());
                } catch (const EngineError& failure) {
                    error = failure.what();
                }
            });
        }
        for (std::thread& program : programs) {
            program.join();
        }
        EXPECT_EQ(errors, std::vector<std::string>(2));
        EXPECT_TRUE(m_engine->hasTable("TABCONTATORI"));
    }
}

TEST_P(TransactSqlTest, HoldsTheDemonstrationToo)
{
    createDemo(m_connectionString, 700);
    HostDatabaseOptions options;
    options.database = m_connectionString;
    const HostDatabase database(options);
    // Row for row what the embedded database gets.
    const TemporaryFolder folder;
    HostDatabaseOptions embeddedOptions;
    embeddedOptions.database = folder.file("x.db");
    createDemo(embeddedOptions.database, 700);
    const HostDatabase embedded(embeddedOptions);
    for (const char* sql :
         {"SELECT IdCliente, RagioneSociale1, RagioneSociale2, Cliente, Fornitore, Contatto, DataNascita, "
          "Sesso, Paese,"
          " provincia, Telefono, Telefono2, email, MailCommerciale, MailAmministrazione, NoteCliente, "
          "ConsensoSms,"
          " ConsensoEmail, idClassificazione, PuntiFidelity FROM tabClienti ORDER BY IdCliente",
          "SELECT idVendita, IdCliente, DataVendita FROM tabVendite ORDER BY idVendita",
          "SELECT COUNT(*) FROM tabVendite WHERE Importo > 100.10",
          "SELECT id, Codice, Descrizione FROM tabProvince"
          " ORDER BY id",
          "SELECT idMessaggio, testoSMS, Oggetto, DataCreaz, isAttivo FROM TMK_Messaggi ORDER BY idMessaggio",
          "SELECT idRicorrenza, IdCliente, DataRicorrenza FROM tabRIC_RicorrenzeClienti ORDER BY IdCliente,"
          " idRicorrenza"}) {
        EXPECT_EQ(database.run(sql).rows, embedded.run(sql).rows) << sql;
    }
    EXPECT_THROW(createDemo(m_connectionString, 1), EngineError);
    EXPECT_EQ(numberOf(*m_engine, "SELECT COUNT(*) FROM tabClienti"), 700);
    // A setting that is added without its id gets one.
    execute("INSERT INTO tabImpostazioni (Descrizione, Valore) VALUES ('X', 'y')");
    EXPECT_EQ(numberOf(*m_engine, "SELECT idImpostazione FROM tabImpostazioni WHERE Descrizione = 'x'"), 3);
}

TEST_F(StandInTest, SaysWhyItCannotSignIn)
{
    const std::string good = m_server->connectionString();
    const auto told = [](std::string text, const std::string& from, const std::string& to) {
        text.replace(text.find(from), from.size(), to);
        try {
            OdbcEngine engine(text);
        } catch (const EngineError& error) {
            return std::string(error.what());
        }
        return std::string();
    };
    EXPECT_NE(told(good, "UID=sa", "UID=nessuno").find("Login failed for user 'nessuno'"), std::string::npos);
    EXPECT_NE(told(good, "PWD={", "PWD={x").find("Login failed"), std::string::npos);
    EXPECT_NE(told(good, "DATABASE=zul", "DATABASE=manca").find("'manca'"), std::string::npos);
    EXPECT_NE(told(good, "PORT=" + std::to_string(m_server->port()), "PORT=1"), "");
}

TEST_F(StandInTest, ManagesWithoutCatalogueAndOutputClause)
{
    m_options.hasCatalogue = false;
    m_options.hasOutput = false;
    start();
    execute("CREATE TABLE tabProva (id int NOT NULL PRIMARY KEY, testo nvarchar(20))");
    EXPECT_TRUE(m_engine->hasTable("TABPROVA"));
    EXPECT_TRUE(m_engine->hasTable("dbo.tabProva"));
    EXPECT_FALSE(m_engine->hasTable("tab_rova"));
    EXPECT_EQ(m_engine->rowIdentity("[tabProva]").keyColumns, std::vector<std::string>{"id"});
    EXPECT_TRUE(m_engine->rowIdentity("tabCheManca").keyColumns.empty());
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 1);
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 2);
    m_engine->begin();
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 3);
    m_engine->rollback();
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 3);
}

TEST_F(StandInTest, DoesNotTakeACutConnectionForTheEndOfTheRows)
{
    fillTable(5000);
    for (const int rows : {0, 1, 3, 4, 5, 999, 4321}) {
        start();
        m_server->faults().arm({"SELECT a, b", 1, rows});
        int read = 0;
        EXPECT_EQ(codeOf([&] {
                      const auto stream = m_engine->query("SELECT a, b FROM t", Language::Native);
                      while (stream->next()) {
                          ++read;
                      }
                  }),
                  ErrorCode::ConnectionLost)
            << rows;
        EXPECT_LE(read, rows);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(codeOf([&] { execute("INSERT INTO t (a) VALUES (0)"); }), ErrorCode::ConnectionLost);
        }
        EXPECT_EQ(codeOf([&] { m_engine->begin(); }), ErrorCode::ConnectionLost);
        EXPECT_FALSE(m_engine->inTransaction());
    }
}

TEST_F(StandInTest, UndoesTheTransactionOfACutConnection)
{
    fillTable(10);
    // In the statement, in its answer's place, and at the commit itself.
    for (const char* where : {"VALUES (@P1)", "DELETE", "COMMIT TRANSACTION"}) {
        start();
        m_server->faults().arm({where, 1, std::nullopt});
        m_engine->begin();
        execute("UPDATE t SET b = 'x'");
        EXPECT_EQ(codeOf([&] {
                      m_engine->execute("INSERT INTO t (a) VALUES (?)", Language::Native,
                                        std::vector<Value>{std::int64_t{11}});
                      execute("DELETE FROM t WHERE a = 1");
                      m_engine->commit();
                  }),
                  ErrorCode::ConnectionLost)
            << where;
        if (m_engine->inTransaction()) {
            EXPECT_NO_THROW(m_engine->rollback());
        }
        EXPECT_FALSE(m_engine->inTransaction());
        EXPECT_EQ(later("SELECT COUNT(*) FROM t WHERE b <> 'x'"), 10) << where;
    }
}

TEST_F(StandInTest, LeavesNothingOfADemonstrationThatBrokeOff)
{
    for (const char* where : {"CREATE TABLE tabVendite", "INSERT INTO tabClienti",
                              "CREATE INDEX IX_TMK_Chiamate_idCampagna", "COMMIT TRANSACTION"}) {
        start();
        m_server->faults().arm({where, 1, std::nullopt});
        EXPECT_EQ(codeOf([&] { createDemo(m_server->connectionString(), 1200); }), ErrorCode::ConnectionLost)
            << where;
        m_server->cutAll();
        m_engine = std::make_unique<OdbcEngine>(m_server->connectionString());
        for (const TableDefinition& table : allTables()) {
            EXPECT_FALSE(m_engine->hasTable(table.name)) << where << ' ' << table.name;
        }
    }
    // Behind the transaction: the customers stand, and what is wrong is told.
    m_server->faults().arm({"CREATE FUNCTION", 1, std::nullopt});
    EXPECT_EQ(codeOf([&] { createDemo(m_server->connectionString(), 10); }), ErrorCode::ConnectionLost);
    EXPECT_EQ(later("SELECT COUNT(*) FROM tabClienti"), 10);
}

TEST_F(StandInTest, DoesNotWaitWithoutEndForAServerThatIsSilent)
{
    fillTable(100);
    // In the answer's place, and in the middle of its rows.
    for (const std::optional<int> rows : {std::optional<int>(), std::optional<int>(50)}) {
        start();
        m_engine = std::make_unique<OdbcEngine>(m_server->connectionString(), std::chrono::seconds(1));
        m_server->faults().arm({"SELECT a, b", 1, rows, true});
        EXPECT_EQ(codeOf([&] {
                      const auto stream = m_engine->query("SELECT a, b FROM t", Language::Native);
                      while (stream->next()) {
                      }
                  }),
                  ErrorCode::ConnectionLost);
        EXPECT_EQ(codeOf([&] { execute("DELETE FROM t"); }), ErrorCode::ConnectionLost);
    }
    EXPECT_EQ(later("SELECT COUNT(*) FROM t"), 100);
}

TEST_F(StandInTest, IsNotHeldUpByAServerThatIsGoneForGood)
{
    fillTable(10);
    const auto stream = m_engine->query("SELECT a, b FROM t", Language::Native);
    m_server.reset();
    EXPECT_EQ(codeOf([&] { execute("DELETE FROM t"); }), ErrorCode::ConnectionLost);
    EXPECT_EQ(codeOf([&] { m_engine->nextId("t", "a"); }), ErrorCode::ConnectionLost);
    EXPECT_EQ(codeOf([&] { m_engine->hasTable("t"); }), ErrorCode::ConnectionLost);
    EXPECT_EQ(codeOf([&] { m_engine->rowIdentity("t"); }), ErrorCode::ConnectionLost);
}

TEST_F(StandInTest, SaysThatSomebodyElseHoldsTheDatabaseForTooLong)
{
    execute("CREATE TABLE tabProva (id int NOT NULL PRIMARY KEY)");
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 1);
    OdbcEngine other(m_server->connectionString());
    other.begin();
    EXPECT_EQ(other.nextId("tabProva", "id"), 2);
    execute("SET LOCK_TIMEOUT 100");
    EXPECT_EQ(codeOf([&] { m_engine->nextId("tabProva", "id"); }), ErrorCode::Busy);
    other.commit();
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 3);
}
