// Two hosts without an id generator, at work on one database at the same time.
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/session/HostDatabase.h"
#include "messages/CreateMAIL.h"
#include "messages/salvaMessaggio.h"
#include "tests/messages/FakeRecipients.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

/// A connection object that gives out none of the host's other objects.
class BareConnection final : public ComObject<Dispatching<_SqlConnection>>
{
public:
    explicit BareConnection(_SqlConnection* whole)
        : m_whole(whole)
    {}
    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        return m_whole->get_Connection(value);
    }
    /// Asked for between the id and the row: a slow answer gives the other user time to step in between.
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override
    {
        constexpr useconds_t slow = 2'000;
        ::usleep(slow);
        return m_whole->get_UserName(value);
    }
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR field, BSTR table, BSTR condition, VARIANT* value) override
    {
        return m_whole->LookupValue(field, table, condition, value);
    }

private:
    const DispTable<_SqlConnection>& dispTable() const override
    {
        using namespace dispatch;
        static const DispTable<_SqlConnection> table{
            propget("Connection", 1, &_SqlConnection::get_Connection),
            propget("UserName", 2, &_SqlConnection::get_UserName),
            method("LookupValue", 3, &_SqlConnection::LookupValue, {"field", "table", "condition"}),
        };
        return table;
    }

    ComPtr<_SqlConnection> m_whole;
};

constexpr int Templates = 40;
constexpr int Mails = 10;

/// What one user stores. @return whether all of it was stored
bool work(const std::string& file)
{
    host::HostDatabaseOptions options;
    options.database = file;
    const host::HostDatabase database(options);
    const hostlib::SqlConnection connection{makeCom<BareConnection>(database.connection())};
    for (int i = 0; i < Templates; ++i) {
        if (salvaMessaggio(connection, u"testo"_s) < 1) {
            return false;
        }
    }
    for (int i = 0; i < Mails; ++i) {
        FakeRecipients rows;
        FakeOutcomes outcomes;
        rows.rows = {{u"1"_s, u"R"_s, QString(), u"a@b.it"_s}};
        try {
            createMail(connection, rows, outcomes, 5, 7, true);
        } catch (const Error& error) {
            std::fprintf(stderr, "%s\n", error.what());
            return false;
        }
    }
    return true;
}

std::string countOf(const host::HostDatabase& database, const std::string& what, const std::string& table)
{
    return database.run("SELECT COUNT(" + what + ") FROM " + table).rows.at(0).at(0).value_or("NULL");
}

TEST(TwoUsersTest, WithoutAGeneratorTwoUsersNeverGetOneId)
{
    const host::TemporaryFolder folder;
    const std::string file = folder.file("due.db");
    host::createDemo(file, 1);
    host::HostDatabaseOptions options;
    options.database = file;
    {
        const host::HostDatabase database(options);
        database.run("UPDATE tabClienti SET ConsensoEmail = 1, email = 'a@b.it'");
        database.run("DELETE FROM TMK_Messaggi");
        database.close();
    }

    std::vector<pid_t> users;
    for (int user = 0; user < 2; ++user) {
        const pid_t child = fork();
        ASSERT_NE(child, -1);
        if (child == 0) {
            _exit(work(file) ? 0 : 1);
        }
        users.push_back(child);
    }
    for (const pid_t user : users) {
        int status = -1;
        ASSERT_EQ(waitpid(user, &status, 0), user);
        EXPECT_EQ(status, 0) << "every row of a user is stored";
    }

    const host::HostDatabase database(options);
    EXPECT_EQ(countOf(database, "DISTINCT idMessaggio", "TMK_Messaggi"), std::to_string(2 * Templates));
    EXPECT_EQ(countOf(database, "DISTINCT idCampagna", "TMK_Campagne"), std::to_string(2 * Mails));
    EXPECT_EQ(countOf(database, "DISTINCT idMailing", "TMK_MailingList"), std::to_string(2 * Mails));
    EXPECT_EQ(countOf(database, "*", "TMK_MailingList"), std::to_string(2 * Mails));
}

} // namespace
} // namespace zul
