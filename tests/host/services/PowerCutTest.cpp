// What an operator was told is prepared survives a power cut.
#include "tests/host/database/sqlite/PowerCutVfs.h"
#include "tests/support/TemporaryFolder.h"

#include "automation/Bstr.h"
#include "automation/ErrorInfo.h"
#include "host/database/Cell.h"
#include "host/session/HostDatabase.h"

#include <Zul_Host.h>

#include <servprov.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include <gtest/gtest.h>

using namespace zul;
using namespace zul::host;

namespace {

/// Prepares messages as a run does, an SMS and an e-mail in turn, and keeps the ids of those that it was told of.
class PreparationRun
{
public:
    explicit PreparationRun(const std::string& database)
    {
        HostDatabaseOptions options;
        options.database = database;
        m_database = std::make_unique<HostDatabase>(options);
        throwIfFailed(m_database->connection()->get_Connection(m_connection.put()));
        const auto provider = queryFor<IServiceProvider>(m_database->connection());
        throwIfFailed(
            provider->QueryService(iidOf<IMessageRecord>(), iidOf<IMessageRecord>(), m_record.putVoid()));
        throwIfFailed(provider->QueryService(iidOf<IIdGenerator>(), iidOf<IIdGenerator>(), m_ids.putVoid()));
    }

    /// False when the database failed.
    bool prepare(int messages)
    {
        for (int i = 0; i < messages; ++i) {
            if (i % 2 == 0 ? !saveRecord(i) : !insertRow()) {
                return false;
            }
        }
        return true;
    }

    const std::set<std::string>& told() const { return m_told; }

private:
    bool saveRecord(int number)
    {
        VARIANT_BOOL stored = VARIANT_FALSE;
        const std::string text = "sms " + std::to_string(number);
        m_record->put_Testo(Bstr::fromUtf8(text).get());
        if (FAILED(m_record->Save(m_database->connection(), &stored)) || stored == VARIANT_FALSE) {
            return false;
        }
        m_told.insert(text);
        return true;
    }

    bool insertRow()
    {
        LONG id = 0;
        LONG affected = 0;
        if (FAILED(m_ids->NextId(Bstr(u"TMK_MailingList").get(), Bstr(u"idMailing").get(),
                                 m_database->connection(), &id))) {
            return false;
        }
        const std::string text = "mail " + std::to_string(id);
        const std::string sql = "INSERT INTO TMK_MailingList (idMailing, Testo) VALUES (" +
                                std::to_string(id) + ", '" + text + "')";
        if (FAILED(m_connection->Execute(Bstr::fromUtf8(sql).get(), &affected))) {
            return false;
        }
        m_told.insert(text);
        return true;
    }

    std::unique_ptr<HostDatabase> m_database;
    ComPtr<IConnection> m_connection;
    ComPtr<IMessageRecord> m_record;
    ComPtr<IIdGenerator> m_ids;
    std::set<std::string> m_told;
};

class PowerCutTest : public ::testing::Test
{
protected:
    void SetUp() override { createDemo(m_folder.file("made.db"), 0); }

    std::string freshCopy() const
    {
        std::string path = m_folder.file("x.db");
        for (const char* suffix : {"", "-wal", "-shm"}) {
            std::filesystem::remove(path + suffix);
        }
        std::filesystem::copy_file(m_folder.file("made.db"), path);
        return path;
    }

    static std::set<std::string> found(const HostDatabase& database, const char* sql)
    {
        std::set<std::string> texts;
        for (const auto& row : database.run(sql).rows) {
            texts.insert(row.at(0).value_or("NULL"));
        }
        return texts;
    }

    TemporaryFolder m_folder;
};

constexpr int messages = 60;

} // namespace

TEST_F(PowerCutTest, LosesNothingThatWasToldOf)
{
    std::uint64_t operations = 0;
    {
        const PowerCutVfs disk;
        PreparationRun run(freshCopy());
        ASSERT_TRUE(run.prepare(messages));
        operations = disk.operations();
    }
    ASSERT_GT(operations, 2U * messages);
    int told = 0;
    for (std::uint32_t trial = 0; trial < 60; ++trial) {
        SCOPED_TRACE(trial);
        const std::string path = freshCopy();
        std::set<std::string> promised;
        {
            PowerCutVfs disk;
            {
                PreparationRun run(path);
                disk.cutAt(1 + trial * operations / 60);
                run.prepare(messages);
                promised = run.told();
            }
            // All that was not synced is lost, or some of it, in no order.
            disk.lose(trial % 3);
        }
        // It stood in the memory of the programs only.
        std::filesystem::remove(path + "-shm");
        told += static_cast<int>(promised.size());
        HostDatabaseOptions options;
        options.database = path;
        const HostDatabase database(options);
        // One message more may be there: it was written, and the cut came before the operator was told.
        const std::set<std::string> there = found(database, "SELECT Testo FROM TMK_MailingList");
        EXPECT_TRUE(std::includes(there.begin(), there.end(), promised.begin(), promised.end()));
        EXPECT_LE(there.size(), promised.size() + 1);
        const auto check = database.engine().query("PRAGMA integrity_check", Language::Native);
        ASSERT_TRUE(check->next());
        EXPECT_EQ(cellText(check->cells()[0]), "ok");
        // A number that somebody kept is not given again.
        const std::int64_t next = database.engine().nextId("TMK_MailingList", "idMailing");
        EXPECT_EQ(
            database
                .run("SELECT COUNT(*) AS n FROM TMK_MailingList WHERE idMailing >= " + std::to_string(next))
                .rows.at(0)
                .at(0),
            "0");
    }
    EXPECT_GT(told, 60);
}
