#pragma once
// The host's database, opened: what the host program and its tests hold on to.
#include "automation/ComPtr.h"
#include "host/database/Session.h"
#include "host/services/FailingConnection.h"

#include <Zul_SQL.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zul::host {

struct HostDatabaseOptions
{
    /// An SQLite file, which must exist, or an ODBC connection string (it contains "=").
    std::string database;
    /// What the connection object reports.
    std::string userName = "demo";
    /// Where the component's operations are written down; empty: nowhere.
    std::string journalPath;
    /// Where push notifications are posted; empty: they go to the table appOutbox.
    std::string appUrl;
    AppPatience appPatience;
    /// Makes the connection object one of FailingConnection.h.
    std::optional<FailurePlan> failure;
    /// Is told of each program that the component starts, before it is started.
    ProgramStarted programStarted;
    /// False: the program is only told, not started.
    bool startsPrograms = true;
};

/// The rows of a statement as texts.
struct SqlRows
{
    std::vector<std::string> columns;
    std::vector<std::vector<std::optional<std::string>>> rows; ///< nothing: NULL
    std::int64_t affected = 0;                                 ///< of a statement without rows
};

class HostDatabase
{
public:
    /// Opens the database. Throws EngineError with a text for the user.
    explicit HostDatabase(const HostDatabaseOptions& options);

    /// Closes the database, also under a component that keeps the connection object for as long as it is loaded;
    /// without it the connection lives as long as somebody holds on to it.
    void close() const;

    /// Throws EngineError, with a text that tells the user what to do, when the database is not one that the component
    /// can work with: it lacks the tables.
    void requireTables() const;

    /// The connection object to hand to the component; the same one every time.
    _SqlConnection* connection() const { return m_connection.get(); }

    /// Opens a row set, or runs a statement, for the host itself: it does not show in the journal. Transact-SQL.
    /// Throw EngineError.
    ComPtr<IRecordset> openRows(std::string_view source, CursorKind cursor = CursorStatic) const;
    SqlRows run(std::string_view sql) const;

    /// What the component asked; with HostDatabaseOptions::failure alone.
    const FailureCounts& failureCounts() const { return *m_failureCounts; }

    /// False when operations are missing from the journal.
    bool isJournalWhole() const { return m_session->journal.isWhole(); }

    Engine& engine() const { return *m_session->engine; }

private:
    SessionPtr m_session;
    std::string m_name; // for the user: the file's path; a connection string may hold a password
    ComPtr<_SqlConnection> m_connection;
    std::shared_ptr<FailureCounts> m_failureCounts = std::make_shared<FailureCounts>();
};

/// Makes the demonstration database: an SQLite file, or the tables in the database of an ODBC connection string,
/// which must have none of them. Throws EngineError with a text for the user.
void createDemo(const std::string& database, int customers);

} // namespace zul::host
