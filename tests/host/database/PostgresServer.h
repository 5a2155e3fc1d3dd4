#pragma once
// A PostgreSQL server of the test's own, in a folder of its own, on a free port of this machine only.
#include "tests/support/TemporaryFolder.h"

#include <sys/types.h>

#include <optional>
#include <string>

namespace zul::host {

class PostgresServer
{
public:
    /// Starts a server; throws std::runtime_error with the reason when that cannot be done.
    PostgresServer();
    /// Stops it.
    ~PostgresServer();
    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;

    /// The process's one server, started when first asked for; null, with `why` filled, when there is none.
    static PostgresServer* shared(std::string& why);

    /// A connection string for a database; the one named "postgres" is always there.
    std::string connectionString(const std::string& database) const;

    /// The name of a new, empty database.
    std::string newDatabase();

private:
    TemporaryFolder m_folder;
    std::string m_programs;
    int m_port = 0;
    pid_t m_server = -1;
    int m_databases = 0;
};

/// The file of an ODBC driver, empty when it is not installed.
std::string odbcDriver(const std::string& fileName);

} // namespace zul::host
