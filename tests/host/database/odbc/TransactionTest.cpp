// What transactions and ids cost on a server of Transact-SQL, and what becomes of them when something goes wrong.
#include "tests/host/database/odbc/StandInTest.h"

#include "automation/Bstr.h"
#include "automation/ErrorInfo.h"
#include "automation/Variant.h"
#include "host/database/Schema.h"
#include "host/database/sqlite/SqliteEngine.h"
#include "host/session/HostDatabase.h"

#include <Zul_Host.h>

#include <servprov.h>

#include <array>
#include <chrono>

using namespace zul;
using namespace zul::host;

namespace {

class TransactionTest : public StandInTest
{
protected:
    void SetUp() override
    {
        StandInTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        execute("CREATE TABLE tabProva (id int NOT NULL PRIMARY KEY, testo nvarchar(10))");
    }

    int requestsOf(const std::function<void()>& work) const
    {
        const int before = m_server->faults().requests();
        work();
        return m_server->faults().requests() - before;
    }

    std::int64_t add(const std::string& text)
    {
        static constexpr std::array<std::string_view, 1> columns{"testo"};
        const std::array<Value, 1> values{text};
        std::int64_t id = 0;
        m_engine->addRow({"tabProva", "id", columns, values}, id);
        return id;
    }

    std::int64_t rows() { return numberOf(*m_engine, "SELECT COUNT(*) FROM tabProva"); }
};

/// The services and the connection as the component uses them for one customer.
class PreparedRowTest : public StandInTest
{
protected:
    void SetUp() override
    {
        StandInTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        createDemo(m_server->connectionString(), 3);
        HostDatabaseOptions options;
        options.database = m_server->connectionString();
        m_database = std::make_unique<HostDatabase>(options);
        throwIfFailed(m_database->connection()->get_Connection(m_connection.put()));
        m_customer = service<ICustomer>();
        m_record = service<IMessageRecord>();
        m_connector = service<IAppConnector>();
        m_ids = service<IIdGenerator>();
        throwIfFailed(m_connector->Init(Bstr(u"slug").get(), Bstr(u"salt").get()));
        throwIfFailed(m_connection->OpenRecordset(Bstr(u"SELECT * FROM TMK_MailingList WHERE 1=2").get(),
                                                  CursorStatic, LockPessimistic, m_mails.put()));
    }

public:
    void sms()
    {
        throwIfFailed(m_customer->Init(1, m_database->connection()));
        saveRecord(6);
    }

    void push()
    {
        Bstr error;
        VARIANT_BOOL sent = VARIANT_FALSE;
        throwIfFailed(m_customer->Init(1, m_database->connection()));
        throwIfFailed(m_connector->SendToContact(Bstr(u"a@example.com").get(), 45000.5, Bstr(u"Ciao").get(),
                                                 error.put(), &sent));
        EXPECT_EQ(sent, VARIANT_TRUE) << error.toUtf8();
        saveRecord(8);
    }

    void mail()
    {
        LONG id = 0;
        throwIfFailed(m_customer->Init(1, m_database->connection()));
        throwIfFailed(m_ids->NextId(Bstr(u"TMK_MailingList").get(), Bstr(u"idMailing").get(),
                                    m_database->connection(), &id));
        throwIfFailed(m_mails->AddNew());
        throwIfFailed(m_mails->put_Value(Variant::fromText(u"idMailing"), Variant::fromLong(id)));
        throwIfFailed(
            m_mails->put_Value(Variant::fromText(u"Contatto"), Variant::fromText(u"a@example.com")));
        throwIfFailed(m_mails->Update());
    }

protected:
    template <typename Service>
    ComPtr<Service> service() const
    {
        ComPtr<Service> result;
        const auto provider = queryFor<IServiceProvider>(m_database->connection());
        throwIfFailed(provider->QueryService(iidOf<Service>(), iidOf<Service>(), result.putVoid()));
        return result;
    }

    void saveRecord(LONG kind)
    {
        VARIANT_BOOL stored = VARIANT_FALSE;
        m_record->put_IdTipoMessaggio(kind);
        m_record->put_Testo(Bstr(u"l'età € 😀").get());
        m_record->put_IDCliente(1);
        m_record->put_Flag1(VARIANT_TRUE);
        m_record->put_DataCreaz(45000.25);
        throwIfFailed(m_record->Save(m_database->connection(), &stored));
        EXPECT_EQ(stored, VARIANT_TRUE);
    }

    std::unique_ptr<HostDatabase> m_database;
    ComPtr<IConnection> m_connection;
    ComPtr<ICustomer> m_customer;
    ComPtr<IMessageRecord> m_record;
    ComPtr<IAppConnector> m_connector;
    ComPtr<IIdGenerator> m_ids;
    ComPtr<IRecordset> m_mails;
};

} // namespace

TEST_F(PreparedRowTest, TakesFewRequests)
{
    // The first of each kind learns what is there.
    sms();
    push();
    mail();
    const auto requestsOf = [&](void (PreparedRowTest::*prepare)()) {
        const int before = m_server->faults().requests();
        (this->*prepare)();
        return m_server->faults().requests() - before;
    };
    for (int round = 0; round < 3; ++round) {
        EXPECT_LE(requestsOf(&PreparedRowTest::sms), 5);
        EXPECT_LE(requestsOf(&PreparedRowTest::push), 6);
        EXPECT_LE(requestsOf(&PreparedRowTest::mail), 3);
    }
    EXPECT_EQ(
        m_database->run("SELECT COUNT(*), MAX(idMailing), COUNT(DISTINCT idMailing) FROM TMK_MailingList")
            .rows,
        (std::vector<std::vector<std::optional<std::string>>>{{"12", "12", "12"}}));
    EXPECT_EQ(m_database->run("SELECT COUNT(*), MAX(id) FROM appOutbox WHERE Email = 'a@example.com'").rows,
              (std::vector<std::vector<std::optional<std::string>>>{{"4", "4"}}));
    EXPECT_EQ(
        m_database->run("SELECT COUNT(*) FROM TMK_MailingList WHERE Testo = N'l''età € 😀' AND Flag1 = 1")
            .rows,
        (std::vector<std::vector<std::optional<std::string>>>{{"8"}}));
}

TEST_F(TransactionTest, CostsTwoRequests)
{
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(requestsOf([&] {
                      m_engine->begin();
                      m_engine->commit();
                  }),
                  2);
        EXPECT_EQ(requestsOf([&] {
                      m_engine->begin();
                      m_engine->rollback();
                  }),
                  2);
    }
}

TEST_F(TransactionTest, LearnsWithinATransactionToo)
{
    m_engine->nextId("tabProva", "id");
    m_engine = std::make_unique<OdbcEngine>(m_server->connectionString());
    m_engine->begin();
    m_engine->nextId("tabProva", "id");
    EXPECT_EQ(requestsOf([&] { m_engine->nextId("tabProva", "id"); }), 1);
    m_engine->rollback();
    EXPECT_EQ(requestsOf([&] { m_engine->nextId("tabProva", "id"); }), 1);
}

TEST_F(TransactionTest, ForgetsATableThatWasMadeInATransactionAndUndone)
{
    m_engine->begin();
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 1);
    m_engine->ensureTable(outboxTable());
    m_engine->rollback();
    EXPECT_FALSE(m_engine->hasTable("appOutbox"));
    m_engine->ensureTable(outboxTable());
    EXPECT_TRUE(m_engine->hasTable("appOutbox"));
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 1);
}

TEST_F(TransactionTest, MakesTheCountersAnewWhenSomebodyDroppedThem)
{
    EXPECT_EQ(add("uno"), 1);
    execute("DROP TABLE tabContatori");
    EXPECT_EQ(codeOf([&] { add("due"); }), ErrorCode::NoTable);
    EXPECT_EQ(add("tre"), 2);
    EXPECT_EQ(rows(), 2);
}

TEST_F(TransactionTest, DoesNotReportACommitThatTheServerAcknowledged)
{
    m_engine->begin();
    execute("INSERT INTO tabProva (id) VALUES (1)");
    m_server->faults().arm({"COMMIT", 1, std::nullopt, false, true});
    EXPECT_NO_THROW(m_engine->commit());
    EXPECT_FALSE(m_engine->inTransaction());
    EXPECT_EQ(codeOf([&] { execute("DELETE FROM tabProva"); }), ErrorCode::ConnectionLost);
    EXPECT_EQ(later("SELECT COUNT(*) FROM tabProva"), 1);
}

TEST_F(TransactionTest, GivesARowItsIdInOneRequestAndUndoesBothTogether)
{
    EXPECT_EQ(add("uno"), 1);
    EXPECT_EQ(requestsOf([&] { EXPECT_EQ(add("due"), 2); }), 1);
    // Rows that others put there count.
    execute("INSERT INTO tabProva (id, testo) VALUES (40, 'x')");
    EXPECT_EQ(add("tre"), 41);
    EXPECT_EQ(codeOf([&] { add("più di dieci"); }), ErrorCode::BadValue);
    EXPECT_EQ(numberOf(*m_engine, "SELECT @@TRANCOUNT AS n"), 0);
    EXPECT_EQ(add("quattro"), 42);
    // Within a transaction of the caller's the row goes with it.
    m_engine->begin();
    EXPECT_EQ(add("cinque"), 43);
    m_engine->rollback();
    EXPECT_EQ(add("sei"), 43);
    EXPECT_EQ(rows(), 6);
}

TEST_F(TransactionTest, GivesARowItsIdOnAServerThatDoesNotKnowTheShortWay)
{
    m_options.hasOutput = false;
    start();
    EXPECT_EQ(add("uno"), 1);
    EXPECT_EQ(add("due"), 2);
    EXPECT_EQ(codeOf([&] { add("più di dieci"); }), ErrorCode::BadValue);
    EXPECT_EQ(add("tre"), 3);
    EXPECT_FALSE(m_engine->inTransaction());
    EXPECT_EQ(rows(), 3);
}

TEST_F(TransactionTest, GoesOnWithTheShortWayAfterAnErrorThatSaysNothingAgainstIt)
{
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 1);
    EXPECT_EQ(codeOf([&] { m_engine->nextId("tabProva", "nonEsiste"); }), ErrorCode::Statement);
    EXPECT_EQ(codeOf([&] { m_engine->nextId("tabCheManca", "id"); }), ErrorCode::NoTable);
    EXPECT_EQ(m_engine->nextId("tabProva", "id"), 2);
    EXPECT_EQ(requestsOf([&] { EXPECT_EQ(m_engine->nextId("tabProva", "id"), 3); }), 1);
}

TEST_F(TransactionTest, RefusesToGoOnWhenTheServerHasEndedIt)
{
    for (const bool commits : {true, false}) {
        m_engine->begin();
        execute("INSERT INTO tabProva (id) VALUES (1)");
        m_server->faults().arm({"VALUES (2)", 1, std::nullopt, false, false, true});
        EXPECT_EQ(codeOf([&] { execute("INSERT INTO tabProva (id) VALUES (2)"); }), ErrorCode::Busy);
        EXPECT_TRUE(m_engine->inTransaction());
        // It would stand on its own now.
        EXPECT_EQ(codeOf([&] { execute("INSERT INTO tabProva (id) VALUES (3)"); }), ErrorCode::NoTransaction);
        EXPECT_EQ(codeOf([&] { m_engine->begin(); }), ErrorCode::TransactionOpen);
        if (commits) {
            EXPECT_EQ(codeOf([&] { m_engine->commit(); }), ErrorCode::NoTransaction);
        } else {
            EXPECT_NO_THROW(m_engine->rollback());
        }
        EXPECT_FALSE(m_engine->inTransaction());
        EXPECT_EQ(rows(), 0);
        execute("INSERT INTO tabProva (id) VALUES (4)");
        EXPECT_EQ(rows(), 1);
        execute("DELETE FROM tabProva");
    }
}

TEST_F(TransactionTest, GoesOnAfterARefusalThatLeavesItOpen)
{
    m_engine->begin();
    execute("INSERT INTO tabProva (id) VALUES (1)");
    EXPECT_EQ(codeOf([&] { execute("INSERT INTO tabProva (id) VALUES (1)"); }), ErrorCode::Integrity);
    execute("INSERT INTO tabProva (id) VALUES (2)");
    m_engine->commit();
    EXPECT_EQ(rows(), 2);
}

TEST_F(TransactionTest, GivesUpASilentServerInTheTimeThatIsSaid)
{
    m_engine = std::make_unique<OdbcEngine>(m_server->connectionString(), std::chrono::seconds(2));
    m_server->faults().arm({"SELECT COUNT", 1, std::nullopt, true});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(codeOf([&] { rows(); }), ErrorCode::ConnectionLost);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GT(waited, std::chrono::milliseconds(1500));
    EXPECT_LT(waited, std::chrono::milliseconds(3500));
}

TEST(SqliteTransaction, RefusesToGoOnWhenTheDatabaseHasEndedIt)
{
    const TemporaryFolder folder;
    SqliteEngine engine(folder.file("x.db"), SqliteDatabase::Mode::OpenOrCreate);
    engine.execute("CREATE TABLE t (a int)", Language::Native);
    engine.execute(
        "CREATE TRIGGER r BEFORE INSERT ON t WHEN NEW.a = 2 BEGIN SELECT RAISE(ROLLBACK, 'no'); END",
        Language::Native);
    engine.begin();
    engine.execute("INSERT INTO t VALUES (1)", Language::Transact);
    EXPECT_THROW(engine.execute("INSERT INTO t VALUES (2)", Language::Transact), EngineError);
    EXPECT_THROW(engine.execute("INSERT INTO t VALUES (3)", Language::Transact), EngineError);
    EXPECT_THROW(engine.commit(), EngineError);
    EXPECT_FALSE(engine.inTransaction());
    EXPECT_EQ(numberOf(engine, "SELECT COUNT(*) FROM t"), 0);
    engine.begin();
    EXPECT_THROW(engine.execute("INSERT INTO t VALUES (2)", Language::Transact), EngineError);
    EXPECT_NO_THROW(engine.rollback());
    engine.execute("INSERT INTO t VALUES (4)", Language::Transact);
    EXPECT_EQ(numberOf(engine, "SELECT COUNT(*) FROM t"), 1);
}
