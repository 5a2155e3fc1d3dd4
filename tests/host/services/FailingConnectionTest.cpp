#include "host/services/FailingConnection.h"

#include "automation/Bstr.h"
#include "automation/ErrorInfo.h"
#include "automation/Variant.h"
#include "host/session/HostDatabase.h"
#include "tests/support/TemporaryFolder.h"

#include <servprov.h>

#include <gtest/gtest.h>

using namespace zul;
using namespace zul::host;

namespace {

class FailingConnectionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_options.database = m_folder.file("x.db");
        createDemo(m_options.database, 5);
    }

    /// A database whose nth operation fails.
    void open(long at, FailureKind kind)
    {
        m_options.failure = FailurePlan{at, kind};
        m_database = std::make_unique<HostDatabase>(m_options);
        m_connection.reset();
    }

    /// The connection: operation 1.
    HRESULT connect() { return m_database->connection()->get_Connection(m_connection.put()); }

    HRESULT openRows(ComPtr<IRecordset>& rows) const
    {
        return m_connection->OpenRecordset(Bstr(u"SELECT IdCliente FROM tabClienti ORDER BY IdCliente").get(),
                                           CursorStatic, LockReadOnly, rows.put());
    }

    TemporaryFolder m_folder;
    HostDatabaseOptions m_options;
    std::unique_ptr<HostDatabase> m_database;
    ComPtr<IConnection> m_connection;
};

} // namespace

TEST(FailurePlanText, IsANumberAndAKind)
{
    EXPECT_EQ(parseFailurePlan("0")->at, 0);
    EXPECT_EQ(parseFailurePlan("17")->kind, FailureKind::Error);
    EXPECT_EQ(parseFailurePlan("17:silent")->kind, FailureKind::Silent);
    EXPECT_EQ(parseFailurePlan("17:type")->kind, FailureKind::Type);
    EXPECT_EQ(parseFailurePlan("17:lost")->kind, FailureKind::Lost);
    EXPECT_EQ(parseFailurePlan("17:end")->kind, FailureKind::End);
    EXPECT_EQ(parseFailurePlan("17:kill")->kind, FailureKind::Kill);
    for (const char* text : {"", "x", "-1", "1:", "1:other", "1 ", ":lost", "99999999999999999999"}) {
        EXPECT_FALSE(parseFailurePlan(text)) << text;
    }
}

TEST_F(FailingConnectionTest, CountsWhatIsAskedAndWhatIsOpen)
{
    open(0, FailureKind::Error);
    ASSERT_EQ(connect(), S_OK);
    ComPtr<IRecordset> rows;
    ASSERT_EQ(openRows(rows), S_OK);
    EXPECT_EQ(m_database->failureCounts().operations, 2);
    EXPECT_EQ(m_database->failureCounts().openRowSets, 1);
    ASSERT_EQ(m_connection->BeginTrans(), S_OK);
    EXPECT_EQ(m_database->failureCounts().openTransactions, 1);
    ASSERT_EQ(m_connection->RollbackTrans(), S_OK);
    EXPECT_EQ(m_database->failureCounts().openTransactions, 0);
    ASSERT_EQ(rows->Close(), S_OK);
    EXPECT_EQ(rows->Close(), S_OK);
    EXPECT_EQ(m_database->failureCounts().openRowSets, 0);
    ASSERT_EQ(openRows(rows), S_OK);
    rows.reset();
    EXPECT_EQ(m_database->failureCounts().openRowSets, 0) << "a release closes too";
}

TEST_F(FailingConnectionTest, FailsOnceWithADescriptionOrWithout)
{
    LONG affected = 0;
    const Bstr sql(u"UPDATE tabClienti SET email = email");
    open(2, FailureKind::Error);
    ASSERT_EQ(connect(), S_OK);
    EXPECT_EQ(m_connection->Execute(sql.get(), &affected), E_FAIL);
    EXPECT_EQ(takeErrorDetails(E_FAIL).description, u"guasto di prova");
    EXPECT_EQ(m_connection->Execute(sql.get(), &affected), S_OK);
    EXPECT_EQ(affected, 5);
    open(2, FailureKind::Silent);
    ASSERT_EQ(connect(), S_OK);
    EXPECT_TRUE(FAILED(m_connection->Execute(sql.get(), &affected)));
    EXPECT_NE(takeErrorDetails(E_FAIL).description, u"guasto di prova");
}

TEST_F(FailingConnectionTest, StaysLost)
{
    open(2, FailureKind::Lost);
    ASSERT_EQ(connect(), S_OK);
    ComPtr<IRecordset> rows;
    EXPECT_EQ(openRows(rows), E_FAIL);
    EXPECT_EQ(openRows(rows), E_FAIL);
    EXPECT_EQ(m_connection->BeginTrans(), E_FAIL);
    EXPECT_EQ(m_database->run("SELECT COUNT(*) FROM tabClienti").rows.at(0).at(0), "5")
        << "the host's own way is not touched";
}

TEST_F(FailingConnectionTest, AnswersWithWhatNobodyExpects)
{
    open(2, FailureKind::Type);
    ASSERT_EQ(connect(), S_OK);
    ComPtr<IRecordset> rows;
    EXPECT_EQ(openRows(rows), S_OK);
    EXPECT_FALSE(rows);
    ASSERT_EQ(openRows(rows), S_OK);
    open(3, FailureKind::Type);
    ASSERT_EQ(connect(), S_OK);
    ASSERT_EQ(openRows(rows), S_OK);
    Variant value;
    EXPECT_EQ(rows->get_Value(Variant::fromLong(0), value.put()), S_OK);
    EXPECT_EQ(value.vt, VT_UNKNOWN);
}

TEST_F(FailingConnectionTest, EndsARowSet)
{
    open(3, FailureKind::End);
    ASSERT_EQ(connect(), S_OK);
    ComPtr<IRecordset> rows;
    ASSERT_EQ(openRows(rows), S_OK);
    ASSERT_EQ(rows->MoveNext(), S_OK);
    VARIANT_BOOL eof = VARIANT_FALSE;
    ASSERT_EQ(rows->get_Eof(&eof), S_OK);
    EXPECT_EQ(eof, VARIANT_TRUE);
}

TEST_F(FailingConnectionTest, EndsTheProcessBeforeTheOperation)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const Bstr sql(u"DELETE FROM tabClienti");
    const auto killed = [&] {
        open(2, FailureKind::Kill);
        LONG affected = 0;
        if (SUCCEEDED(connect())) {
            m_connection->Execute(sql.get(), &affected);
        }
    };
    EXPECT_EXIT(killed(), ::testing::ExitedWithCode(killedCode), "");
    open(0, FailureKind::Error);
    EXPECT_EQ(m_database->run("SELECT COUNT(*) FROM tabClienti").rows.at(0).at(0), "5");
}

TEST_F(FailingConnectionTest, LetsServicesFailToo)
{
    open(3, FailureKind::Error);
    ASSERT_EQ(connect(), S_OK);
    ComPtr<IIdGenerator> ids;
    const auto provider = queryFor<IServiceProvider>(m_database->connection());
    ASSERT_EQ(provider->QueryService(iidOf<IIdGenerator>(), iidOf<IIdGenerator>(), ids.putVoid()), S_OK);
    LONG id = 0;
    const auto next = [&] {
        return ids->NextId(Bstr(u"TMK_MailingList").get(), Bstr(u"idMailing").get(), m_database->connection(),
                           &id);
    };
    EXPECT_EQ(next(), E_FAIL);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(next(), S_OK);
    EXPECT_EQ(id, 1);
}
