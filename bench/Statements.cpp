#include "bench/LoadedGrid.h"
#include "bench/Runs.h"
#include "controls/notices/OutcomeList.h"
#include "host/database/sqlite/SqliteEngine.h"
#include "mainwindow/FormAdapters.h"
#include "messages/CreateMAIL.h"
#include "messages/CreateSMS.h"

#include <sqlite3.h>

#include <fstream>
#include <stdexcept>
#include <vector>

namespace zul::bench {

namespace {

constexpr qint32 smsTemplate = 1;
constexpr qint32 mailTemplate = 6;

/// Takes down every statement that the engine is about to run.
class Listener
{
public:
    explicit Listener(sqlite3* connection)
        : m_connection(connection)
    {
        sqlite3_trace_v2(connection, SQLITE_TRACE_STMT, &Listener::hear, this);
    }
    ~Listener() { sqlite3_trace_v2(m_connection, 0, nullptr, nullptr); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// The first statement that begins so.
    const std::string& heard(const std::string& beginning) const
    {
        for (const std::string& statement : m_heard) {
            if (statement.compare(0, beginning.size(), beginning) == 0) {
                return statement;
            }
        }
        throw std::runtime_error("no statement begins with \"" + beginning + '"');
    }

private:
    static int hear(unsigned, void* self, void* statement, void*)
    {
        static_cast<Listener*>(self)->m_heard.emplace_back(
            sqlite3_sql(static_cast<sqlite3_stmt*>(statement)));
        return 0;
    }

    sqlite3* m_connection;
    std::vector<std::string> m_heard;
};

} // namespace

void writeStatements(const std::string& database, const std::string& file)
{
    LoadedGrid loaded(database);
    auto& engine = dynamic_cast<host::SqliteEngine&>(loaded.database().engine());
    std::ofstream out(file);
    const auto write = [&out](const char* name, const std::string& statement) {
        if (statement.find('\n') != std::string::npos) {
            throw std::runtime_error("a statement has several lines");
        }
        out << name << '\t' << statement << '\n';
    };
    {
        const Listener listener(engine.database().handle());
        loaded.search();
        write("delete", listener.heard("DELETE "));
        write("insert", listener.heard("INSERT INTO [tabSpoolReportStat2]"));
        write("select", listener.heard("SELECT [tabClienti]"));
    }
    loaded.grid().setAllChecked(true);
    GridRecipients recipients(loaded.grid());
    OutcomeList list;
    ListOutcomes outcomes(list);
    {
        const Listener listener(engine.database().handle());
        createMail(loaded.connection(), recipients, outcomes, mailTemplate, 1, false);
        write("customer", listener.heard("SELECT RagioneSociale1"));
        write("nextId", listener.heard("INSERT INTO tabContatori(Tabella, Chiave, Ultimo) VALUES (?, ?, "
                                       "(SELECT COALESCE(MAX([idMailing])"));
        write("mail", listener.heard("INSERT INTO [TMK_MailingList]"));
        write("mailTemplate", std::to_string(mailTemplate));
    }
    {
        const Listener listener(engine.database().handle());
        createSms(loaded.connection(), recipients, outcomes, smsTemplate, false);
        write("template", listener.heard("SELECT [TestoSMS]"));
        write("sms", listener.heard("INSERT INTO TMK_MailingList"));
    }
    if (!out.flush()) {
        throw std::runtime_error(file + " cannot be written");
    }
}

} // namespace zul::bench
