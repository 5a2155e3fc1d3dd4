#include "host/session/HostDatabase.h"

#include "base/DateText.h"
#include "host/database/Cell.h"
#include "host/database/Recordset.h"
#include "host/database/odbc/OdbcEngine.h"
#include "host/database/sqlite/SqliteEngine.h"
#include "host/demo/DemoData.h"
#include "host/demo/DemoFile.h"
#include "host/services/SqlConnection.h"

#include <array>
#include <charconv>

namespace zul::host {

namespace {

bool isConnectionString(const std::string& database)
{
    return database.find('=') != std::string::npos;
}

std::unique_ptr<Engine> openEngine(const std::string& database)
{
    if (database.empty()) {
        throw EngineError(ErrorCode::InvalidArgument, "no database was named");
    }
    if (isConnectionString(database)) {
        return std::make_unique<OdbcEngine>(database);
    }
    return std::make_unique<SqliteEngine>(database, SqliteDatabase::Mode::OpenExisting);
}

// A cell as the command "sql" prints it; nothing for NULL.
std::optional<std::string> printed(const ZulCell& cell)
{
    switch (cell.Kind) {
    case CellNull:
        return std::nullopt;
    case CellInteger:
    case CellBoolean:
        return std::to_string(cell.Integer);
    case CellDate:
        return formatDate(cell.Real);
    case CellReal: {
        if (cell.Text != nullptr) {
            break;
        }
        std::array<char, 64> buffer{};
        return std::string(buffer.data(),
                           std::to_chars(buffer.data(), buffer.data() + buffer.size(), cell.Real).ptr);
    }
    default:
        break;
    }
    return std::string(cellText(cell));
}

} // namespace

HostDatabase::HostDatabase(const HostDatabaseOptions& options)
    : m_session(std::make_shared<Session>())
    , m_name(isConnectionString(options.database) ? "the database" : options.database)
{
    m_session->engine = openEngine(options.database);
    m_session->userName = options.userName;
    m_session->appUrl = options.appUrl;
    m_session->appPatience = options.appPatience;
    m_session->programStarted = options.programStarted;
    m_session->startsPrograms = options.startsPrograms;
    if (!options.journalPath.empty() && !m_session->journal.open(options.journalPath)) {
        throw EngineError(ErrorCode::Unspecified, options.journalPath + ": the journal cannot be written");
    }
    m_connection = makeCom<SqlConnection>(m_session);
    if (options.failure) {
        m_connection = makeFailingConnection(m_connection.get(), *options.failure, m_failureCounts);
    }
}

void HostDatabase::close() const
{
    m_session->engine->close();
}

void HostDatabase::requireTables() const
{
    if (!m_session->engine->hasTable("tabClienti")) {
        throw EngineError(ErrorCode::NoTable,
                          m_name +
                              ": the table tabClienti is missing, and the others with it. Make the"
                              " tables with --create-demo N (0: without customers) and the same --database,"
                              " or name another database.");
    }
}

ComPtr<IRecordset> HostDatabase::openRows(std::string_view source, CursorKind cursor) const
{
    return Recordset::open(m_session, source, cursor, LockReadOnly, Journaled::No);
}

SqlRows HostDatabase::run(std::string_view sql) const
{
    SqlRows result;
    const Outcome outcome = m_session->engine->run(sql, Language::Transact);
    if (!outcome.rows) {
        result.affected = outcome.affected;
        return result;
    }
    const auto& rows = outcome.rows;
    for (const ColumnInfo& column : rows->columns()) {
        result.columns.push_back(column.name);
    }
    while (rows->next()) {
        auto& row = result.rows.emplace_back();
        for (std::size_t i = 0; i < result.columns.size(); ++i) {
            row.push_back(printed(rows->cells()[i]));
        }
    }
    return result;
}

void createDemo(const std::string& database, int customers)
{
    if (database.empty()) {
        throw EngineError(ErrorCode::InvalidArgument, "no database was named");
    }
    if (customers < 0) {
        throw EngineError(ErrorCode::InvalidArgument, "the number of customers is negative");
    }
    if (isConnectionString(database)) {
        fillDemo(*openEngine(database), customers);
    } else {
        createDemoFile(database, customers);
    }
}

} // namespace zul::host
