#include "tests/host/database/Backends.h"

#include "tests/host/database/PostgresServer.h"
#include "tests/host/tds/StandIn.h"

#include "host/database/sqlite/SqliteDatabase.h"

#include <cstdlib>

namespace zul::host {

namespace {

std::optional<std::string> sqliteFile(const TemporaryFolder& folder, std::string&)
{
    std::string path = folder.file("contract à.db");
    const SqliteDatabase made(path, SqliteDatabase::Mode::OpenOrCreate);
    return path;
}

std::optional<std::string> sqliteByOdbc(const TemporaryFolder& folder, std::string& why)
{
    const std::string driver = odbcDriver("libsqlite3odbc.so");
    if (driver.empty()) {
        why = "the ODBC driver of SQLite is not installed";
        return std::nullopt;
    }
    return "DRIVER=" + driver + ";Database=" + folder.file("contract.db") + ";Timeout=5000";
}

std::optional<std::string> postgresByOdbc(const TemporaryFolder&, std::string& why)
{
    PostgresServer* const server = PostgresServer::shared(why);
    if (server == nullptr) {
        return std::nullopt;
    }
    return server->connectionString(server->newDatabase());
}

// Another server for each test; the last one stays until the program ends.
std::optional<std::string> transactSqlStandIn(const TemporaryFolder& folder, std::string& why)
{
    static std::unique_ptr<tds::StandIn> server;
    if (tds::freeTdsDriver().empty()) {
        why = "the ODBC driver of FreeTDS is not installed";
        return std::nullopt;
    }
    server.reset();
    tds::ServerOptions options;
    options.file = folder.file("server.db");
    server = std::make_unique<tds::StandIn>(options);
    return server->connectionString();
}

std::optional<std::string> transactSqlByOdbc(const TemporaryFolder&, std::string& why)
{
    const char* const connectionString = std::getenv("ZUL_TEST_TSQL");
    if (connectionString == nullptr || *connectionString == '\0') {
        why = "ZUL_TEST_TSQL names no server";
        return std::nullopt;
    }
    return connectionString;
}

} // namespace

const std::vector<Backend>& backends()
{
    static const std::vector<Backend> all{{"Sqlite", sqliteFile},
                                          {"SqliteByOdbc", sqliteByOdbc},
                                          {"PostgresByOdbc", postgresByOdbc},
                                          {"TransactSqlStandIn", transactSqlStandIn},
                                          {"TransactSqlByOdbc", transactSqlByOdbc}};
    return all;
}

} // namespace zul::host
